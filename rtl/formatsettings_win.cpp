// Format settings read from the system's locale data (rtl/formatsettings.h).
#include <windows.h>

#include "rtl/formatsettings.h"
#include "rtl/ustring.h"

namespace rtl {

namespace {

std::u16string LocaleString(LCID lcid, LCTYPE type, const char16_t* fallback) {
  wchar_t buffer[256];
  const int n = GetLocaleInfoW(lcid, type, buffer, 256);
  if (n <= 1) return fallback;
  return std::u16string(reinterpret_cast<const char16_t*>(buffer), static_cast<size_t>(n - 1));
}

char16_t LocaleChar(LCID lcid, LCTYPE type, char16_t fallback) {
  const std::u16string s = LocaleString(lcid, type, u"");
  return s.empty() ? fallback : s[0];
}

int LocaleInt(LCID lcid, LCTYPE type, int fallback) {
  return StrToIntDef(LocaleString(lcid, type, u""), fallback);
}

}  // namespace

TFormatSettings GetLocaleFormatSettings(std::uint32_t lcid) {
  TFormatSettings f;
  f.CurrencyString = LocaleString(lcid, LOCALE_SCURRENCY, u"");
  f.CurrencyFormat = static_cast<std::uint8_t>(LocaleInt(lcid, LOCALE_ICURRENCY, 0));
  f.NegCurrFormat = static_cast<std::uint8_t>(LocaleInt(lcid, LOCALE_INEGCURR, 0));
  f.CurrencyDecimals = static_cast<std::uint8_t>(LocaleInt(lcid, LOCALE_ICURRDIGITS, 2));
  f.ThousandSeparator = LocaleChar(lcid, LOCALE_STHOUSAND, u',');
  f.DecimalSeparator = LocaleChar(lcid, LOCALE_SDECIMAL, u'.');
  f.DateSeparator = LocaleChar(lcid, LOCALE_SDATE, u'/');
  f.TimeSeparator = LocaleChar(lcid, LOCALE_STIME, u':');
  f.ListSeparator = LocaleChar(lcid, LOCALE_SLIST, u',');
  f.ShortDateFormat = LocaleString(lcid, LOCALE_SSHORTDATE, u"m/d/yy");
  f.LongDateFormat = LocaleString(lcid, LOCALE_SLONGDATE, u"mmmm d, yyyy");
  f.TimeAMString = LocaleString(lcid, LOCALE_S1159, u"am");
  f.TimePMString = LocaleString(lcid, LOCALE_S2359, u"pm");
  // Hours with a leading zero or not, and a 12-hour clock with its AM/PM marker.
  const std::u16string hour = LocaleInt(lcid, LOCALE_ITLZERO, 0) == 0 ? u"h" : u"hh";
  const std::u16string postfix = LocaleInt(lcid, LOCALE_ITIME, 0) == 0 ? u" AMPM" : u"";
  f.ShortTimeFormat = hour + u":mm" + postfix;
  f.LongTimeFormat = hour + u":mm:ss" + postfix;
  for (int i = 0; i < 12; ++i) {
    const auto m = static_cast<LCTYPE>(i);
    f.ShortMonthNames[static_cast<size_t>(i)] =
        LocaleString(lcid, LOCALE_SABBREVMONTHNAME1 + m, u"");
    f.LongMonthNames[static_cast<size_t>(i)] = LocaleString(lcid, LOCALE_SMONTHNAME1 + m, u"");
  }
  // The system counts days from Monday, the framework from Sunday.
  for (int i = 0; i < 7; ++i) {
    const auto day = static_cast<LCTYPE>((i + 6) % 7);
    f.ShortDayNames[static_cast<size_t>(i)] = LocaleString(lcid, LOCALE_SABBREVDAYNAME1 + day, u"");
    f.LongDayNames[static_cast<size_t>(i)] = LocaleString(lcid, LOCALE_SDAYNAME1 + day, u"");
  }
  f.TwoDigitYearCenturyWindow = 50;
  f.NormalizedLocaleName = LocaleString(lcid, LOCALE_SNAME, u"");
  return f;
}

}  // namespace rtl
