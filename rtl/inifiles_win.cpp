// TIniFile (rtl/inifiles.h) over GetPrivateProfileStringW / WritePrivateProfileStringW.
#include <windows.h>

#include <vector>

#include "rtl/inifiles.h"
#include "rtl/ustring.h"

namespace rtl {

namespace {

const wchar_t* W(const std::u16string& s) { return reinterpret_cast<const wchar_t*>(s.c_str()); }

// The null-separated list that GetPrivateProfileStringW gives for a null key (the keys of
// a section) or a null section (the section names), into `lines`. The buffer grows until
// the list fits: the API says "too small" only by filling it to size - 2.
void ReadList(const wchar_t* section, const std::u16string& fileName, TStrings& lines) {
  std::vector<wchar_t> buffer(16384);
  DWORD length;
  for (;;) {
    length = GetPrivateProfileStringW(section, nullptr, nullptr, buffer.data(),
                                      static_cast<DWORD>(buffer.size()), W(fileName));
    if (length < buffer.size() - 2) break;
    buffer.resize(buffer.size() * 2);
  }
  lines.BeginUpdate();
  lines.Clear();
  for (const wchar_t* p = buffer.data(); p < buffer.data() + length && *p != L'\0';) {
    const std::u16string line(reinterpret_cast<const char16_t*>(p));
    lines.Add(line);
    p += line.size() + 1;
  }
  lines.EndUpdate();
}

}  // namespace

TIniFile::~TIniFile() { WritePrivateProfileStringW(nullptr, nullptr, nullptr, W(fileName_)); }

std::u16string TIniFile::ReadString(const std::u16string& section, const std::u16string& ident,
                                    const std::u16string& fallback) const {
  wchar_t buffer[2048];
  const DWORD length =
      GetPrivateProfileStringW(W(section), W(ident), W(fallback), buffer, 2048, W(fileName_));
  return std::u16string(reinterpret_cast<const char16_t*>(buffer), length);
}

void TIniFile::WriteString(const std::u16string& section, const std::u16string& ident,
                           const std::u16string& value) {
  if (!WritePrivateProfileStringW(W(section), W(ident), W(value), W(fileName_)))
    throw EIniFileException("cannot write " + Utf16ToUtf8(fileName_));
}

void TIniFile::ReadSection(const std::u16string& section, TStrings& keys) const {
  ReadList(W(section), fileName_, keys);
}

void TIniFile::ReadSections(TStrings& sections) const { ReadList(nullptr, fileName_, sections); }

void TIniFile::EraseSection(const std::u16string& section) {
  if (!WritePrivateProfileStringW(W(section), nullptr, nullptr, W(fileName_)))
    throw EIniFileException("cannot write " + Utf16ToUtf8(fileName_));
}

void TIniFile::DeleteKey(const std::u16string& section, const std::u16string& ident) {
  WritePrivateProfileStringW(W(section), W(ident), nullptr, W(fileName_));
}

void TIniFile::UpdateFile() { WritePrivateProfileStringW(nullptr, nullptr, nullptr, W(fileName_)); }

}  // namespace rtl
