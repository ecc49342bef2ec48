// TFileStream (rtl/streams.h) on Windows: a file handle of CreateFileW, with the
// framework's share modes and the system's own words for a failure.
#include <windows.h>

#include <algorithm>

#include "rtl/handles.h"
#include "rtl/streams.h"
#include "rtl/ustring.h"
#include "rtl/wide.h"

namespace rtl {

namespace {

std::u16string Quoted(const std::u16string& fileName) { return u"\"" + fileName + u"\""; }

std::u16string SystemMessage(DWORD error) {
  wchar_t text[512] = {};
  DWORD n = FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr,
                           error, 0, text, 512, nullptr);
  while (n > 0 && (text[n - 1] == L'\r' || text[n - 1] == L'\n' || text[n - 1] == L' ')) --n;
  if (n == 0) return u"System error " + IntToStr(error) + u".";
  return {reinterpret_cast<const char16_t*>(text), n};
}

DWORD ShareMode(unsigned mode) {
  switch (mode & 0xF0) {
    case fmShareExclusive:
      return 0;
    case fmShareDenyRead:
      return FILE_SHARE_WRITE;
    case fmShareDenyNone:
      return FILE_SHARE_READ | FILE_SHARE_WRITE;
    default:  // compat and deny-write
      return FILE_SHARE_READ;
  }
}

}  // namespace

struct TFileStream::File {
  unique_hfile handle;
};

TFileStream::TFileStream(const std::u16string& fileName, unsigned mode)
    : fileName_(fileName), file_(std::make_unique<File>()) {
  const bool create = (mode & fmCreate) == fmCreate;
  const DWORD access = create                              ? GENERIC_READ | GENERIC_WRITE
                       : (mode & 3) == fmOpenWrite         ? GENERIC_WRITE
                       : (mode & 3) == fmOpenReadWrite     ? GENERIC_READ | GENERIC_WRITE
                                                           : GENERIC_READ;
  file_->handle.reset(CreateFileW(W(fileName), access,
                                  create ? 0 : ShareMode(mode), nullptr,
                                  create ? CREATE_ALWAYS : OPEN_EXISTING,
                                  FILE_ATTRIBUTE_NORMAL, nullptr));
  if (!file_->handle) {
    const DWORD error = GetLastError();
    throw EFOpenError((create ? u"Cannot create file " : u"Cannot open file ") + Quoted(fileName) +
                      u". " + SystemMessage(error));
  }
}

TFileStream::~TFileStream() = default;

std::size_t TFileStream::Read(void* buffer, std::size_t count) {
  auto* at = static_cast<std::uint8_t*>(buffer);
  std::size_t total = 0;
  while (total < count) {
    const DWORD ask = static_cast<DWORD>(std::min<std::size_t>(count - total, 1u << 30));
    DWORD got = 0;
    if (!ReadFile(file_->handle.get(), at + total, ask, &got, nullptr))
      throw EReadError(u"Cannot read file " + Quoted(fileName_) + u". " +
                       SystemMessage(GetLastError()));
    if (got == 0) break;
    total += got;
  }
  return total;
}

std::size_t TFileStream::Write(const void* buffer, std::size_t count) {
  const auto* at = static_cast<const std::uint8_t*>(buffer);
  std::size_t total = 0;
  while (total < count) {
    const DWORD ask = static_cast<DWORD>(std::min<std::size_t>(count - total, 1u << 30));
    DWORD put = 0;
    if (!WriteFile(file_->handle.get(), at + total, ask, &put, nullptr))
      throw EWriteError(u"Cannot write file " + Quoted(fileName_) + u". " +
                        SystemMessage(GetLastError()));
    if (put == 0) break;
    total += put;
  }
  return total;
}

std::int64_t TFileStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  LARGE_INTEGER distance, result;
  distance.QuadPart = offset;
  const DWORD method = origin == TSeekOrigin::soBeginning ? FILE_BEGIN
                       : origin == TSeekOrigin::soCurrent ? FILE_CURRENT
                                                          : FILE_END;
  if (!SetFilePointerEx(file_->handle.get(), distance, &result, method)) return -1;
  return result.QuadPart;
}

}  // namespace rtl
