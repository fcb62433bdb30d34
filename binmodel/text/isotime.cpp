#include "binmodel/text/isotime.h"

#include <fmt/format.h>

#include <chrono>
#include <cmath>
#include <cstdint>

#include "binmodel/text/number.h"

namespace MCBinModel {

namespace {

using std::chrono::sys_days;
using std::chrono::year_month_day;

constexpr std::int64_t kDaySeconds = 86400;
constexpr std::int64_t kHourSeconds = 3600;
constexpr std::int64_t kMinuteSeconds = 60;

bool IsDigit(char c) { return c >= '0' && c <= '9'; }

// Takes a text apart from its front. What cannot be taken leaves the text as it is, but for the
// digits of a number.
class TimeReader {
 public:
  explicit TimeReader(std::string_view text) : fText(text) {}

  bool IsAtEnd() const { return fText.empty(); }

  bool Take(char c) {
    if (fText.empty() || fText.front() != c) return false;
    fText.remove_prefix(1);
    return true;
  }

  // So many digits, as a number up to `most`.
  bool TakeNumber(std::size_t digits, int most, int& number) {
    number = 0;
    for (std::size_t i = 0; i < digits; ++i) {
      if (fText.empty() || !IsDigit(fText.front())) return false;
      number = number * 10 + (fText.front() - '0');
      fText.remove_prefix(1);
    }
    return number <= most;
  }

  // All digits that follow, at least one.
  bool TakeDigits(std::string_view& digits) {
    std::size_t count = 0;
    while (count < fText.size() && IsDigit(fText[count])) ++count;
    digits = fText.substr(0, count);
    fText.remove_prefix(count);
    return count > 0;
  }

