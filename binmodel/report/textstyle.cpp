#include "binmodel/report/textstyle.h"

#include <fmt/format.h>
#include <strings.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <string_view>

namespace MCBinModel {

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

TextStyle ChooseTextStyle(ColorChoice choice) {
  const bool color =
      choice == ColorChoice::kAlways || (choice == ColorChoice::kAuto && IsColorTerminal());
  return {IsUtf8Locale(), color};
}

std::string ShareBar(double share, std::size_t width, std::size_t index, const TextStyle& style) {
  constexpr std::array<const char*, 8> kParts = {"", "▏", "▎", "▍", "▌", "▋", "▊", "▉"};
  constexpr std::array<int, 6> kColors = {34, 33, 32, 35, 36, 31};
  const double wanted = std::round(share * static_cast<double>(8 * width));
  const auto eighths = std::min(8 * width, static_cast<std::size_t>(std::max(wanted, 0.0)));
  const std::size_t shown = share > 0.0 ? std::max<std::size_t>(eighths, 1) : 0;

  std::string bar;
  for (std::size_t column = 0; column < shown / 8; ++column) bar += "█";
  bar += kParts[shown % 8];
  const std::string blanks(width - (shown + 7) / 8, ' ');
  if (style.color && !bar.empty()) {
    bar = fmt::format("\x1b[{}m{}\x1b[0m", kColors[index % kColors.size()], bar);
  }
  return bar + blanks;
}

}  // namespace MCBinModel
