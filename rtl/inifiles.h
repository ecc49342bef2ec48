// INI files: TCustomIniFile, what every INI file offers, and TIniFile, the one through the
// Windows profile API (TMemIniFile, held in memory, is in rtl/meminifile.h).
//
// TIniFile works as the framework's does: every call opens the file, reads or writes one
// thing and closes it again, so other processes see each write at once and nothing is
// held between calls. No character is lost: a file it makes starts with the UTF-16LE
// mark, in which the API writes UTF-16; an ANSI file (as older programs wrote it) stays
// ANSI until a write it cannot hold, which turns it into UTF-16 once with all it held. The API's own rules apply: section and key names ignore case,
// values lose surrounding blanks and one pair of surrounding quotes when read, a file name
// without a path means the Windows directory, and a missing file reads as empty.
#pragma once

#include <cstddef>
#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "rtl/classes.h"

namespace rtl {

// A write the system refused (read-only file, missing folder).
class EIniFileException : public Exception {
 public:
  using Exception::Exception;
};

// The integer an INI value stands for: decimal with optional sign, or hexadecimal after
// "0x" or "$"; `fallback` for anything else.
//   IniStrToInt(u"42", 0) == 42   IniStrToInt(u"$1F", 0) == 31   IniStrToInt(u"4 2", 7) == 7
int IniStrToInt(std::u16string_view text, int fallback);

// How the system's profile API reads a file, by its first bytes: a file that starts with
// the UTF-16LE mark holds every character; one without a mark is read and written in the
// ANSI code page; other marks (UTF-8, UTF-16BE) only some versions of the API honour.
enum class TIniFileKind { Ansi, Utf16LE, OtherMark };
TIniFileKind IniFileKindOf(const std::uint8_t* data, std::size_t size);

// A profile file's bytes as the same text in UTF-16LE with its mark, every line kept:
// sections, keys, values, comments and blank lines. A file without a mark is read in the
// ANSI code page, as the API reads it; a marked one by its mark.
std::vector<std::uint8_t> IniFileAsUtf16(const std::vector<std::uint8_t>& bytes);

// The framework's abstract INI file: strings, sections and keys are the kind's own
// business; numbers and flags are read and written as text the same way for every kind.
class TCustomIniFile : public TObject {
 public:
  explicit TCustomIniFile(std::u16string fileName) : fileName_(std::move(fileName)) {}
  TCustomIniFile(const TCustomIniFile&) = delete;
  TCustomIniFile& operator=(const TCustomIniFile&) = delete;

  const std::u16string& FileName() const { return fileName_; }

  // The value, or `fallback` when the key or file is missing.
  virtual std::u16string ReadString(const std::u16string& section, const std::u16string& ident,
                                    const std::u16string& fallback) const = 0;
  virtual void WriteString(const std::u16string& section, const std::u16string& ident,
                           const std::u16string& value) = 0;
  // IniStrToInt of the value; `fallback` when missing or not a number.
  int ReadInteger(const std::u16string& section, const std::u16string& ident, int fallback) const;
  void WriteInteger(const std::u16string& section, const std::u16string& ident, int value);
  // Any integer but 0 reads as true; what is not an integer ("true") gives `fallback`.
  bool ReadBool(const std::u16string& section, const std::u16string& ident, bool fallback) const;
  // Writes "1" or "0".
  void WriteBool(const std::u16string& section, const std::u16string& ident, bool value);

  // True when the section holds at least one key: an empty section does not count.
  bool SectionExists(const std::u16string& section) const;
  bool ValueExists(const std::u16string& section, const std::u16string& ident) const;
  // The section's keys, in file order, replacing what `keys` held.
  virtual void ReadSection(const std::u16string& section, TStrings& keys) const = 0;
  // The file's section names, in file order, replacing what `sections` held.
  virtual void ReadSections(TStrings& sections) const = 0;
  // Removes the section with its keys.
  virtual void EraseSection(const std::u16string& section) = 0;
  // Removes one key; a missing key or file is no error.
  virtual void DeleteKey(const std::u16string& section, const std::u16string& ident) = 0;
  // Brings the file on disk up to date.
  virtual void UpdateFile() = 0;

 protected:
  std::u16string fileName_;
};

#ifdef _WIN32
class TIniFile : public TCustomIniFile {
 public:
  using TCustomIniFile::TCustomIniFile;
  // Flushes the system's cache of the file (UpdateFile).
  ~TIniFile() override;

  // Values are read into the framework's buffer of 2047 characters; a longer value comes
  // back cut there.
  std::u16string ReadString(const std::u16string& section, const std::u16string& ident,
                            const std::u16string& fallback) const override;
  // Raises EIniFileException when the system refuses the write.
  void WriteString(const std::u16string& section, const std::u16string& ident,
                   const std::u16string& value) override;
  void ReadSection(const std::u16string& section, TStrings& keys) const override;
  void ReadSections(TStrings& sections) const override;
  // Raises EIniFileException when the system refuses.
  void EraseSection(const std::u16string& section) override;
  void DeleteKey(const std::u16string& section, const std::u16string& ident) override;
  // Writes the system's cached copy of the file to disk.
  void UpdateFile() override;
};
#endif

}  // namespace rtl
