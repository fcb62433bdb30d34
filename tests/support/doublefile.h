#pragma once

#include <cstddef>
#include <fstream>
#include <ios>
#include <string>
#include <vector>

// Writes doubles in native byte order, then `extraBytes` of a value that is not whole.
inline void WriteDoubles(const std::string& path, const std::vector<double>& values,
                         std::size_t extraBytes = 0) {
  std::ofstream file(path, std::ios::binary);
  file.write(reinterpret_cast<const char*>(values.data()),
             static_cast<std::streamsize>(values.size() * sizeof(double)));
  file << std::string(extraBytes, 'x');
}

// The doubles of a file; none when it cannot be read.
inline std::vector<double> ReadDoubles(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  std::vector<double> values;
  double value;
  while (file.read(reinterpret_cast<char*>(&value), sizeof value)) values.push_back(value);
  return values;
}
