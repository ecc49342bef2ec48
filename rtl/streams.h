// Byte streams and text over them: the framework's TStream with its memory and file
// kinds, TStreamReader and TStreamWriter, and loading a string list from a file. Text
// conversion itself is rtl/encoding.h.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "rtl/classes.h"
#include "rtl/encoding.h"
#include "rtl/sysutils.h"

namespace rtl {

// A file that cannot be opened or created; the message names the file and the reason.
class EFOpenError : public Exception {
 public:
  using Exception::Exception;
};
// A stream that cannot give, or take, the bytes asked of it.
class EReadError : public Exception {
 public:
  using Exception::Exception;
};
class EWriteError : public Exception {
 public:
  using Exception::Exception;
};
// A resource a program looked for in its module and did not find.
class EResNotFound : public Exception {
 public:
  using Exception::Exception;
};

enum class TSeekOrigin { soBeginning, soCurrent, soEnd };

class TStream {
 public:
  TStream() = default;
  TStream(const TStream&) = delete;
  TStream& operator=(const TStream&) = delete;
  virtual ~TStream() = default;

  // Up to `count` bytes; fewer only at the end of the stream.
  virtual std::size_t Read(void* buffer, std::size_t count) = 0;
  virtual std::size_t Write(const void* buffer, std::size_t count) = 0;
  // The new position from the start.
  virtual std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) = 0;

  // Exactly `count` bytes, or EReadError / EWriteError.
  void ReadBuffer(void* buffer, std::size_t count);
  void WriteBuffer(const void* buffer, std::size_t count);

  std::int64_t Position() { return Seek(0, TSeekOrigin::soCurrent); }
  void SetPosition(std::int64_t position) { Seek(position, TSeekOrigin::soBeginning); }
  // Measured by seeking to the end; the position is kept.
  virtual std::int64_t Size();
};

// Bytes in memory; a write past the end grows the stream.
class TMemoryStream : public TStream {
 public:
  TMemoryStream() = default;
  explicit TMemoryStream(std::vector<std::uint8_t> bytes) : data_(std::move(bytes)) {}

  std::size_t Read(void* buffer, std::size_t count) override;
  std::size_t Write(const void* buffer, std::size_t count) override;
  std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) override;
  std::int64_t Size() override { return static_cast<std::int64_t>(data_.size()); }
  void Clear();
  const std::vector<std::uint8_t>& Bytes() const { return data_; }

 private:
  std::vector<std::uint8_t> data_;
  std::size_t position_ = 0;
};

// File modes, combined as in the framework: an access (or fmCreate) or'ed with a share.
enum : unsigned {
  fmOpenRead = 0x0000,
  fmOpenWrite = 0x0001,
  fmOpenReadWrite = 0x0002,
  fmShareCompat = 0x0000,
  fmShareExclusive = 0x0010,
  fmShareDenyWrite = 0x0020,
  fmShareDenyRead = 0x0030,
  fmShareDenyNone = 0x0040,
  fmCreate = 0xFF00,  // create, or empty an existing file; read and write
};

// A file as a stream. Windows opens it with CreateFileW and the share flags (compat acts
// as deny-write); the native build opens the UTF-8 name with the C library and has no
// share modes. A file that cannot be opened raises EFOpenError; a failed read or write
// raises EReadError / EWriteError.
class TFileStream : public TStream {
 public:
  TFileStream(const std::u16string& fileName, unsigned mode);
  ~TFileStream() override;

  std::size_t Read(void* buffer, std::size_t count) override;
  std::size_t Write(const void* buffer, std::size_t count) override;
  std::int64_t Seek(std::int64_t offset, TSeekOrigin origin) override;
  const std::u16string& FileName() const { return fileName_; }

 private:
  struct File;
  std::u16string fileName_;
  std::unique_ptr<File> file_;
};

// Lines of text from a stream, decoded block by block. With detectBOM a byte-order mark
// at the start picks the encoding; either way the encoding's own mark is skipped. Line
// ends are CR LF, LF or CR. The stream is read ahead by up to one block.
class TStreamReader {
 public:
  TStreamReader(TStream& stream, TEncoding* encoding, bool detectBOM = false,
                int bufferSize = 4096);
  TStreamReader(const TStreamReader&) = delete;
  TStreamReader& operator=(const TStreamReader&) = delete;

  bool EndOfStream();
  // The next line without its end; "" at the end of the stream.
  std::u16string ReadLine();
  // Everything left.
  std::u16string ReadToEnd();
  TEncoding* CurrentEncoding() const { return encoding_; }

 private:
  // Decodes one more block; false when the stream had nothing left.
  bool Fill();

  TStream& stream_;
  TEncoding* encoding_;
  bool detectBOM_;
  bool started_ = false;
  bool streamEnded_ = false;
  std::vector<std::uint8_t> block_;
  std::vector<std::uint8_t> pending_;  // bytes of a character cut by the block's end
  std::u16string text_;
  std::size_t next_ = 0;  // first character of text_ not yet returned
};

// Text into a stream through an encoding, buffered; no preamble is written. The buffer
// is flushed by Flush and on destruction.
class TStreamWriter {
 public:
  TStreamWriter(TStream& stream, TEncoding* encoding, int bufferSize = 4096);
  ~TStreamWriter() noexcept(false);
  TStreamWriter(const TStreamWriter&) = delete;
  TStreamWriter& operator=(const TStreamWriter&) = delete;

  void Write(std::u16string_view s);
  // `s` followed by CR LF.
  void WriteLine(std::u16string_view s = {});
  void Flush();

 private:
  void Emit(std::size_t count);

  TStream& stream_;
  TEncoding* encoding_;
  std::size_t bufferSize_;
  int uncaught_;
  std::u16string buffer_;
};

// Every byte of a file (opened for reading, deny-write); EFOpenError / EReadError.
std::vector<std::uint8_t> ReadFileBytes(const std::u16string& fileName);

// Replaces the list's lines with the file's text. Without an encoding a byte-order mark
// picks it and a file without one is read in the ANSI code page; with one, its own mark
// is skipped when present.
void LoadFromFile(TStrings& list, const std::u16string& fileName, TEncoding* encoding = nullptr);

}  // namespace rtl
