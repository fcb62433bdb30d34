#pragma once

#include <optional>
#include <string>

#include "binmodel/apply/binvalues.h"

namespace MCBinModel {

enum class ExportFormat { kSql, kPmml, kPython };

// What the user asked of `mcbin export`.
struct ExportOptions {
  std::string binFile;
  ExportFormat format = ExportFormat::kSql;
  std::string dialect = "ansi";  // of SQL
  std::string table;             // of SQL; parts separated by dots, in double quotes if need be
  std::optional<std::string> target;
  BinForm form = BinForm::kIndex;
  std::string suffix = "_bin";
  std::optional<std::string> missingText;  // unset: what the format has for "no value"
  std::optional<std::string> output;       // unset or "-": standard output
  bool quiet = false;
};

}  // namespace MCBinModel
