#include "columns.h"

#include <algorithm>
#include <cmath>
#include <random>
#include <utility>

namespace bench {

Column Classes(std::size_t caseCount, int classCount, unsigned int seed) {
  std::mt19937_64 random(seed);
  std::uniform_int_distribution<int> anyClass(0, classCount - 1);
  Column classes(caseCount);
  std::generate(classes.begin(), classes.end(), [&] { return anyClass(random); });
  return classes;
}

Column Normals(const Column& classes, double separation, unsigned int seed) {
  std::mt19937_64 random(seed);
  std::normal_distribution<double> normal;
  Column values(classes.size());
  std::transform(classes.begin(), classes.end(), values.begin(),
                 [&](double code) { return separation * code + normal(random); });
  return values;
}

Column Rounded(Column values, double step) {
  for (double& value : values) value = std::round(value / step) * step;
  return values;
}

Column Sorted(Column values) {
  std::sort(values.begin(), values.end());
  return values;
}

Columns MixedColumns(std::size_t caseCount, int attributeCount, int classCount) {
  Columns columns;
  columns.classCount = classCount;
  columns.target = Classes(caseCount, classCount, 1);
  for (int attribute = 0; attribute < attributeCount; ++attribute) {
    const auto seed = static_cast<unsigned int>(attribute) + 2;
    Column values = Normals(columns.target, kHalfSeparated, seed);
    const bool hasTies = attribute % 2 == 1;
    columns.attributes.push_back(hasTies ? Rounded(std::move(values), 0.01) : std::move(values));
  }
  return columns;
}

Columns OneColumn(Column values, Column classes, int classCount) {
  Columns columns;
  columns.attributes.push_back(std::move(values));
  columns.target = std::move(classes);
  columns.classCount = classCount;
  return columns;
}

}  // namespace bench
