// The process-wide format settings and, natively, the one locale the native build knows.
#include "rtl/formatsettings.h"

namespace rtl {

#ifndef _WIN32
TFormatSettings GetLocaleFormatSettings(std::uint32_t /*lcid*/) {
  TFormatSettings f;
  f.CurrencyString = u"$";
  f.DateSeparator = u'/';
  f.TimeSeparator = u':';
  f.ListSeparator = u',';
  f.ShortDateFormat = u"M/d/yyyy";
  f.LongDateFormat = u"dddd, MMMM d, yyyy";
  f.TimeAMString = u"AM";
  f.TimePMString = u"PM";
  f.ShortTimeFormat = u"h:mm AMPM";
  f.LongTimeFormat = u"h:mm:ss AMPM";
  f.ShortMonthNames = {u"Jan", u"Feb", u"Mar", u"Apr", u"May", u"Jun",
                       u"Jul", u"Aug", u"Sep", u"Oct", u"Nov", u"Dec"};
  f.LongMonthNames = {u"January", u"February", u"March",     u"April",   u"May",      u"June",
                      u"July",    u"August",   u"September", u"October", u"November", u"December"};
  f.ShortDayNames = {u"Sun", u"Mon", u"Tue", u"Wed", u"Thu", u"Fri", u"Sat"};
  f.LongDayNames = {u"Sunday",   u"Monday", u"Tuesday", u"Wednesday",
                    u"Thursday", u"Friday", u"Saturday"};
  f.ThousandSeparator = u',';
  f.DecimalSeparator = u'.';
  f.NegCurrFormat = 0;
  f.NormalizedLocaleName = u"en-US";
  return f;
}
#endif

TFormatSettings FormatSettings = GetLocaleFormatSettings(0x0400);  // the user's default

}  // namespace rtl
