// What every INI file shares (rtl/inifiles.h): numbers and flags as text, and the tests
// for sections and keys through ReadSection.
#include "rtl/inifiles.h"

#include "rtl/encoding.h"
#include "rtl/ustring.h"

namespace rtl {

namespace {

// Hexadecimal digits after a "0x" or "$" prefix (already removed), as the framework's
// string-to-integer conversion reads them; false for anything else.
bool HexValue(std::u16string_view digits, bool negative, int& value) {
  if (digits.empty() || digits.size() > 8) return false;
  unsigned result = 0;
  for (char16_t c : digits) {
    unsigned d;
    if (c >= u'0' && c <= u'9')
      d = c - u'0';
    else if (c >= u'a' && c <= u'f')
      d = c - u'a' + 10;
    else if (c >= u'A' && c <= u'F')
      d = c - u'A' + 10;
    else
      return false;
    result = result * 16 + d;
  }
  value = static_cast<int>(negative ? 0u - result : result);
  return true;
}

}  // namespace

int IniStrToInt(std::u16string_view text, int fallback) {
  const std::u16string trimmed = Trim(text);
  std::u16string_view digits(trimmed);
  const bool negative = !digits.empty() && digits.front() == u'-';
  if (negative || (!digits.empty() && digits.front() == u'+')) digits.remove_prefix(1);
  int value;
  if (digits.starts_with(u"0x") || digits.starts_with(u"0X"))
    return HexValue(digits.substr(2), negative, value) ? value : fallback;
  if (digits.starts_with(u"$"))
    return HexValue(digits.substr(1), negative, value) ? value : fallback;
  return StrToIntDef(trimmed, fallback);
}

int TCustomIniFile::ReadInteger(const std::u16string& section, const std::u16string& ident,
                                int fallback) const {
  return IniStrToInt(ReadString(section, ident, u""), fallback);
}

void TCustomIniFile::WriteInteger(const std::u16string& section, const std::u16string& ident,
                                  int value) {
  WriteString(section, ident, IntToStr(value));
}

bool TCustomIniFile::ReadBool(const std::u16string& section, const std::u16string& ident,
                              bool fallback) const {
  return ReadInteger(section, ident, fallback ? 1 : 0) != 0;
}

void TCustomIniFile::WriteBool(const std::u16string& section, const std::u16string& ident,
                               bool value) {
  WriteString(section, ident, value ? u"1" : u"0");
}

bool TCustomIniFile::SectionExists(const std::u16string& section) const {
  TStringList keys;
  ReadSection(section, keys);
  return keys.Count() > 0;
}

bool TCustomIniFile::ValueExists(const std::u16string& section, const std::u16string& ident) const {
  TStringList keys;
  ReadSection(section, keys);
  return keys.IndexOf(ident) >= 0;
}

TIniFileKind IniFileKindOf(const std::uint8_t* data, std::size_t size) {
  std::size_t mark = 0;
  const TEncoding* marked = TEncoding::FromPreamble(data, size, mark);
  if (marked == nullptr) return TIniFileKind::Ansi;
  return marked == TEncoding::Unicode() ? TIniFileKind::Utf16LE : TIniFileKind::OtherMark;
}

std::vector<std::uint8_t> IniFileAsUtf16(const std::vector<std::uint8_t>& bytes) {
  std::size_t mark = 0;
  const TEncoding* encoding = TEncoding::FromPreamble(bytes.data(), bytes.size(), mark);
  if (encoding == nullptr) encoding = TEncoding::ANSI();
  const std::u16string text = encoding->GetString(bytes.data() + mark, bytes.size() - mark);
  std::vector<std::uint8_t> result = TEncoding::Unicode()->GetPreamble();
  const std::vector<std::uint8_t> body = TEncoding::Unicode()->GetBytes(text);
  result.insert(result.end(), body.begin(), body.end());
  return result;
}

}  // namespace rtl
