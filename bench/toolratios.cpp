#include "toolratios.h"

#include <thread>

#include "columns.h"
#include "comparison.h"
#include "floors.h"
#include "support/tempdir.h"
#include "toolrun.h"

namespace bench {

void CompareTool(const std::string& work) {
  const std::string tool = FindTool();
  if (tool.empty()) {
    PrintNote(work, "not measured: mcbin has not been built");
    return;
  }
  const TempDir directory;
  const std::string file = directory.Path() + "/data.csv";
  WriteCsv(MixedColumns(kMillion, 10, 2), file);
  Comparison comparison{work, {}, {}, {}, {WithinFloor(4.0)}, {}};
  comparison.library = [&] {
    return SecondsOf([&] {
      RunProgram({tool, "supervised", "--target", "class", "--quiet", "--temp-dir",
                  directory.Path(), file},
                 "/dev/null");
    });
  };
  comparison.floor = [&] {
    return SecondsOf([&] {
      volatile const double kept = ConvertCsv(file);
      static_cast<void>(kept);
    });
  };
  Compare(comparison);
}

// The part of the tool's run that several jobs share, in wall time: one job takes the place of
// the plain form.
void CompareJobs(const std::string& work, std::size_t rowCount, int attributeCount) {
  const std::string tool = FindTool();
  if (tool.empty() || std::thread::hardware_concurrency() < 2) {
    PrintNote(work, "not measured: needs mcbin and two cores");
    return;
  }
  const TempDir data;
  const TempDir directory;
  const std::string file = data.Path() + "/data.csv";
  WriteCsv(MixedColumns(rowCount, attributeCount, 2), file);
  const auto run = [&](const char* jobs) {
    return RunFromFirstFile({tool, "supervised", "--target", "class", "--prebin-above", "0",
                             "--jobs", jobs, "--quiet", "--temp-dir", directory.Path(), file},
                            directory.Path());
  };
  constexpr int kRounds = 8;  // in wall time all that disturbs a core counts
  Comparison comparison{work, {}, {}, {}, {FasterThanPlain(1.6)}, {}, kRounds};
  comparison.plain = [&] { return run("1"); };
  comparison.library = [&] { return run("2"); };
  Compare(comparison);
}

}  // namespace bench
