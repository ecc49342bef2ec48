// TMemIniFile (rtl/meminifile.h) and the integer rule shared with TIniFile.
#include "rtl/meminifile.h"

#include <algorithm>

#include "rtl/locale.h"
#include "rtl/streams.h"
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
  if (digits.starts_with(u"$")) return HexValue(digits.substr(1), negative, value) ? value : fallback;
  return StrToIntDef(trimmed, fallback);
}

// A section's lines are "key=value" (or a bare line kept as read); the list compares
// names without regard to case.
struct TMemIniFile::TSection {
  std::u16string Name;
  TStringList Lines;
};

TMemIniFile::TMemIniFile(std::u16string fileName, TEncoding* encoding)
    : fileName_(std::move(fileName)), encoding_(encoding) {
  std::vector<std::uint8_t> bytes;
  try {
    bytes = ReadFileBytes(fileName_);
  } catch (const Exception&) {
    // A missing or unreadable file is an empty one: the first UpdateFile makes it.
  }
  std::size_t skip = 0;
  if (encoding_ == nullptr) {
    encoding_ = TEncoding::FromPreamble(bytes.data(), bytes.size(), skip);
    preamble_ = encoding_ != nullptr;
    if (encoding_ == nullptr) encoding_ = TEncoding::ANSI();
  } else if (encoding_->StartsWithPreamble(bytes.data(), bytes.size())) {
    skip = encoding_->GetPreamble().size();
    preamble_ = true;
  }
  if (bytes.size() <= skip) return;
  TStringList lines;
  lines.SetText(encoding_->GetString(bytes.data() + skip, bytes.size() - skip));
  SetStrings(lines);
}

TMemIniFile::~TMemIniFile() = default;

TMemIniFile::TSection* TMemIniFile::Find(std::u16string_view section) const {
  for (const auto& s : sections_)
    if (AnsiSameText(s->Name, section)) return s.get();
  return nullptr;
}

TMemIniFile::TSection& TMemIniFile::FindOrAdd(std::u16string_view section) {
  if (TSection* s = Find(section)) return *s;
  sections_.push_back(std::make_unique<TSection>());
  sections_.back()->Name = std::u16string(section);
  return *sections_.back();
}

std::u16string TMemIniFile::ReadString(const std::u16string& section,
                                       const std::u16string& ident,
                                       const std::u16string& fallback) const {
  const TSection* s = Find(section);
  if (s == nullptr) return fallback;
  const int i = s->Lines.IndexOfName(ident);
  return i < 0 ? fallback : s->Lines.ValueFromIndex(i);
}

void TMemIniFile::WriteString(const std::u16string& section, const std::u16string& ident,
                              const std::u16string& value) {
  TSection& s = FindOrAdd(section);
  const std::u16string line = ident + u"=" + value;
  const int i = s.Lines.IndexOfName(ident);
  if (i < 0)
    s.Lines.Add(line);
  else
    s.Lines.Put(i, line);
}

int TMemIniFile::ReadInteger(const std::u16string& section, const std::u16string& ident,
                             int fallback) const {
  return IniStrToInt(ReadString(section, ident, u""), fallback);
}

void TMemIniFile::WriteInteger(const std::u16string& section, const std::u16string& ident,
                               int value) {
  WriteString(section, ident, IntToStr(value));
}

bool TMemIniFile::ReadBool(const std::u16string& section, const std::u16string& ident,
                           bool fallback) const {
  return ReadInteger(section, ident, fallback ? 1 : 0) != 0;
}

void TMemIniFile::WriteBool(const std::u16string& section, const std::u16string& ident,
                            bool value) {
  WriteString(section, ident, value ? u"1" : u"0");
}

bool TMemIniFile::SectionExists(const std::u16string& section) const {
  return Find(section) != nullptr;
}

bool TMemIniFile::ValueExists(const std::u16string& section, const std::u16string& ident) const {
  const TSection* s = Find(section);
  return s != nullptr && s->Lines.IndexOfName(ident) >= 0;
}

void TMemIniFile::ReadSection(const std::u16string& section, TStrings& keys) const {
  keys.BeginUpdate();
  keys.Clear();
  if (const TSection* s = Find(section))
    for (int i = 0; i < s->Lines.Count(); ++i) {
      const std::u16string name = s->Lines.Names(i);
      if (!name.empty()) keys.Add(name);
    }
  keys.EndUpdate();
}

void TMemIniFile::ReadSections(TStrings& sections) const {
  sections.BeginUpdate();
  sections.Clear();
  for (const auto& s : sections_) sections.Add(s->Name);
  sections.EndUpdate();
}

void TMemIniFile::EraseSection(const std::u16string& section) {
  std::erase_if(sections_, [&](const auto& s) { return AnsiSameText(s->Name, section); });
}

void TMemIniFile::DeleteKey(const std::u16string& section, const std::u16string& ident) {
  if (TSection* s = Find(section)) {
    const int i = s->Lines.IndexOfName(ident);
    if (i >= 0) s->Lines.Delete(i);
  }
}

void TMemIniFile::GetStrings(TStrings& lines) const {
  lines.BeginUpdate();
  lines.Clear();
  for (const auto& s : sections_) {
    lines.Add(u"[" + s->Name + u"]");
    for (int i = 0; i < s->Lines.Count(); ++i) lines.Add(s->Lines[i]);
    lines.Add(u"");
  }
  lines.EndUpdate();
}

void TMemIniFile::SetStrings(const TStrings& lines) {
  Clear();
  TSection* current = nullptr;
  for (int i = 0; i < lines.Count(); ++i) {
    const std::u16string line = Trim(lines[i]);
    if (line.empty() || line.front() == u';') continue;
    if (line.front() == u'[' && line.back() == u']' && line.size() >= 2) {
      current = &FindOrAdd(Trim(std::u16string_view(line).substr(1, line.size() - 2)));
      continue;
    }
    if (current == nullptr) continue;
    const std::size_t eq = line.find(u'=');
    if (eq == std::u16string::npos)
      current->Lines.Add(line);
    else
      current->Lines.Add(Trim(std::u16string_view(line).substr(0, eq)) + u"=" +
                         Trim(std::u16string_view(line).substr(eq + 1)));
  }
}

void TMemIniFile::Clear() { sections_.clear(); }

void TMemIniFile::UpdateFile() {
  TStringList lines;
  GetStrings(lines);
  std::vector<std::uint8_t> bytes;
  if (preamble_) bytes = encoding_->GetPreamble();
  const std::vector<std::uint8_t> text = encoding_->GetBytes(lines.Text());
  bytes.insert(bytes.end(), text.begin(), text.end());
  TFileStream file(fileName_, fmCreate);
  if (!bytes.empty()) file.WriteBuffer(bytes.data(), bytes.size());
}

}  // namespace rtl
