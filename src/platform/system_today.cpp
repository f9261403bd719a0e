#include <charconv>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <optional>
#include <string_view>

#include "platform/system_settings.h"

namespace merivane::platform {

namespace {

constexpr std::int64_t kSecondsOfDay = 86400;
constexpr std::int64_t kLastSecond = 253402300799;  // of the year 9999

std::optional<std::int64_t> SourceDateEpoch() {
  const char* value = std::getenv("SOURCE_DATE_EPOCH");
  if (value == nullptr) return std::nullopt;
  const std::string_view text = value;
  std::int64_t seconds = 0;
  const auto read = std::from_chars(text.data(), text.data() + text.size(), seconds);
  const bool whole = read.ec == std::errc() && read.ptr == text.data() + text.size();
  if (!whole || seconds < 0 || seconds > kLastSecond) return std::nullopt;
  return seconds;
}

}  // namespace

DateTime SystemToday() {
  if (const auto epoch = SourceDateEpoch()) {
    const std::chrono::year_month_day day(
        std::chrono::sys_days(std::chrono::days(*epoch / kSecondsOfDay)));
    return {static_cast<int>(day.year()), static_cast<int>(static_cast<unsigned>(day.month())),
            static_cast<int>(static_cast<unsigned>(day.day())), 0};
  }
  const std::time_t now = std::time(nullptr);
  const std::tm* local = std::localtime(&now);
  return {local->tm_year + 1900, local->tm_mon + 1, local->tm_mday, 0};
}

}  // namespace merivane::platform
