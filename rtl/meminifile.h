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
#include "rtl/inifiles.h"

namespace rtl {

class TMemIniFile : public TCustomIniFile {
 public:
  // Reads `fileName` when it exists (a missing or unreadable file gives an empty copy).
  // Without an encoding a byte-order mark decides, else UTF-8 when the bytes are UTF-8 text
  // beyond ASCII, else the ANSI code page. UpdateFile writes with the same encoding and
  // mark, except that a file it makes, and an ANSI file that cannot hold the text, are
  // written in UTF-16LE with its mark, so that no character is lost.
  explicit TMemIniFile(std::u16string fileName, TEncoding* encoding = nullptr);
  ~TMemIniFile() override;

  std::u16string ReadString(const std::u16string& section, const std::u16string& ident,
                            const std::u16string& fallback) const override;
  void WriteString(const std::u16string& section, const std::u16string& ident,
                   const std::u16string& value) override;
  void ReadSection(const std::u16string& section, TStrings& keys) const override;
  void ReadSections(TStrings& sections) const override;
  void EraseSection(const std::u16string& section) override;
  void DeleteKey(const std::u16string& section, const std::u16string& ident) override;

  // The copy as file lines: "[section]", its lines, an empty line after each section.
  void GetStrings(TStrings& lines) const;
  // Replaces the copy with what `lines` hold, read as a file's lines.
  void SetStrings(const TStrings& lines);
  void Clear();
  // Writes the copy to FileName; EFOpenError/EWriteError when the system refuses.
  void UpdateFile() override;

 private:
  struct TSection;
  TSection* Find(std::u16string_view section) const;
  TSection& FindOrAdd(std::u16string_view section);

  TEncoding* encoding_;
  bool chosen_;  // the caller gave the encoding
  bool existed_ = false;
  bool preamble_ = false;
  std::vector<std::unique_ptr<TSection>> sections_;
};

}  // namespace rtl
