#include "toolratios.h"

#include <thread>

#include "columns.h"
#include "comparison.h"
#include "floors.h"
#include "support/tempdir.h"
#include "toolrun.h"

namespace bench {

void CompareTool(const std::string& work, int jobs) {
  const std::string tool = FindTool();
  const bool areSeveral = jobs > 1;
  if (tool.empty() || (areSeveral && std::thread::hardware_concurrency() < 2)) {
    PrintNote(work, "not measured: needs mcbin, for several jobs two cores");
    return;
  }
  const TempDir directory;
  const std::string file = directory.Path() + "/data.csv";
  WriteCsv(MixedColumns(kMillion, 10, 2), file);
  const auto secondsOf = areSeveral ? &WallSecondsOf : &SecondsOf;
  const auto run = [&](int jobsOfRun) {
    return secondsOf([&] {
      RunProgram({tool, "supervised", "--target", "class", "--jobs", std::to_string(jobsOfRun),
                  "--quiet", "--temp-dir", directory.Path(), file},
                 "/dev/null");
    });
  };
  Comparison comparison{work, {}, {}, {}, {WithinFloor(2.5)}, {}};
  comparison.library = [&] { return run(jobs); };
  if (areSeveral) {
    comparison.plain = [&] { return run(1); };
    comparison.goals = {WithinFloor(1.5), FasterThanPlain(1.7)};
  }
  comparison.floor = [&] {
    return secondsOf([&] {
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
  Comparison comparison{work, {}, {}, {}, {FasterThanPlain(1.6)}, {}};
  comparison.plain = [&] { return run("1"); };
  comparison.library = [&] { return run("2"); };
  Compare(comparison);
}

}  // namespace bench
