// The framework's binary streaming format for components, the format of form resources:
// a "TPF0" signature, then for each component its class name and name as short strings,
// its properties (name, typed value) up to an end mark, and its children up to another.
// TWriter and TReader know the values; which properties a component has is the
// component's business (ui/controls.h). Pure.
//
// Short strings (names) are a length byte and UTF-8; integers take the smallest of 1, 2, 4
// or 8 bytes (little endian) that holds them. A string value is one-byte text in the ANSI
// code page when the page holds it (vaString, vaLString), else UTF-8 when that is shorter
// than UTF-16 (vaUTF8String), else UTF-16 (vaWString).
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "rtl/streams.h"

namespace rtl {

enum class TValueType : std::uint8_t {
  vaNull, vaList, vaInt8, vaInt16, vaInt32, vaExtended, vaString, vaIdent, vaFalse, vaTrue,
  vaBinary, vaSet, vaLString, vaNil, vaCollection, vaSingle, vaCurrency, vaDate, vaWString,
  vaInt64, vaUTF8String, vaDouble
};
using enum TValueType;

// A stream that is not in the format, or holds what the reader cannot take.
class EFilerError : public Exception {
 public:
  using Exception::Exception;
};
// A class name the reader does not know.
class EClassNotFound : public EFilerError {
 public:
  using EFilerError::EFilerError;
};

class TWriter {
 public:
  explicit TWriter(TStream& stream) : stream_(stream) {}

  void WriteSignature();
  void WriteValue(TValueType value);
  // A length byte and the UTF-8 bytes, cut to 255.
  void WriteStr(std::u16string_view s);
  void WriteInteger(std::int64_t value);
  void WriteBoolean(bool value);
  void WriteString(std::u16string_view value);
  // An enumeration value's name; "False", "True", "nil" and "Null" take their own types.
  void WriteIdent(std::u16string_view ident);
  // A set as the names of its members.
  void WriteSet(const std::vector<std::u16string>& members);
  // Bytes of the component's own format (a picture's data).
  void WriteBinary(const std::vector<std::uint8_t>& bytes);
  void WriteListEnd() { WriteValue(vaNull); }

 private:
  void Bytes(const void* data, std::size_t size) { stream_.WriteBuffer(data, size); }
  TStream& stream_;
};

class TReader {
 public:
  explicit TReader(TStream& stream) : stream_(stream) {}

  // EFilerError unless the stream starts with "TPF0".
  void ReadSignature();
  TValueType ReadValue();
  TValueType NextValue();
  // The next value is the end mark of a list (not consumed).
  bool EndOfList() { return NextValue() == vaNull; }
  void ReadListEnd();
  std::u16string ReadStr();
  // Each raises EFilerError when the next value is of another kind.
  std::int64_t ReadInteger();
  bool ReadBoolean();
  std::u16string ReadString();
  std::u16string ReadIdent();
  std::vector<std::u16string> ReadSet();
  std::vector<std::uint8_t> ReadBinary();

 private:
  void Bytes(void* data, std::size_t size) { stream_.ReadBuffer(data, size); }
  // A count of units of unitSize bytes that the rest of the stream can hold; EFilerError
  // for a negative one or one beyond the end.
  std::size_t Length(std::int32_t count, int unitSize);
  template <class T>
  T Read() {
    T value;
    Bytes(&value, sizeof value);
    return value;
  }
  TStream& stream_;
};

}  // namespace rtl
