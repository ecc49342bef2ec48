// Conversions and file-name helpers (rtl/sysutils.h).
#include "rtl/sysutils.h"

namespace rtl {

namespace {

// Position after the last '\' or ':', 0 when there is none.
size_t NameStart(std::u16string_view fileName) {
  const size_t at = fileName.find_last_of(u"\\:");
  return at == std::u16string_view::npos ? 0 : at + 1;
}

// Position of the extension's dot, npos when there is none.
size_t ExtStart(std::u16string_view fileName) {
  const size_t dot = fileName.rfind(u'.');
  if (dot == std::u16string_view::npos || dot < NameStart(fileName)) return std::u16string_view::npos;
  return dot;
}

}  // namespace

int StrToInt(std::u16string_view s) {
  // StrToIntDef with two different fallbacks tells a real value from a refusal.
  const int a = StrToIntDef(s, 0);
  if (a != 0 || StrToIntDef(s, 1) == 0) return a;
  throw EConvertError(u"'" + std::u16string(s) + u"' is not a valid integer value");
}

std::u16string ExtractFileName(std::u16string_view fileName) {
  return std::u16string(fileName.substr(NameStart(fileName)));
}

std::u16string ExtractFilePath(std::u16string_view fileName) {
  return std::u16string(fileName.substr(0, NameStart(fileName)));
}

std::u16string ExtractFileExt(std::u16string_view fileName) {
  const size_t dot = ExtStart(fileName);
  return dot == std::u16string_view::npos ? std::u16string() : std::u16string(fileName.substr(dot));
}

std::u16string ChangeFileExt(std::u16string_view fileName, std::u16string_view ext) {
  const size_t dot = ExtStart(fileName);
  return std::u16string(fileName.substr(0, dot)) + std::u16string(ext);
}

}  // namespace rtl
