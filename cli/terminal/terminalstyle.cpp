#include "cli/terminal/terminalstyle.h"

#include <strings.h>
#include <unistd.h>

#include <cstdlib>
#include <string>
#include <string_view>

namespace MCBin {

namespace {

std::string_view Environment(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

// The first of these that is set decides, as for every program.
bool IsUtf8Locale() {
  for (const char* name : {"LC_ALL", "LC_CTYPE", "LANG"}) {
    const std::string_view locale = Environment(name);
    if (locale.empty()) continue;
    const std::size_t dot = locale.find('.');
    if (dot == std::string_view::npos) return false;
    const std::string charset(locale.substr(dot + 1, locale.find('@', dot) - dot - 1));
    return strcasecmp(charset.c_str(), "utf-8") == 0 || strcasecmp(charset.c_str(), "utf8") == 0;
  }
  return false;
}

bool IsColorTerminal() {
  const std::string_view terminal = Environment("TERM");
  return isatty(STDOUT_FILENO) == 1 && Environment("NO_COLOR").empty() && !terminal.empty() &&
         terminal != "dumb";
}

}  // namespace

MCBinModel::TextStyle ChooseTextStyle(ColorChoice choice) {
  const bool color =
      choice == ColorChoice::kAlways || (choice == ColorChoice::kAuto && IsColorTerminal());
  return {IsUtf8Locale(), color};
}
}  // namespace MCBin
