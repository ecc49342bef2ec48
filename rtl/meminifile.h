// INI files held in memory, as the framework's TMemIniFile: the file is read once when the
// object is made, every read and write works on the copy, and UpdateFile writes the whole
// copy back. Programs that change many values at once use it to touch the disk once.
// Pure: builds and works in both builds.
//
// Sections and keys ignore case as the system's profile files do; lines are trimmed, and
// around '=' the blanks go. Comment lines (';') and lines before the first section are
// dropped when the file is read.
#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "rtl/classes.h"
#include "rtl/encoding.h"

namespace rtl {

// The integer an INI value stands for: decimal with optional sign, or hexadecimal after
// "0x" or "$"; `fallback` for anything else. Both INI classes read integers so.
//   IniStrToInt(u"42", 0) == 42   IniStrToInt(u"$1F", 0) == 31   IniStrToInt(u"4 2", 7) == 7
int IniStrToInt(std::u16string_view text, int fallback);

class TMemIniFile : public TObject {
 public:
  // Reads `fileName` when it exists (a missing or unreadable file gives an empty copy).
  // Without an encoding a byte-order mark decides, else the ANSI code page; UpdateFile
  // writes with the same encoding and mark.
  explicit TMemIniFile(std::u16string fileName, TEncoding* encoding = nullptr);
  ~TMemIniFile() override;
  TMemIniFile(const TMemIniFile&) = delete;
  TMemIniFile& operator=(const TMemIniFile&) = delete;

  const std::u16string& FileName() const { return fileName_; }

  std::u16string ReadString(const std::u16string& section, const std::u16string& ident,
                            const std::u16string& fallback) const;
  void WriteString(const std::u16string& section, const std::u16string& ident,
                   const std::u16string& value);
  int ReadInteger(const std::u16string& section, const std::u16string& ident, int fallback) const;
  void WriteInteger(const std::u16string& section, const std::u16string& ident, int value);
  bool ReadBool(const std::u16string& section, const std::u16string& ident, bool fallback) const;
  void WriteBool(const std::u16string& section, const std::u16string& ident, bool value);

  bool SectionExists(const std::u16string& section) const;
  bool ValueExists(const std::u16string& section, const std::u16string& ident) const;
  void ReadSection(const std::u16string& section, TStrings& keys) const;
  void ReadSections(TStrings& sections) const;
  void EraseSection(const std::u16string& section);
  void DeleteKey(const std::u16string& section, const std::u16string& ident);

  // The copy as file lines: "[section]", its lines, an empty line after each section.
  void GetStrings(TStrings& lines) const;
  // Replaces the copy with what `lines` hold, read as a file's lines.
  void SetStrings(const TStrings& lines);
  void Clear();
  // Writes the copy to FileName; EFOpenError/EWriteError when the system refuses.
  void UpdateFile();

 private:
  struct TSection;
  TSection* Find(std::u16string_view section) const;
  TSection& FindOrAdd(std::u16string_view section);

  std::u16string fileName_;
  TEncoding* encoding_;
  bool preamble_ = false;
  std::vector<std::unique_ptr<TSection>> sections_;
};

}  // namespace rtl
