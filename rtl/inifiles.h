// INI files through the Windows profile API, as the framework's TIniFile does it: every
// call opens the file, reads or writes one thing and closes it again, so other processes
// see each write at once and nothing is held between calls. Windows build only.
//
// The API's own rules apply: section and key names ignore case, values lose surrounding
// blanks and one pair of surrounding quotes when read, a file name without a path means
// the Windows directory, and a missing file reads as empty.
#pragma once

#include <stdexcept>
#include <string>

#include "rtl/classes.h"

namespace rtl {

// A write the system refused (read-only file, missing folder).
class EIniFileException : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class TIniFile : public TObject {
 public:
  explicit TIniFile(std::u16string fileName);
  // Flushes the system's cache of the file (UpdateFile).
  ~TIniFile() override;
  TIniFile(const TIniFile&) = delete;
  TIniFile& operator=(const TIniFile&) = delete;

  const std::u16string& FileName() const { return fileName_; }

  // The value, or `fallback` when the key or file is missing. Values are read into the
  // framework's buffer of 2047 characters; a longer value comes back cut there.
  std::u16string ReadString(const std::u16string& section, const std::u16string& ident,
                            const std::u16string& fallback) const;
  // Raises EIniFileException when the system refuses the write.
  void WriteString(const std::u16string& section, const std::u16string& ident,
                   const std::u16string& value);
  // Decimal, or hexadecimal after "0x" or "$"; `fallback` when missing or not a number.
  //   "42" -> 42   "0x1F" -> 31   "$1F" -> 31   "4 2" -> fallback
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
  void ReadSection(const std::u16string& section, TStrings& keys) const;
  // The file's section names, in file order, replacing what `sections` held.
  void ReadSections(TStrings& sections) const;
  // Removes the section with its keys; raises EIniFileException when the system refuses.
  void EraseSection(const std::u16string& section);
  // Removes one key; a missing key or file is no error.
  void DeleteKey(const std::u16string& section, const std::u16string& ident);
  // Writes the system's cached copy of the file to disk.
  void UpdateFile();

 private:
  std::u16string fileName_;
};

}  // namespace rtl
