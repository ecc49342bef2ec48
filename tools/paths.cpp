// The pure path rules of the tool library (tools/paths.h).
#include "tools/paths.h"

#include <algorithm>

#include "rtl/locale.h"
#include "rtl/sysutils.h"
#include "rtl/ustring.h"

namespace Qm_tools {

std::u16string chkPath(std::u16string_view Path) {
  std::u16string r(Path);
  if (!r.empty() && r.back() != u'\\') r += u'\\';
  return r;
}

std::u16string RemoveSlash(std::u16string_view Path) {
  if (!Path.empty() && Path.back() == u'\\') Path.remove_suffix(1);
  return std::u16string(Path);
}

std::u16string prevDir(std::u16string_view Path) {
  std::u16string_view p = Path.substr(0, 255);
  // A final backslash does not count: the cut is at the one before it.
  // Without such a backslash everything goes: "abc" and "C:" give "", as C:\ does.
  if (p.empty()) return {};
  const size_t at = p.substr(0, p.size() - 1).rfind(u'\\');
  return at == std::u16string_view::npos ? std::u16string() : std::u16string(p.substr(0, at));
}

std::u16string GetValidDataDir(std::u16string_view Dir, std::u16string_view Alternative) {
  const std::u16string lower = rtl::AnsiLowerCase(Dir);
  if (lower.find(u"c:\\programme") != std::u16string::npos ||
      lower.find(u"c:\\program files") != std::u16string::npos)
    return std::u16string(Alternative);
  return std::u16string(Dir);
}

namespace {

bool IsControl(char16_t c) { return c >= 1 && c <= 31; }

}  // namespace

std::u16string qm_GetValidFilename(std::u16string_view Name) {
  std::u16string r(Name);
  for (char16_t& c : r)
    if (IsControl(c) || std::u16string_view(u"'*/:<>?\\|").find(c) != std::u16string_view::npos)
      c = u'_';
  return r;
}

std::u16string qm_GetValidDirName(std::u16string_view Name) {
  std::u16string r(Name);
  for (size_t i = 0; i < r.size(); ++i) {
    char16_t& c = r[i];
    if (IsControl(c) || std::u16string_view(u"\"*/<>?|").find(c) != std::u16string_view::npos)
      c = u'_';
    else if (c == u':' && i != 1)
      c = u'_';
    // The leading pair of a network path stays; any later pair loses its second.
    else if (c == u'\\' && i >= 2 && Name[i - 1] == u'\\')
      c = u'_';
  }
  return r;
}

std::u16string DiskModeForDriveType(unsigned driveType) {
  constexpr unsigned kRemovable = 2;  // DRIVE_REMOVABLE
  return driveType == kRemovable ? u"Mobile" : u"Fixed";
}

std::u16string MapPortable(std::u16string_view arg, std::u16string_view appPath,
                           TPortableMapping mapping, const TExistsFunc& fileExists,
                           const TExistsFunc& dirExists) {
  if (arg.empty() && mapping != TPortableMapping::StrictPath) return {};
  const std::u16string_view drive = appPath.substr(0, 2);
  const std::u16string rest(arg.size() > 2 ? arg.substr(2, 2000) : std::u16string_view());
  if (arg.substr(0, 2) == u"\\\\")
    return std::u16string(appPath.substr(0, 1)) + u":\\usbnet=" + rest;
  const std::u16string whole(arg);
  switch (mapping) {
    case TPortableMapping::File:
      if (dirExists(rtl::ExtractFilePath(whole)) && fileExists(whole)) return whole;
      break;
    case TPortableMapping::Path:
      if (dirExists(whole)) return whole;
      break;
    case TPortableMapping::StrictFile:
    case TPortableMapping::StrictPath: break;
  }
  return std::u16string(drive) + rest;
}

std::u16string NotExistingFilename(std::u16string_view FileName, std::u16string_view StartNr,
                                   const TExistsFunc& exists) {
  const std::u16string ext = rtl::ExtractFileExt(FileName);
  std::u16string base(FileName.substr(0, FileName.size() - ext.size()));
  while (!base.empty() && base.back() >= u'0' && base.back() <= u'9') base.pop_back();
  std::u16string candidate =
      StartNr.empty() ? std::u16string(FileName) : base + std::u16string(StartNr) + ext;
  if (!exists(candidate)) return candidate;
  std::int64_t n = StartNr.empty() ? 1 : rtl::StrToInt(StartNr);
  for (;; ++n) {
    candidate = base + rtl::IntToStr(n) + ext;
    if (!exists(candidate)) return candidate;
  }
}

std::u16string NotExistingDirName(std::u16string_view Dir, const TExistsFunc& exists) {
  std::u16string candidate(Dir);
  for (std::int64_t n = 1; exists(candidate); ++n)
    candidate = std::u16string(Dir) + rtl::IntToStr(n);
  return candidate;
}

std::u16string ExpandedFilename(
    std::u16string_view FileName,
    const std::function<std::u16string(const std::u16string&)>& displayName) {
  if (FileName.find(u"\\\\") != std::u16string_view::npos) return std::u16string(FileName);
  // A final backslash ends the last field rather than opening an empty one.
  if (!FileName.empty() && FileName.back() == u'\\') FileName.remove_suffix(1);
  std::u16string result;
  std::u16string partial;
  size_t start = 0;
  bool first = true;
  // Field by field, as split at '\'; the first field too, so that a relative short name
  // (NOXD~JC1\x.txt) is expanded.
  for (;;) {
    const size_t end = FileName.find(u'\\', start);
    const std::u16string field(FileName.substr(start, end == std::u16string_view::npos
                                                          ? std::u16string_view::npos
                                                          : end - start));
    partial = first ? field : partial + u'\\' + field;
    if (partial.find(u'~') != std::u16string::npos) {
      const std::u16string name = displayName(partial);
      result = chkPath(result) + (name.empty() ? field : name);
    } else {
      result = chkPath(result) + field;
    }
    first = false;
    if (end == std::u16string_view::npos) break;
    start = end + 1;
  }
  return result;
}

}  // namespace Qm_tools
