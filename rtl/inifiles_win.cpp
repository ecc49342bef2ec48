// TIniFile (rtl/inifiles.h) over GetPrivateProfileStringW / WritePrivateProfileStringW, with
// the file kept in a form that holds every character written to it.
#include <windows.h>

#include <vector>

#include "rtl/encoding.h"
#include "rtl/handles.h"
#include "rtl/inifiles.h"
#include "rtl/streams.h"
#include "rtl/ustring.h"
#include "rtl/wide.h"

namespace rtl {

namespace {

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

// The file the API works on: a name without a folder is in the Windows directory.
std::u16string ProfilePath(const std::u16string& fileName) {
  if (fileName.find_first_of(u"\\/") != std::u16string::npos) return fileName;
  wchar_t folder[MAX_PATH];
  const UINT n = GetWindowsDirectoryW(folder, MAX_PATH);
  if (n == 0 || n >= MAX_PATH) return fileName;
  return std::u16string(reinterpret_cast<const char16_t*>(folder), n) + u"\\" + fileName;
}

// The kind of the file on disk by its first bytes; `missing` when there is no such file.
TIniFileKind KindOnDisk(const std::u16string& fileName, bool& missing) {
  missing = false;
  const unique_hfile f(CreateFileW(W(fileName), GENERIC_READ,
                                   FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                                   OPEN_EXISTING, FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!f) {
    const DWORD error = GetLastError();
    missing = error == ERROR_FILE_NOT_FOUND || error == ERROR_PATH_NOT_FOUND;
    return TIniFileKind::Ansi;
  }
  std::uint8_t head[3] = {};
  DWORD got = 0;
  if (!ReadFile(f.get(), head, sizeof head, &got, nullptr)) got = 0;
  return IniFileKindOf(head, got);
}

bool WriteWhole(const std::u16string& fileName, const std::vector<std::uint8_t>& bytes,
                DWORD disposition) {
  const unique_hfile f(CreateFileW(W(fileName), GENERIC_WRITE, 0, nullptr, disposition,
                                   FILE_ATTRIBUTE_NORMAL, nullptr));
  DWORD written = 0;
  return f && WriteFile(f.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                        nullptr) &&
         written == bytes.size() && FlushFileBuffers(f.get());
}

// Made ready for a write that names or stores `text`, so that the API loses none of its
// characters: a missing file is made as an empty UTF-16LE file with its mark, which the
// API then writes in UTF-16; an ANSI file that cannot hold `text`, or one with a mark the
// API may not honour, is turned into UTF-16LE once with every line kept. An ANSI file that
// can hold `text` stays as it is, for programs that read it as ANSI.
void KeepEveryCharacter(const std::u16string& name, std::u16string_view text) {
  WritePrivateProfileStringW(nullptr, nullptr, nullptr, W(name));  // the API's cache to disk
  const std::u16string fileName = ProfilePath(name);
  bool missing = false;
  const TIniFileKind kind = KindOnDisk(fileName, missing);
  if (missing) {
    WriteWhole(fileName, TEncoding::Unicode()->GetPreamble(), CREATE_NEW);
    return;
  }
  if (kind == TIniFileKind::Utf16LE || (kind == TIniFileKind::Ansi && FitsAnsi(text))) return;
  std::vector<std::uint8_t> bytes;
  try {
    bytes = ReadFileBytes(fileName);
  } catch (const Exception&) {
    return;  // unreadable now: the API's own call reports what it can
  }
  const std::vector<std::uint8_t> converted = IniFileAsUtf16(bytes);
  // Written beside the file and swapped in, so that a failure leaves the file as it was.
  const std::u16string swap = fileName + u".nox~";
  if (WriteWhole(swap, converted, CREATE_ALWAYS) &&
      ReplaceFileW(W(fileName), W(swap), nullptr, REPLACEFILE_IGNORE_MERGE_ERRORS, nullptr,
                   nullptr))
    return;
  DeleteFileW(W(swap));
  WriteWhole(fileName, converted, TRUNCATE_EXISTING);
}

// Whether a name cannot be in the file: an ANSI file holds no name with a character its
// code page lacks, where the API would find the name with '?' in its place.
bool CannotHoldName(const std::u16string& fileName, std::u16string_view names) {
  if (FitsAnsi(names)) return false;
  bool missing = false;
  return KindOnDisk(ProfilePath(fileName), missing) == TIniFileKind::Ansi;
}

}  // namespace

TIniFile::~TIniFile() { WritePrivateProfileStringW(nullptr, nullptr, nullptr, W(fileName_)); }

std::u16string TIniFile::ReadString(const std::u16string& section, const std::u16string& ident,
                                    const std::u16string& fallback) const {
  if (CannotHoldName(fileName_, section + ident)) return fallback;
  wchar_t buffer[2048];
  const DWORD length =
      GetPrivateProfileStringW(W(section), W(ident), W(fallback), buffer, 2048, W(fileName_));
  return std::u16string(reinterpret_cast<const char16_t*>(buffer), length);
}

void TIniFile::WriteString(const std::u16string& section, const std::u16string& ident,
                           const std::u16string& value) {
  KeepEveryCharacter(fileName_, section + ident + value);
  if (!WritePrivateProfileStringW(W(section), W(ident), W(value), W(fileName_)))
    throw EIniFileException("cannot write " + Utf16ToUtf8(fileName_));
}

void TIniFile::ReadSection(const std::u16string& section, TStrings& keys) const {
  if (CannotHoldName(fileName_, section)) return keys.Clear();
  ReadList(W(section), fileName_, keys);
}

void TIniFile::ReadSections(TStrings& sections) const { ReadList(nullptr, fileName_, sections); }

void TIniFile::EraseSection(const std::u16string& section) {
  if (CannotHoldName(fileName_, section)) return;
  if (!WritePrivateProfileStringW(W(section), nullptr, nullptr, W(fileName_)))
    throw EIniFileException("cannot write " + Utf16ToUtf8(fileName_));
}

void TIniFile::DeleteKey(const std::u16string& section, const std::u16string& ident) {
  if (CannotHoldName(fileName_, section + ident)) return;
  WritePrivateProfileStringW(W(section), W(ident), nullptr, W(fileName_));
}

void TIniFile::UpdateFile() { WritePrivateProfileStringW(nullptr, nullptr, nullptr, W(fileName_)); }

}  // namespace rtl
