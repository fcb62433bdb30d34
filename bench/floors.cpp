#include "floors.h"

#include <fcntl.h>
#include <unistd.h>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <stdexcept>
#include <string_view>

namespace bench {

namespace {

constexpr std::size_t kBlockValues = 10000;
constexpr std::size_t kBlockBytes = std::size_t{256} << 10;

// An open file that is closed with the object.
class Descriptor {
 public:
  Descriptor(const std::string& name, int flags) : fDescriptor(open(name.c_str(), flags, 0600)) {
    if (fDescriptor < 0) throw std::runtime_error("cannot open " + name);
  }
  Descriptor(Descriptor&& other) noexcept : fDescriptor(std::exchange(other.fDescriptor, -1)) {}
  Descriptor& operator=(Descriptor&&) = delete;
  ~Descriptor() {
    if (fDescriptor >= 0) close(fDescriptor);
  }

  std::size_t Read(void* buffer, std::size_t byteCount) const {
    const ssize_t got = read(fDescriptor, buffer, byteCount);
    if (got < 0) throw std::runtime_error("cannot read a file");
    return static_cast<std::size_t>(got);
  }

  void Write(const void* bytes, std::size_t byteCount) const {
    if (write(fDescriptor, bytes, byteCount) != static_cast<ssize_t>(byteCount)) {
      throw std::runtime_error("cannot write a file");
    }
  }

 private:
  int fDescriptor;
};

// Adds up the numbers of whole lines.
double SumFields(std::string_view lines) {
  double sum = 0.0;
  const char* next = lines.data();
  const char* const end = next + lines.size();
  while (next < end) {
    double number = 0.0;
    next = std::from_chars(next, end, number).ptr + 1;
    sum += number;
  }
  return sum;
}

}  // namespace

std::uint64_t ReadOnce(const void* data, std::size_t byteCount) {
  const auto* const bytes = static_cast<const unsigned char*>(data);
  std::uint64_t combined = 0;
  for (std::size_t i = 0; i + sizeof combined <= byteCount; i += sizeof combined) {
    std::uint64_t word = 0;
    std::memcpy(&word, bytes + i, sizeof word);
    combined ^= word;
  }
  return combined;
}

std::vector<std::string> WriteColumnFiles(const std::vector<const Column*>& columns,
                                          const std::string& directory) {
  std::vector<std::string> names;
  std::vector<Descriptor> files;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    names.push_back(directory + "/floor" + std::to_string(i));
    files.emplace_back(names.back(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC);
  }
  const std::size_t caseCount = columns.empty() ? 0 : columns.front()->size();
  for (std::size_t first = 0; first < caseCount; first += kBlockValues) {
    const std::size_t count = std::min(kBlockValues, caseCount - first);
    for (std::size_t i = 0; i < columns.size(); ++i) {
      files[i].Write(columns[i]->data() + first, count * sizeof(double));
    }
  }
  return names;
}

void ReadColumnFiles(const std::vector<std::string>& files) {
  std::vector<char> block(kBlockBytes);
  for (const std::string& name : files) {
    const Descriptor file(name, O_RDONLY | O_CLOEXEC);
    while (file.Read(block.data(), block.size()) > 0) {
    }
  }
}

void RemoveColumnFiles(const std::vector<std::string>& files) {
  for (const std::string& name : files) unlink(name.c_str());
}

void WriteCsv(const Columns& columns, const std::string& fileName) {
  std::ofstream file(fileName, std::ios::binary);
  for (std::size_t i = 0; i < columns.attributes.size(); ++i) file << 'x' << i << ',';
  file << "class\n";
  char field[40];
  for (std::size_t row = 0; row < columns.GetCaseCount(); ++row) {
    for (const Column& attribute : columns.attributes) {
      const int length = std::snprintf(field, sizeof field, "%.6g,", attribute[row]);
      file.write(field, length);
    }
    file << static_cast<int>(columns.target[row]) << '\n';
  }
  file.close();
  if (!file) throw std::runtime_error("cannot write " + fileName);
}

double ConvertCsv(const std::string& fileName) {
  const Descriptor file(fileName, O_RDONLY | O_CLOEXEC);
  std::string block(kBlockBytes, '\0');
  std::size_t kept = 0;  // bytes of an unfinished line at the front
  bool isPastHeader = false;
  double sum = 0.0;
  while (const std::size_t got = file.Read(block.data() + kept, block.size() - kept)) {
    const std::string_view text(block.data(), kept + got);
    const std::size_t lineEnd = text.rfind('\n');
    if (lineEnd == std::string_view::npos) throw std::runtime_error("line too long");
    std::string_view lines = text.substr(0, lineEnd + 1);
    if (!isPastHeader) lines.remove_prefix(lines.find('\n') + 1);
    isPastHeader = true;
    sum += SumFields(lines);
    kept = text.size() - (lineEnd + 1);
    std::memmove(block.data(), block.data() + lineEnd + 1, kept);
  }
  return sum;
}

}  // namespace bench
