// The helpers that read and record project texts: leading blanks, parent folders, file names
// made absolute against the current project, and the position records of slPosInfo. Pure;
// they touch no file.
#include <cstddef>

#include "data/NOXEData.h"
#include "tools/paths.h"
#include "tools/search.h"

namespace NOXEData {

namespace {

// Length of GetPrevDir(Dir), so that repeated climbs need not copy the folder each time.
std::size_t PrevDirLength(std::u16string_view Dir) {
  if (Dir.size() < 4) return Dir.size();
  const std::size_t at = Dir.find_last_of(u'\\', Dir.size() - 2);
  return at == std::u16string_view::npos ? Dir.size() : at + 1;
}

}  // namespace

int GetSpaceCount(std::u16string_view S) {
  const std::size_t n = S.find_first_not_of(u' ');
  return static_cast<int>(n == std::u16string_view::npos ? S.size() : n);
}

std::u16string GetPrevDir(std::u16string_view Dir) {
  return std::u16string(Dir.substr(0, PrevDirLength(Dir)));
}

std::u16string GetFileName(std::u16string_view FileName) {
  if (FileName.find(u":\\") != std::u16string_view::npos || FileName.starts_with(u"\\\\") ||
      Project == nullptr)
    return std::u16string(FileName);
  if (FileName.find(u"..") == std::u16string_view::npos &&
      FileName.find_first_of(u"\\/") == std::u16string_view::npos)
    return Qm_tools::chkPath(Project->Path) + std::u16string(FileName);

  if (Project->Path.ends_with(u'\\')) Project->Path.pop_back();
  // Taking out the first "..\" until none is left, and climbing once for each, is the same as
  // this one pass that drops every "..\" as soon as its last character arrives: the pattern
  // cannot overlap itself, so the order of the removals does not change their number or what
  // remains. One pass keeps a name full of "..\" linear.
  std::u16string rest(FileName.size(), u'\0');  // the first `length` characters count
  std::size_t length = 0, climbs = 0;
  for (char16_t c : FileName) {
    rest[length++] = c;
    if (c == u'\\' && length >= 3 && rest[length - 2] == u'.' && rest[length - 3] == u'.') {
      length -= 3;
      ++climbs;
    }
  }
  std::u16string_view dir = Project->Path;
  for (; climbs > 0; --climbs) {
    const std::size_t up = PrevDirLength(dir);
    if (up == dir.size()) break;  // at the top: further climbs change nothing
    dir = dir.substr(0, up);
  }
  return Qm_tools::chkPath(dir).append(rest, 0, length);
}

void SetPosChanges(const rtl::TStrings& List, std::u16string_view FileName) {
  if (slPosInfo == nullptr) return;
  std::u16string entry(FileName);
  entry += u'\x01';
  entry += Qm_tools::ReplaceStr(List.Text(), u"\r\n", u"\x03", true);
  for (int i = 0; i < slPosInfo->Count(); ++i) {
    if (slPosInfo->Get(i).starts_with(FileName)) {
      slPosInfo->Put(i, entry);
      return;
    }
  }
  slPosInfo->Add(entry);
}

}  // namespace NOXEData
