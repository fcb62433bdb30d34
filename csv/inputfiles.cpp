#include "csv/inputfiles.h"

#include <fmt/format.h>
#include <fmt/ranges.h>

#include <algorithm>
#include <filesystem>
#include <numeric>
#include <system_error>
#include <utility>

#include "binmodel/model/refusal.h"
#include "binmodel/text/displaytext.h"
#include "io/pathtext.h"

namespace MCBin {

namespace {

// What can be read once only, such as a pipe.
bool IsStream(const std::string& path) {
  if (path == "-") return true;
  std::error_code ignored;
  const std::filesystem::file_status status = std::filesystem::status(path, ignored);
  return std::filesystem::is_other(status);
}

}  // namespace

InputFiles::InputFiles(std::vector<std::string> paths, char delimiter, const NumberFormat& numbers,
                       std::size_t chunkBytes)
    : fPaths(std::move(paths)), fDelimiter(delimiter), fNumbers(numbers), fChunkBytes(chunkBytes) {
  for (const std::string& path : fPaths) {
    fDisplayNames.push_back(path == "-" ? "standard input" : PathText(path));
  }
  fSizes.resize(fPaths.size());
  Open(0);
  fNames.emplace(ColumnNames::Read(*fReader));
  if (fPaths.size() == 1) return;
  for (fIndex = 1; fIndex < fPaths.size(); ++fIndex) {
    if (IsStream(fPaths[fIndex])) continue;
    const InputStream input(fPaths[fIndex], "a CSV file");
    fSizes[fIndex] = input.GetSize();
    CsvReader reader(input.Get(), input.GetName(), fDelimiter, fNumbers);
    CheckNames(ColumnNames::Read(reader));
  }
  fIndex = 0;
}

void InputFiles::Open(std::size_t index) {
  fIndex = index;
  fReader.reset();
  fInput.emplace(fPaths[index], "a CSV file");
  fReader.emplace(fInput->Get(), fInput->GetName(), fDelimiter, fNumbers, fChunkBytes);
  fSizes[index] = fInput->GetSize();
}

bool InputFiles::OpenNext() {
  if (fIndex + 1 == fPaths.size()) return false;
  fBytesBefore += fReader->GetBytesRead();
  fLinesBefore.push_back(fLinesBefore.back() + fReader->GetParser().GetNextLine());
  Open(fIndex + 1);
  CheckNames(ColumnNames::Read(*fReader));
  return true;
}

void InputFiles::CheckNames(const ColumnNames& names) const {
  const auto refuse = [this](const std::string& reason) {
    throw MCBinModel::Refusal(MCBinModel::RefusalCode::kInput, {fDisplayNames[fIndex], {}, {}},
                              fmt::format("{}; several files need the same header", reason));
  };
  const std::string first = MCBinModel::QuotedText(GetFirstName());
  for (std::size_t i = 0; i < std::min(names.GetCount(), fNames->GetCount()); ++i) {
    if (names.GetName(i) == fNames->GetName(i)) continue;
    refuse(fmt::format("column {} is {}, but {} in {}", i + 1,
                       MCBinModel::QuotedText(names.GetName(i)),
                       MCBinModel::QuotedText(fNames->GetName(i)), first));
  }
  if (names.GetCount() == fNames->GetCount()) return;
  refuse(fmt::format("{} columns, but {} in {}", names.GetCount(), fNames->GetCount(), first));
}

std::string InputFiles::GetName() const {
  return fmt::format("{}", fmt::join(fDisplayNames, ", "));
}

std::string InputFiles::Where(std::uint64_t line) const {
  const auto after = std::lower_bound(fLinesBefore.begin(), fLinesBefore.end(), line);
  const auto file = after == fLinesBefore.begin() ? after : after - 1;
  return fmt::format("{}:{}", fDisplayNames[static_cast<std::size_t>(file - fLinesBefore.begin())],
                     line - *file);
}

std::uint64_t InputFiles::GetSize() const {
  if (std::find(fSizes.begin(), fSizes.end(), 0) != fSizes.end()) return 0;
  return std::accumulate(fSizes.begin(), fSizes.end(), std::uint64_t{0});
}

}  // namespace MCBin
