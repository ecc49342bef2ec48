// TMemIniFile (rtl/meminifile.h): the file as sections of lines in memory.
#include "rtl/meminifile.h"

#include <algorithm>

#include "rtl/locale.h"
#include "rtl/streams.h"
#include "rtl/ustring.h"

namespace rtl {

// A section's lines are "key=value" (or a bare line kept as read); the list compares
// names without regard to case.
struct TMemIniFile::TSection {
  std::u16string Name;
  TStringList Lines;
};

TMemIniFile::TMemIniFile(std::u16string fileName, TEncoding* encoding)
    : TCustomIniFile(std::move(fileName)), encoding_(encoding), chosen_(encoding != nullptr) {
  std::vector<std::uint8_t> bytes;
  try {
    bytes = ReadFileBytes(fileName_);
    existed_ = true;
  } catch (const Exception&) {
    // A missing or unreadable file is an empty one: the first UpdateFile makes it.
  }
  std::size_t skip = 0;
  if (encoding_ == nullptr) {
    encoding_ = TEncoding::FromPreamble(bytes.data(), bytes.size(), skip);
    preamble_ = encoding_ != nullptr;
    if (encoding_ == nullptr)
      encoding_ = IsMultiByteUtf8(bytes.data(), bytes.size()) ? TEncoding::UTF8() : TEncoding::ANSI();
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
  const std::u16string all = lines.Text();
  // A new file, and an ANSI one that cannot hold the text, become UTF-16LE with its mark,
  // which keeps every character and which the system's profile API reads as well.
  if ((!existed_ && !chosen_) || (encoding_ == TEncoding::ANSI() && !FitsAnsi(all))) {
    encoding_ = TEncoding::Unicode();
    preamble_ = true;
  }
  std::vector<std::uint8_t> bytes;
  if (preamble_) bytes = encoding_->GetPreamble();
  const std::vector<std::uint8_t> text = encoding_->GetBytes(all);
  bytes.insert(bytes.end(), text.begin(), text.end());
  TFileStream file(fileName_, fmCreate);
  if (!bytes.empty()) file.WriteBuffer(bytes.data(), bytes.size());
  existed_ = true;
}

}  // namespace rtl
