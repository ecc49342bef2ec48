// The pure rules of the system-information family: names and version texts from the two
// version sources, and the stopwatch's text. The stopwatch's globals live here too.
#include "tools/sysinfo.h"

#include <charconv>

#include "rtl/ustring.h"

namespace Qm_tools {

std::int64_t iTimerStart = 0;
std::int64_t iTimerStop = 0;
std::int64_t iTimerFreq = 0;

namespace {

constexpr std::uint32_t kConsumerLine = 1;
constexpr std::uint32_t kNTLine = 2;
// The first build of Windows 11, which still calls itself 10.0.
constexpr int kFirstWindows11Build = 22000;

std::u16string Num(std::uint32_t n) { return rtl::IntToStr(n); }

// Table shared by both names: the NT line from 6.1 on is where they differ.
std::u16string NameOf(const TVersionQuery& q, bool ok, const rtl::TOSVersion& os, bool digits) {
  if (!ok) return u"Unknown";
  const std::uint32_t major = q.MajorVersion, minor = q.MinorVersion;
  if (q.PlatformId == kConsumerLine) {
    if (major != 4) return u"Unknown";
    switch (minor) {
      case 0: return u"Windows 95";
      case 10: return q.CSDVersion.size() > 1 && q.CSDVersion[1] == u'A' ? u"Windows 98SE"
                                                                         : u"Windows 98";
      case 90: return u"Windows ME";
      default: return u"Unknown";
    }
  }
  if (q.PlatformId != kNTLine) return u"Unknown";
  if (major < 5) return u"Windows NT";
  std::u16string name;
  if (major == 5 && minor == 0) {
    name = u"Windows 2000";
  } else if (major == 5 && (minor == 1 || minor == 2)) {
    name = u"Windows XP";
  } else if (major == 6 && minor == 0) {
    name = u"Windows Vista";
  } else if (major == 6 && minor == 1) {
    name = digits ? u"Windows 7" : u"Windows Seven";
  } else if (major == 6 && minor == 2) {
    name = digits ? u"Windows 8" : u"Windows Eight";
  } else if (major == 6 && minor == 3) {
    name = digits ? u"Windows 8.1" : u"Windows Eight";
  } else if (major == 10 && minor == 0) {
    name = digits ? u"Windows 10" : u"Windows Ten";
    if (os.Build >= kFirstWindows11Build) name = u"Windows 11";
  } else {
    name = digits ? u"Unknown:" + Num(major) + u"." + Num(minor) : u"Unknown";
  }
  return name;
}

// printf's %.2d: at least two digits.
std::u16string TwoDigits(std::uint32_t n) { return (n < 10 ? u"0" : u"") + Num(n); }

}  // namespace

std::u16string OSNameOf(const TVersionQuery& query, bool ok, const rtl::TOSVersion& os) {
  return NameOf(query, ok, os, false);
}

std::u16string OSNameExOf(const TVersionQuery& query, bool ok, const rtl::TOSVersion& os,
                          bool WithBuild, bool WithServicePack) {
  std::u16string name = NameOf(query, ok, os, true);
  if (ok && query.PlatformId == kNTLine) {
    if (WithBuild) name += u", Build " + Num(query.BuildNumber);
    if (WithServicePack) name += u" " + query.CSDVersion;
  }
  return name;
}

std::u16string OSNameEx2Of(const rtl::TOSVersion& os, bool Long) {
  if (!Long) return u"WIN " + rtl::IntToStr(os.Major) + u"." + rtl::IntToStr(os.Minor);
  if (os.Build < kFirstWindows11Build) return os.Name + u" " + u" Build " + rtl::IntToStr(os.Build);
  return rtl::StringReplaceAll(os.ToString(), u"Windows 10", u"Windows 11");
}

std::u16string WindowsVersionOf(const TVersionQuery& query, bool ok) {
  if (!ok) return u"GetVersionEx() Error";
  const std::uint32_t major = query.MajorVersion, minor = query.MinorVersion;
  const std::uint32_t build = query.BuildNumber & 0xFFFF;
  const std::u16string version = Num(major) + u"." + Num(minor);
  const std::u16string versionBuild = version + u" Build " + Num(build);
  if (query.PlatformId == kConsumerLine) {
    if (major == 4 && minor != 0)
      return u"Windows 98 - Version " + Num(major) + u"." + TwoDigits(minor) + u"." + Num(build);
    return u"Windows 95 - Version " + versionBuild;
  }
  if (query.PlatformId == kNTLine) {
    if (major < 5) return u"Windows NT Version " + version + u". Build " + Num(build);
    if (major == 5 && minor == 1) return u"Windows XP Version " + versionBuild;
    if (major == 5 && minor == 2) return u"Windows XP Server " + versionBuild;
    if (major == 6 && minor == 0) return u"Windows Vista Version " + versionBuild;
    if (major == 6 && minor == 1) return u"Windows 7 Version " + versionBuild;
    if (major == 6 && minor == 2) return u"Windows 8 Version " + versionBuild;
    if (major == 6 && minor == 3) return u"Windows 8.1 Version " + versionBuild;
    if (major == 10 && minor == 0)
      return (build < kFirstWindows11Build ? u"Windows 10 Version " : u"Windows 11 Version ") +
             versionBuild;
  }
  return u"Windows Version " + versionBuild;
}

bool IsWin95OSR2Of(const TVersionQuery& query) {
  return query.PlatformId == kConsumerLine &&
         !(query.MajorVersion == 4 && query.MinorVersion != 0) &&
         (query.BuildNumber & 0xFFFF) > 1000;
}

std::u16string TimerTextOf(std::int64_t start, std::int64_t stop, std::int64_t frequency,
                           char16_t decimalSeparator) {
  // The difference wraps rather than overflows, as the counter's own arithmetic does.
  const auto ticks = static_cast<std::int64_t>(static_cast<std::uint64_t>(stop) -
                                               static_cast<std::uint64_t>(start));
  const double ms =
      frequency == 0 ? 0.0 : static_cast<double>(ticks) / static_cast<double>(frequency) * 1000;
  // The framework's "%f" has two decimals, rounded half away from zero on the decimal
  // digits: written with more decimals first, then rounded by hand.
  char buffer[400];  // room for twenty decimals of the largest double
  const auto [end, ec] =
      std::to_chars(buffer, buffer + sizeof buffer, ms, std::chars_format::fixed, 20);
  std::string digits(buffer, ec == std::errc() ? end : buffer);
  const bool negative = !digits.empty() && digits[0] == '-';
  if (negative) digits.erase(0, 1);
  const std::size_t point = digits.find('.');
  if (point == std::string::npos) return u"0" + std::u16string(1, decimalSeparator) + u"00 ms";
  const bool up = digits.size() > point + 3 && digits[point + 3] >= '5';
  digits.resize(point + 3);
  digits.erase(point, 1);
  // Carry the rounding through the digits; a carry out of the first adds a digit.
  for (std::size_t i = digits.size(); up && i-- > 0;) {
    if (digits[i] != '9') {
      ++digits[i];
      break;
    }
    digits[i] = '0';
    if (i == 0) digits.insert(0, 1, '1');
  }
  std::u16string text = negative && digits.find_first_not_of('0') != std::string::npos ? u"-" : u"";
  text.append(digits.begin(), digits.end() - 2);
  text += decimalSeparator;
  text.append(digits.end() - 2, digits.end());
  return text + u" ms";
}

}  // namespace Qm_tools
