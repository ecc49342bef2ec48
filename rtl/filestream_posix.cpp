// TFileStream (rtl/streams.h) in the native build: a POSIX file descriptor.
#include <cerrno>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "rtl/streams.h"
#include "rtl/ustring.h"

namespace rtl {

namespace {

std::u16string Quoted(const std::u16string& fileName) { return u"\"" + fileName + u"\""; }

std::u16string SystemMessage(int error) {
  return Utf8ToUtf16(std::strerror(error)) + u".";
}

}  // namespace

struct TFileStream::File {
  int fd = -1;
  ~File() {
    if (fd >= 0) ::close(fd);
  }
};

TFileStream::TFileStream(const std::u16string& fileName, unsigned mode)
    : fileName_(fileName), file_(std::make_unique<File>()) {
  const bool create = (mode & fmCreate) == fmCreate;
  const int flags = create                          ? O_RDWR | O_CREAT | O_TRUNC
                    : (mode & 3) == fmOpenWrite     ? O_WRONLY
                    : (mode & 3) == fmOpenReadWrite ? O_RDWR
                                                    : O_RDONLY;
  file_->fd = ::open(Utf16ToUtf8(fileName).c_str(), flags | O_CLOEXEC, 0666);
  if (file_->fd < 0) {
    const int error = errno;
    throw EFOpenError((create ? u"Cannot create file " : u"Cannot open file ") + Quoted(fileName) +
                      u". " + SystemMessage(error));
  }
}

TFileStream::~TFileStream() = default;

std::size_t TFileStream::Read(void* buffer, std::size_t count) {
  auto* at = static_cast<std::uint8_t*>(buffer);
  std::size_t total = 0;
  while (total < count) {
    const ssize_t got = ::read(file_->fd, at + total, count - total);
    if (got < 0 && errno == EINTR) continue;
    if (got < 0)
      throw EReadError(u"Cannot read file " + Quoted(fileName_) + u". " + SystemMessage(errno));
    if (got == 0) break;
    total += static_cast<std::size_t>(got);
  }
  return total;
}

std::size_t TFileStream::Write(const void* buffer, std::size_t count) {
  const auto* at = static_cast<const std::uint8_t*>(buffer);
  std::size_t total = 0;
  while (total < count) {
    const ssize_t put = ::write(file_->fd, at + total, count - total);
    if (put < 0 && errno == EINTR) continue;
    if (put < 0)
      throw EWriteError(u"Cannot write file " + Quoted(fileName_) + u". " + SystemMessage(errno));
    if (put == 0) break;
    total += static_cast<std::size_t>(put);
  }
  return total;
}

std::int64_t TFileStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  const int whence = origin == TSeekOrigin::soBeginning ? SEEK_SET
                     : origin == TSeekOrigin::soCurrent ? SEEK_CUR
                                                        : SEEK_END;
  return static_cast<std::int64_t>(::lseek(file_->fd, static_cast<off_t>(offset), whence));
}

}  // namespace rtl
