// The framework's format-settings record: what a locale says about writing dates, times
// and numbers, and the process-wide record that the formatting routines read.
#pragma once

#include <array>
#include <cstdint>
#include <string>

namespace rtl {

struct TFormatSettings {
  std::u16string CurrencyString;
  std::uint8_t CurrencyFormat = 0;
  std::uint8_t CurrencyDecimals = 2;
  char16_t DateSeparator = u'/';
  char16_t TimeSeparator = u':';
  char16_t ListSeparator = u',';
  std::u16string ShortDateFormat;
  std::u16string LongDateFormat;
  std::u16string TimeAMString;
  std::u16string TimePMString;
  std::u16string ShortTimeFormat;
  std::u16string LongTimeFormat;
  std::array<std::u16string, 12> ShortMonthNames;
  std::array<std::u16string, 12> LongMonthNames;
  std::array<std::u16string, 7> ShortDayNames;  // Sunday first
  std::array<std::u16string, 7> LongDayNames;
  char16_t ThousandSeparator = u',';
  char16_t DecimalSeparator = u'.';
  std::uint16_t TwoDigitYearCenturyWindow = 50;
  std::uint8_t NegCurrFormat = 0;
  std::u16string NormalizedLocaleName;
};

// The record of a locale (a Windows LCID: 0x0407 German, 0x0409 US English, 0x0800 the
// system default). Dates and times use the framework's letters: the locale's "MM" stays,
// "tt" becomes "ampm". Windows build; natively, the US English record.
TFormatSettings GetLocaleFormatSettings(std::uint32_t lcid);

// The process-wide record: the system default locale's once the program starts.
extern TFormatSettings FormatSettings;

}  // namespace rtl
