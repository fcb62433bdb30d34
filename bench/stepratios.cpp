#include "stepratios.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <set>
#include <utility>

#include "columns.h"
#include "floors.h"
#include "librarycalls.h"
#include "plainform.h"
#include "support/tempdir.h"
#include "tuples.h"

namespace bench {

namespace {

PlainTable TableOf(const SearchCase& searchCase) {
  const Column classes = Classes(searchCase.valueCount, searchCase.classCount, 1);
  return MakeTable(Normals(classes, searchCase.separation, 2), classes, searchCase.classCount);
}

// Times `sort` on cases in their first order, not the copy that brings it back.
template <typename Sort>
Side SortSide(const std::vector<BINDataTuple>& unsorted, std::vector<BINDataTuple>& tuples,
              const Sort& sort) {
  return [&unsorted, &tuples, sort] {
    std::copy(unsorted.begin(), unsorted.end(), tuples.begin());
    return SecondsOf([&] { sort(tuples); });
  };
}

}  // namespace

void CompareSplitSearch(const std::string& work, const SearchCase& searchCase) {
  const PlainTable table = TableOf(searchCase);
  const Splitter splitter(searchCase.classCount);
  struct Found {
    int row = -1;
    std::vector<double> left, right;
  };
  const auto start = [&](Found& found) {
    found.left.assign(table.totals.size(), 0.0);
    found.right = table.totals;
  };

  Found plain, library;
  Comparison comparison{work, {}, {}, {}, searchCase.goals, {}};
  comparison.plain = [&] {
    start(plain);
    return SecondsOf([&] {
      plain.row = reference::BestSplit(table.weights, 0, table.GetRowCount() - 1, true, plain.left,
                                       plain.right);
    });
  };
  comparison.library = [&] {
    start(library);
    return SecondsOf(
        [&] { library.row = splitter.FindBest(table.weights, library.left, library.right); });
  };
  comparison.isSameResult = [&] {
    return plain.row == library.row && plain.left == library.left && plain.right == library.right;
  };
  Compare(comparison);
}

void ComparePartitioning(const std::string& work, const SearchCase& searchCase) {
  const PlainTable table = TableOf(searchCase);
  const std::vector<double> upperBoundaries(table.boundaries.begin() + 1, table.boundaries.end());
  const Splitter splitter(searchCase.classCount);
  std::set<double> library = splitter.FindCutPoints(upperBoundaries, table.weights);
  std::set<double> plain;
  Comparison comparison{work, {}, {}, {}, searchCase.goals, {}};
  comparison.plain = [&] { return SecondsOf([&] { plain = FindCutPointsAgain(table, library); }); };
  comparison.library = [&] {
    return SecondsOf([&] { library = splitter.FindCutPoints(upperBoundaries, table.weights); });
  };
  comparison.isSameResult = [&] { return plain == library; };
  Compare(comparison);
}

void CompareSorting(const std::string& work, bool isSorted) {
  const Column classes = Classes(kMillion, 2, 1);
  Column values = Normals(classes, kHalfSeparated, 2);
  if (isSorted) values = Sorted(std::move(values));
  const std::vector<BINDataTuple> unsorted = MakeTuples(values, classes);
  std::vector<BINDataTuple> tuples = unsorted;
  std::vector<BINDataTuple> scratch = unsorted;
  Sorter sorter;

  Comparison comparison{work, {}, {}, {}, {WithinFloor(isSorted ? 3.0 : 1.3)}, {}};
  comparison.plain = SortSide(unsorted, tuples, [](std::vector<BINDataTuple>& cases) {
    std::stable_sort(cases.begin(), cases.end());
  });
  comparison.library =
      SortSide(unsorted, tuples, [&](std::vector<BINDataTuple>& cases) { sorter.Sort(cases); });
  if (isSorted) {
    volatile std::uint64_t kept = 0;
    comparison.floor = SortSide(unsorted, tuples, [&](std::vector<BINDataTuple>& cases) {
      kept = ReadOnce(cases.data(), cases.size() * sizeof(BINDataTuple));
    });
    Compare(comparison);
    return;
  }
  comparison.floor = SortSide(unsorted, tuples,
                              [&](std::vector<BINDataTuple>& cases) { RadixSort(cases, scratch); });
  Compare(comparison);
}

void CompareLoading(const std::string& work) {
  Columns columns = MixedColumns(kMillion, 1, 2);
  columns.weights.assign(kMillion, 2.0);
  const TempDir directory;
  DataPass pass(columns, directory.Path());
  pass.Run();
  const std::vector<double> from(3 * kMillion, 1.0);
  std::vector<double> to(3 * kMillion, 2.0);

  Comparison comparison{work, {}, {}, {}, {WithinFloor(4.0)}, {}};
  comparison.library = [&] { return SecondsOf([&] { pass.ReadAttribute(0); }); };
  comparison.floor = [&] {
    return SecondsOf([&] {
      std::memcpy(to.data(), from.data(), from.size() * sizeof(double));
      volatile const double kept = to.back();
      static_cast<void>(kept);
    });
  };
  Compare(comparison);
}

}  // namespace bench
