// Streams, the stream reader and writer, and loading a list from a file (rtl/streams.h).
// The file stream's system part differs between the builds and lives apart:
// filestream_win.cpp (CreateFileW and friends), filestream_posix.cpp (descriptors).
#include "rtl/streams.h"

#include <algorithm>
#include <cstring>
#include <exception>

namespace rtl {

// ---- TStream, TMemoryStream ----

void TStream::ReadBuffer(void* buffer, std::size_t count) {
  if (count != 0 && Read(buffer, count) != count) throw EReadError(u"Stream read error");
}

void TStream::WriteBuffer(const void* buffer, std::size_t count) {
  if (count != 0 && Write(buffer, count) != count) throw EWriteError(u"Stream write error");
}

std::int64_t TStream::Size() {
  const std::int64_t at = Position();
  const std::int64_t size = Seek(0, TSeekOrigin::soEnd);
  SetPosition(at);
  return size;
}

std::size_t TMemoryStream::Read(void* buffer, std::size_t count) {
  const std::size_t n = position_ >= data_.size() ? 0 : std::min(count, data_.size() - position_);
  if (n != 0) std::memcpy(buffer, data_.data() + position_, n);
  position_ += n;
  return n;
}

std::size_t TMemoryStream::Write(const void* buffer, std::size_t count) {
  if (count == 0) return 0;
  if (position_ + count > data_.size()) data_.resize(position_ + count);
  std::memcpy(data_.data() + position_, buffer, count);
  position_ += count;
  return count;
}

std::int64_t TMemoryStream::Seek(std::int64_t offset, TSeekOrigin origin) {
  const std::int64_t base = origin == TSeekOrigin::soBeginning ? 0
                            : origin == TSeekOrigin::soCurrent ? static_cast<std::int64_t>(position_)
                                                               : static_cast<std::int64_t>(data_.size());
  position_ = static_cast<std::size_t>(std::max<std::int64_t>(0, base + offset));
  return static_cast<std::int64_t>(position_);
}

void TMemoryStream::Clear() {
  data_.clear();
  position_ = 0;
}

// ---- TFileStream ----

// ---- TStreamReader ----

TStreamReader::TStreamReader(TStream& stream, TEncoding* encoding, bool detectBOM, int bufferSize)
    : stream_(stream),
      encoding_(encoding ? encoding : TEncoding::UTF8()),
      detectBOM_(detectBOM),
      // Room for the longest mark in the first block.
      block_(static_cast<std::size_t>(std::max(bufferSize, 16))) {}

bool TStreamReader::Fill() {
  if (streamEnded_) return false;
  const std::size_t got = stream_.Read(block_.data(), block_.size());
  if (got == 0) {
    streamEnded_ = true;
    if (pending_.empty()) return false;
    // A character cut off by the end of the stream: decoded as the malformed input it is.
    text_.erase(0, next_);
    next_ = 0;
    text_ += encoding_->GetString(pending_);
    pending_.clear();
    return true;
  }
  pending_.insert(pending_.end(), block_.begin(), block_.begin() + static_cast<std::ptrdiff_t>(got));
  std::size_t skip = 0;
  if (!started_) {
    started_ = true;
    std::size_t markLength = 0;
    TEncoding* marked = detectBOM_ ? TEncoding::FromPreamble(pending_.data(), pending_.size(), markLength)
                                   : nullptr;
    if (marked) {
      encoding_ = marked;
      skip = markLength;
    } else if (encoding_->StartsWithPreamble(pending_.data(), pending_.size())) {
      skip = encoding_->GetPreamble().size();
    }
  }
  const std::size_t whole = skip + encoding_->CompleteLength(pending_.data() + skip, pending_.size() - skip);
  text_.erase(0, next_);
  next_ = 0;
  text_ += encoding_->GetString(pending_.data() + skip, whole - skip);
  pending_.erase(pending_.begin(), pending_.begin() + static_cast<std::ptrdiff_t>(whole));
  return true;
}

bool TStreamReader::EndOfStream() {
  while (next_ == text_.size())
    if (!Fill()) return true;
  return false;
}

std::u16string TStreamReader::ReadLine() {
  if (EndOfStream()) return {};
  // Offsets from next_, which a Fill moves when it drops the characters already returned.
  std::size_t searched = 0;
  for (;;) {
    const std::size_t p = text_.find_first_of(u"\r\n", next_ + searched);
    if (p == std::u16string::npos) {
      searched = text_.size() - next_;
      if (Fill()) continue;
      std::u16string line = text_.substr(next_);
      next_ = text_.size();
      return line;
    }
    const std::size_t length = p - next_;
    // A CR at the end of what is decoded may be the first half of CR LF.
    while (text_[next_ + length] == u'\r' && next_ + length + 1 == text_.size() && Fill()) {
    }
    std::u16string line = text_.substr(next_, length);
    std::size_t end = next_ + length + 1;
    if (text_[end - 1] == u'\r' && end < text_.size() && text_[end] == u'\n') ++end;
    next_ = end;
    return line;
  }
}

std::u16string TStreamReader::ReadToEnd() {
  while (Fill()) {
  }
  std::u16string rest = text_.substr(next_);
  next_ = text_.size();
  return rest;
}

// ---- TStreamWriter ----

TStreamWriter::TStreamWriter(TStream& stream, TEncoding* encoding, int bufferSize)
    : stream_(stream),
      encoding_(encoding ? encoding : TEncoding::UTF8()),
      bufferSize_(static_cast<std::size_t>(std::max(bufferSize, 2))),
      uncaught_(std::uncaught_exceptions()) {}

TStreamWriter::~TStreamWriter() noexcept(false) {
  // While an exception is on its way, a failed flush must not end the program.
  if (std::uncaught_exceptions() > uncaught_) {
    try {
      Flush();
    } catch (...) {
    }
  } else {
    Flush();
  }
}

void TStreamWriter::Emit(std::size_t count) {
  if (count == 0) return;
  const std::vector<std::uint8_t> bytes = encoding_->GetBytes(std::u16string_view(buffer_).substr(0, count));
  buffer_.erase(0, count);
  stream_.WriteBuffer(bytes.data(), bytes.size());
}

void TStreamWriter::Write(std::u16string_view s) {
  buffer_ += s;
  if (buffer_.size() < bufferSize_) return;
  // A high surrogate waits for its partner, so that a pair is never split between blocks.
  const char16_t last = buffer_.back();
  Emit(buffer_.size() - (last >= 0xD800 && last <= 0xDBFF ? 1 : 0));
}

void TStreamWriter::WriteLine(std::u16string_view s) {
  Write(s);
  Write(u"\r\n");
}

void TStreamWriter::Flush() { Emit(buffer_.size()); }

// ---- Files into lists ----

std::vector<std::uint8_t> ReadFileBytes(const std::u16string& fileName) {
  TFileStream file(fileName, fmOpenRead | fmShareDenyWrite);
  std::vector<std::uint8_t> bytes;
  const std::int64_t size = file.Size();
  if (size > 0) bytes.reserve(static_cast<std::size_t>(size));
  std::uint8_t block[65536];
  while (const std::size_t got = file.Read(block, sizeof block)) bytes.insert(bytes.end(), block, block + got);
  return bytes;
}

void LoadFromFile(TStrings& list, const std::u16string& fileName, TEncoding* encoding) {
  const std::vector<std::uint8_t> bytes = ReadFileBytes(fileName);
  std::size_t skip = 0;
  if (!encoding) {
    encoding = TEncoding::FromPreamble(bytes.data(), bytes.size(), skip);
    if (!encoding) encoding = TEncoding::ANSI();
  } else if (encoding->StartsWithPreamble(bytes.data(), bytes.size())) {
    skip = encoding->GetPreamble().size();
  }
  list.SetText(encoding->GetString(bytes.data() + skip, bytes.size() - skip));
}

}  // namespace rtl
