// Includes point downwards only, as docs/architecture.md draws it.

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <map>
#include <optional>
#include <regex>
#include <set>
#include <string>
#include <vector>

namespace {

namespace fs = std::filesystem;

const fs::path kRoot = MCBINNING_SOURCE_DIR;

// A folder, or the files whose path begins so, and what it stands on. It may include from these,
// from what they stand on, and from itself. A new folder needs a line here.
struct Floor {
  std::string path;
  std::vector<std::string> standsOn;
};
const std::vector<Floor> kHouse = {
    {"src/host", {}},
    {"src/common", {"src/host"}},
    {"src/version", {"src/common"}},
    {"src/metadata", {"src/version"}},
    {"src/output", {"src/version"}},
    {"src/algorithm", {"src/metadata", "src/output"}},
    {"src", {"src/algorithm"}},  // the headers that include all others

    {"binmodel/text", {"src"}},
    {"binmodel/model", {"binmodel/text"}},
    {"binmodel/file", {"binmodel/model"}},
    {"binmodel/measure", {"binmodel/model"}},
    {"binmodel/apply", {"binmodel/measure"}},
    {"binmodel/run", {"binmodel/apply"}},
    {"binmodel/export", {"binmodel/apply"}},
    {"binmodel/report", {"binmodel/apply"}},
    {"binmodel", {"binmodel/file", "binmodel/run", "binmodel/export", "binmodel/report"}},

    {"io", {"binmodel"}},
    {"csv", {"io"}},
    {"cli", {"csv"}},
};

const Floor& FloorOf(const std::string& file) {
  const Floor* found = nullptr;
  for (const Floor& floor : kHouse) {
    const bool isPart = file.compare(0, floor.path.size(), floor.path) == 0;
    if (isPart && (!found || floor.path.size() > found->path.size())) found = &floor;
  }
  return *found;
}

bool MayInclude(const Floor& from, const std::string& to) {
  if (from.path == to) return true;
  return std::any_of(from.standsOn.begin(), from.standsOn.end(), [&](const std::string& below) {
    const auto floor = std::find_if(kHouse.begin(), kHouse.end(),
                                    [&](const Floor& other) { return other.path == below; });
    return MayInclude(*floor, to);
  });
}

// For each source file of the house what it includes of it, as paths from the root.
using Graph = std::map<std::string, std::set<std::string>>;

std::optional<std::string> Resolve(const std::string& file, const std::string& included) {
  const fs::path beside = fs::path(file).parent_path() / included;
  std::string published = included;
  for (const auto& [prefix, folder] :
       {std::pair("mcbinning/", "src/"), {"mcbinmodel/", "binmodel/"}}) {
    if (included.rfind(prefix, 0) == 0)
      published = folder + included.substr(std::string(prefix).size());
  }
  for (const fs::path& path : {beside, "src" / fs::path(included), fs::path(published)}) {
    if (fs::is_regular_file(kRoot / path)) return path.lexically_normal().string();
  }
  return std::nullopt;
}

Graph ReadGraph() {
  const std::regex include("#include [\"<]([^\">]+)[\">].*");
  Graph graph;
  for (const char* folder : {"src", "binmodel", "io", "csv", "cli"}) {
    for (const auto& entry : fs::recursive_directory_iterator(kRoot / folder)) {
      const fs::path extension = entry.path().extension();
      if (extension != ".h" && extension != ".cpp") continue;
      const std::string file = entry.path().lexically_relative(kRoot).string();
      std::ifstream text(entry.path());
      std::smatch match;
      for (std::string line; std::getline(text, line);) {
        if (!std::regex_match(line, match, include)) continue;
        if (auto included = Resolve(file, match[1])) graph[file].insert(*std::move(included));
      }
    }
  }
  return graph;
}

TEST(Includes, PointDownwards) {
  const Graph graph = ReadGraph();
  EXPECT_GT(graph.size(), 200u);
  for (const auto& [file, includes] : graph) {
    for (const std::string& included : includes) {
      EXPECT_TRUE(MayInclude(FloorOf(file), FloorOf(included).path))
          << file << " includes " << included;
    }
  }
}

// Takes files away that include nothing that is left; what stays includes each other in circles.
TEST(Includes, AreNoCircles) {
  Graph graph = ReadGraph();
  const auto isDone = [&](const auto& entry) {
    return std::none_of(entry.second.begin(), entry.second.end(),
                        [&](const std::string& included) { return graph.count(included) > 0; });
  };
  const auto findDone = [&] { return std::find_if(graph.begin(), graph.end(), isDone); };
  for (auto done = findDone(); done != graph.end(); done = findDone()) graph.erase(done);
  for (const auto& [file, includes] : graph)
    ADD_FAILURE() << file << " is in a circle of includes, or above one";
}

}  // namespace
