// The framework's date-time value and its conversions: calendar dates and clock times in
// and out, the current local time, and the DOS date-time of file systems (FAT, archives).
// Pure except Now(), which asks the system clock.
#pragma once

#include <cstdint>

namespace rtl {

// Days since 30 Dec 1899 in local time; the fraction is the time of day (0.5 = noon).
// Before that day the whole part counts back and the fraction still counts forward:
// -1.25 is 29 Dec 1899, 06:00.
using TDateTime = double;

// The day, at midnight. EConvertError (rtl/sysutils.h) for a day that does not exist:
// year 1..9999, month 1..12, day within the month (leap years Gregorian).
TDateTime EncodeDate(int Year, int Month, int Day);
// The time of day as a fraction; EConvertError unless Hour < 24, Min < 60, Sec < 60,
// MSec < 1000.
TDateTime EncodeTime(int Hour, int Min, int Sec, int MSec);
// EncodeDate + EncodeTime, the time counted forward from the day also before 1899.
TDateTime EncodeDateTime(int Year, int Month, int Day, int Hour, int Min, int Sec, int MSec);

// Both read the value rounded to the nearest millisecond, so 23:59:59.9996 is the next day.
void DecodeDate(TDateTime DateTime, int& Year, int& Month, int& Day);
void DecodeTime(TDateTime DateTime, int& Hour, int& Min, int& Sec, int& MSec);

// The local date and time now, to the millisecond.
TDateTime Now();

// DOS date-time: bits 25-31 years since 1980, 21-24 month, 16-20 day, 11-15 hours,
// 5-10 minutes, 0-4 seconds / 2. Odd seconds and milliseconds are dropped (two-second
// precision); a year outside 1980..2107 gives 0.
std::int32_t DateTimeToFileDate(TDateTime DateTime);
// EConvertError when a field is out of range (month 0, day 31 of April, 62 seconds...);
// the DOS value 0 is such a value.
TDateTime FileDateToDateTime(std::int32_t FileDate);

}  // namespace rtl
