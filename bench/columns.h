#pragma once

#include <cstddef>
#include <vector>

namespace bench {

constexpr std::size_t kMillion = 1000000;

using Column = std::vector<double>;

// Data in memory, column by column: continuous attributes, the classes of a target as codes
// 0, 1, 2, ..., and the cases' weights, none when every case weighs 1.
struct Columns {
  std::vector<Column> attributes;
  Column target;
  Column weights;
  int classCount = 2;

  std::size_t GetCaseCount() const { return target.size(); }
};

// How far the class means of "half-separated" normals lie apart, in standard deviations.
inline constexpr double kHalfSeparated = 0.5;

// Pure noise: the class says nothing about the value.
inline constexpr double kNoise = 0.0;

// All makers below give the same column for the same arguments, `seed` included.

// A class per case, all equally likely.
Column Classes(std::size_t caseCount, int classCount, unsigned int seed);

// A normal variate of standard deviation 1 per case; neighbouring classes have means that lie
// `separation` apart. Practically all values are distinct.
Column Normals(const Column& classes, double separation, unsigned int seed);

// The nearest multiples of `step`: the same shape with ties.
Column Rounded(Column values, double step);

Column Sorted(Column values);

// Half-separated normals: the attributes with an even index are all distinct, the others have
// ties (multiples of 1/100, some 700 to 1200 values).
Columns MixedColumns(std::size_t caseCount, int attributeCount, int classCount);

// The same with one attribute.
Columns OneColumn(Column values, Column classes, int classCount);

}  // namespace bench
