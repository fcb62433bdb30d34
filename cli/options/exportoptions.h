#pragma once

#include <optional>
#include <string>

#include "binmodel/export/binexport.h"

namespace MCBin {

enum class ExportFormat { kSql, kPmml, kPython };

// What the user asked of `mcbin export`.
struct ExportOptions {
  std::string binFile;
  ExportFormat format = ExportFormat::kSql;
  std::string dialect = "ansi";  // of SQL
  std::string table;             // of SQL
  std::optional<std::string> target;
  MCBinModel::ExportOptions columns;
  std::optional<std::string> output;  // unset or "-": standard output
  bool quiet = false;
};

}  // namespace MCBin
