// Calendar arithmetic of TDateTime and the DOS date-time packing. Days are counted with the
// proleptic Gregorian calendar through a day number relative to 1 Mar of year 0, which puts
// the leap day at the end of each counted year.
#include "rtl/dateutils.h"

#include <cmath>
#include <cstdint>
#include <string>

#include "rtl/sysutils.h"

#ifndef _WIN32
#include <chrono>
#include <ctime>
#endif

namespace rtl {

namespace {

constexpr std::int64_t kMSecsPerDay = 86400000;
// Day number (see days_from_civil) of 30 Dec 1899, TDateTime's day 0.
constexpr std::int64_t kEpochDay = -25569;  // relative to 1 Jan 1970

std::int64_t DaysFromCivil(std::int64_t y, unsigned m, unsigned d) {
  y -= m <= 2;
  const std::int64_t era = (y >= 0 ? y : y - 399) / 400;
  const unsigned yoe = static_cast<unsigned>(y - era * 400);
  const unsigned doy = (153 * (m > 2 ? m - 3 : m + 9) + 2) / 5 + d - 1;
  const unsigned doe = yoe * 365 + yoe / 4 - yoe / 100 + doy;
  return era * 146097 + static_cast<std::int64_t>(doe) - 719468;
}

void CivilFromDays(std::int64_t z, int& y, int& m, int& d) {
  z += 719468;
  const std::int64_t era = (z >= 0 ? z : z - 146096) / 146097;
  const unsigned doe = static_cast<unsigned>(z - era * 146097);
  const unsigned yoe = (doe - doe / 1460 + doe / 36524 - doe / 146096) / 365;
  const unsigned doy = doe - (365 * yoe + yoe / 4 - yoe / 100);
  const unsigned mp = (5 * doy + 2) / 153;
  d = static_cast<int>(doy - (153 * mp + 2) / 5 + 1);
  m = static_cast<int>(mp < 10 ? mp + 3 : mp - 9);
  y = static_cast<int>(static_cast<std::int64_t>(yoe) + era * 400 + (m <= 2));
}

bool IsLeapYear(int y) { return y % 4 == 0 && (y % 100 != 0 || y % 400 == 0); }

int DaysInMonth(int y, int m) {
  static const int days[12] = {31, 28, 31, 30, 31, 30, 31, 31, 30, 31, 30, 31};
  return m == 2 && IsLeapYear(y) ? 29 : days[m - 1];
}

// Whole days (signed) and milliseconds into the day of a value, rounded to the millisecond.
void Split(TDateTime dt, std::int64_t& days, std::int64_t& msecs) {
  const std::int64_t total = std::llround(std::fabs(dt) * static_cast<double>(kMSecsPerDay));
  days = total / kMSecsPerDay;
  msecs = total % kMSecsPerDay;
  if (dt < 0) days = -days;
}

}  // namespace

TDateTime EncodeDate(int Year, int Month, int Day) {
  if (Year < 1 || Year > 9999 || Month < 1 || Month > 12 || Day < 1 ||
      Day > DaysInMonth(Year, Month))
    throw EConvertError(u"Ungültiges Argument für Datumskodierung");
  return static_cast<double>(DaysFromCivil(Year, static_cast<unsigned>(Month),
                                           static_cast<unsigned>(Day)) -
                             kEpochDay);
}

TDateTime EncodeTime(int Hour, int Min, int Sec, int MSec) {
  if (Hour < 0 || Hour >= 24 || Min < 0 || Min >= 60 || Sec < 0 || Sec >= 60 || MSec < 0 ||
      MSec >= 1000)
    throw EConvertError(u"Ungültiges Argument für Zeitkodierung");
  const std::int64_t ms = ((Hour * 60LL + Min) * 60 + Sec) * 1000 + MSec;
  return static_cast<double>(ms) / static_cast<double>(kMSecsPerDay);
}

TDateTime EncodeDateTime(int Year, int Month, int Day, int Hour, int Min, int Sec, int MSec) {
  const TDateTime date = EncodeDate(Year, Month, Day);
  const TDateTime time = EncodeTime(Hour, Min, Sec, MSec);
  return date >= 0 ? date + time : date - time;
}

void DecodeDate(TDateTime DateTime, int& Year, int& Month, int& Day) {
  std::int64_t days = 0, msecs = 0;
  Split(DateTime, days, msecs);
  CivilFromDays(days + kEpochDay, Year, Month, Day);
}

void DecodeTime(TDateTime DateTime, int& Hour, int& Min, int& Sec, int& MSec) {
  std::int64_t days = 0, msecs = 0;
  Split(DateTime, days, msecs);
  MSec = static_cast<int>(msecs % 1000);
  Sec = static_cast<int>(msecs / 1000 % 60);
  Min = static_cast<int>(msecs / 60000 % 60);
  Hour = static_cast<int>(msecs / 3600000);
}

std::int32_t DateTimeToFileDate(TDateTime DateTime) {
  int y = 0, mo = 0, d = 0, h = 0, mi = 0, s = 0, ms = 0;
  DecodeDate(DateTime, y, mo, d);
  if (y < 1980 || y > 2107) return 0;
  DecodeTime(DateTime, h, mi, s, ms);
  const std::uint32_t v = static_cast<std::uint32_t>(y - 1980) << 25 |
                          static_cast<std::uint32_t>(mo) << 21 |
                          static_cast<std::uint32_t>(d) << 16 |
                          static_cast<std::uint32_t>(h) << 11 |
                          static_cast<std::uint32_t>(mi) << 5 | static_cast<std::uint32_t>(s) >> 1;
  return static_cast<std::int32_t>(v);
}

TDateTime FileDateToDateTime(std::int32_t FileDate) {
  const auto v = static_cast<std::uint32_t>(FileDate);
  const int year = static_cast<int>(v >> 25) + 1980;
  const int month = static_cast<int>(v >> 21 & 0x0F);
  const int day = static_cast<int>(v >> 16 & 0x1F);
  const int hour = static_cast<int>(v >> 11 & 0x1F);
  const int min = static_cast<int>(v >> 5 & 0x3F);
  const int sec = static_cast<int>(v & 0x1F) * 2;
  return EncodeDate(year, month, day) + EncodeTime(hour, min, sec, 0);
}

#ifndef _WIN32
TDateTime Now() {
  const auto now = std::chrono::system_clock::now();
  const std::time_t t = std::chrono::system_clock::to_time_t(now);
  std::tm local{};
  localtime_r(&t, &local);
  const auto ms = std::chrono::duration_cast<std::chrono::milliseconds>(
                      now.time_since_epoch()).count() % 1000;
  return EncodeDateTime(local.tm_year + 1900, local.tm_mon + 1, local.tm_mday, local.tm_hour,
                        local.tm_min, local.tm_sec < 60 ? local.tm_sec : 59,
                        static_cast<int>(ms < 0 ? ms + 1000 : ms));
}
#endif

}  // namespace rtl