 private:
  std::string_view fText;
};

struct ReadTime {
  std::int64_t seconds = 0;
  std::string_view fraction;  // its digits
};

bool ReadDay(TimeReader& reader, ReadTime& time) {
  int year = 0;
  int month = 0;
  int day = 0;
  const bool isDay = reader.TakeNumber(4, 9999, year) && reader.Take('-') &&
                     reader.TakeNumber(2, 12, month) && reader.Take('-') &&
                     reader.TakeNumber(2, 31, day);
  if (!isDay) return false;
  const year_month_day date{std::chrono::year(year),
                            std::chrono::month(static_cast<unsigned>(month)),
                            std::chrono::day(static_cast<unsigned>(day))};
  if (!date.ok()) return false;
  time.seconds = sys_days(date).time_since_epoch().count() * kDaySeconds;
  return true;
}

bool ReadClock(TimeReader& reader, ReadTime& time) {
  int hour = 0;
  int minute = 0;
  int second = 0;
  if (!reader.TakeNumber(2, 23, hour) || !reader.Take(':')) return false;
  if (!reader.TakeNumber(2, 59, minute)) return false;
  if (reader.Take(':')) {
    if (!reader.TakeNumber(2, 59, second)) return false;
    const bool hasFraction = reader.Take('.') || reader.Take(',');
    if (hasFraction && !reader.TakeDigits(time.fraction)) return false;
  }
  time.seconds += hour * kHourSeconds + minute * kMinuteSeconds + second;
  return true;
}

// What the zone is ahead of UTC.
bool ReadZone(TimeReader& reader, ReadTime& time) {
  if (reader.IsAtEnd() || reader.Take('Z')) return true;
  const bool isBehind = reader.Take('-');
  if (!isBehind && !reader.Take('+')) return false;
  int hours = 0;
  int minutes = 0;
  if (!reader.TakeNumber(2, 23, hours)) return false;
  const bool hasColon = reader.Take(':');
  if ((hasColon || !reader.IsAtEnd()) && !reader.TakeNumber(2, 59, minutes)) return false;
  const std::int64_t ahead = hours * kHourSeconds + minutes * kMinuteSeconds;
  time.seconds -= isBehind ? -ahead : ahead;
  return true;
}

// The decimal number is read as a whole, so that it is rounded once.
double MakeSeconds(const ReadTime& time) {
  const std::size_t lastDigit = time.fraction.find_last_not_of('0');
  if (lastDigit == std::string_view::npos) return static_cast<double>(time.seconds);
  std::string digits(time.fraction.substr(0, lastDigit + 1));
  if (time.seconds >= 0) return ParseNumber(fmt::format("{}.{}", time.seconds, digits)).value;
  // Before 1970 the fraction goes the other way: -3 and 0.25 are -2.75.
  for (char& digit : digits) digit = static_cast<char>('0' + '9' - digit);
  ++digits.back();
  for (std::size_t i = digits.size() - 1; digits[i] > '9'; --i) {
    digits[i] = '0';
    ++digits[i - 1];
  }
  return ParseNumber(fmt::format("-{}.{}", -time.seconds - 1, digits)).value;
}

// Of the years 0 to 9999, or of 1 to 9999.
bool IsWritable(double seconds, int firstYear) {
  const auto begin = sys_days(std::chrono::year(firstYear) / 1 / 1).time_since_epoch().count();
  const auto end = sys_days(std::chrono::year(10000) / 1 / 1).time_since_epoch().count();
  return seconds >= static_cast<double>(begin * kDaySeconds) &&
         seconds < static_cast<double>(end * kDaySeconds);
}

struct WrittenTime {
  std::string day;
  std::string clock;
};

WrittenTime WriteSeconds(std::int64_t seconds) {
  std::int64_t days = seconds / kDaySeconds;
  std::int64_t rest = seconds % kDaySeconds;
  if (rest < 0) {
    rest += kDaySeconds;
    --days;
  }
  const year_month_day date{sys_days(std::chrono::days(days))};
  return {fmt::format("{:04}-{:02}-{:02}", static_cast<int>(date.year()),
                      static_cast<unsigned>(date.month()), static_cast<unsigned>(date.day())),
          fmt::format("{:02}:{:02}:{:02}", rest / kHourSeconds,
                      rest % kHourSeconds / kMinuteSeconds, rest % kMinuteSeconds)};
}

}  // namespace

std::optional<double> ParseTime(std::string_view text) {
  TimeReader reader(TrimBlanks(text));
  ReadTime time;
  if (!ReadDay(reader, time)) return std::nullopt;
  if (!reader.IsAtEnd()) {
    if (!reader.Take('T') && !reader.Take(' ')) return std::nullopt;
    if (!ReadClock(reader, time) || !ReadZone(reader, time)) return std::nullopt;
    if (!reader.IsAtEnd()) return std::nullopt;
  }
  return MakeSeconds(time);
}

std::string FormatTime(double seconds) {
  if (!IsWritable(seconds, 0)) return FormatNumber(seconds);
  const double whole = std::floor(seconds);
  const WrittenTime written = WriteSeconds(static_cast<std::int64_t>(whole));
  if (seconds == whole) {
    return written.clock == "00:00:00" ? written.day : written.day + "T" + written.clock;
  }
  const double fraction = seconds - whole;
  constexpr int kMostDigits = 16;
  for (int digits = 1; digits <= kMostDigits; ++digits) {
    const std::string text = fmt::format("{}T{}{}", written.day, written.clock,
                                         fmt::format("{:.{}f}", fraction, digits).substr(1));
    if (ParseTime(text) == seconds) return text;
  }
  return FormatNumber(seconds);
}

std::optional<std::string> FormatMicroseconds(double seconds, bool up) {
  constexpr std::int64_t kMicros = 1000000;
  constexpr std::int64_t kMostOfOneDouble = 32;  // microseconds that are one double, in year 9999
  if (!IsWritable(seconds, 1)) return std::nullopt;
  const double whole = std::floor(seconds);
  const std::int64_t near = static_cast<std::int64_t>(whole) * kMicros +
                            static_cast<std::int64_t>((seconds - whole) * double{kMicros});
  const std::int64_t step = up ? 1 : -1;
  for (std::int64_t micros = near - step * kMostOfOneDouble;; micros += step) {
    std::int64_t wholes = micros / kMicros;
    std::int64_t rest = micros % kMicros;
    if (rest < 0) {
      rest += kMicros;
      --wholes;
    }
    const WrittenTime written = WriteSeconds(wholes);
    std::string text = written.day + " " + written.clock;
    if (rest != 0) text += fmt::format(".{:06}", rest);
    const double value = ParseTime(text).value_or(seconds);
    if (up ? value >= seconds : value <= seconds) return text;
  }
}

}  // namespace MCBinModel
