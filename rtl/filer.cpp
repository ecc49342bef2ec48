// TWriter and TReader (rtl/filer.h).
#include "rtl/filer.h"

#include <limits>

#include "rtl/encoding.h"
#include "rtl/ustring.h"

namespace rtl {

namespace {

[[noreturn]] void Invalid(const char16_t* what) {
  throw EFilerError(u"Ungültiges Stream-Format: " + std::u16string(what));
}

}  // namespace

void TWriter::WriteSignature() { Bytes("TPF0", 4); }

void TWriter::WriteValue(TValueType value) {
  const auto byte = static_cast<std::uint8_t>(value);
  Bytes(&byte, 1);
}

void TWriter::WriteStr(std::u16string_view s) {
  std::string utf8 = Utf16ToUtf8(s);
  if (utf8.size() > 255) utf8.resize(255);
  const auto length = static_cast<std::uint8_t>(utf8.size());
  Bytes(&length, 1);
  Bytes(utf8.data(), utf8.size());
}

void TWriter::WriteInteger(std::int64_t value) {
  if (value >= -128 && value <= 127) {
    WriteValue(vaInt8);
    const auto v = static_cast<std::int8_t>(value);
    Bytes(&v, 1);
  } else if (value >= -32768 && value <= 32767) {
    WriteValue(vaInt16);
    const auto v = static_cast<std::int16_t>(value);
    Bytes(&v, 2);
  } else if (value >= std::numeric_limits<std::int32_t>::min() &&
             value <= std::numeric_limits<std::int32_t>::max()) {
    WriteValue(vaInt32);
    const auto v = static_cast<std::int32_t>(value);
    Bytes(&v, 4);
  } else {
    WriteValue(vaInt64);
    Bytes(&value, 8);
  }
}

void TWriter::WriteBoolean(bool value) { WriteValue(value ? vaTrue : vaFalse); }

void TWriter::WriteString(std::u16string_view value) {
  // Text the ANSI code page holds goes into the one-byte types in that page, as the
  // framework writes it; other text as UTF-8 where that is shorter than UTF-16, else (and
  // always with a lone surrogate, which UTF-8 cannot carry) as UTF-16.
  if (FitsAnsi(value)) {
    const std::vector<std::uint8_t> ansi = TEncoding::ANSI()->GetBytes(value);
    if (ansi.size() <= 255) {
      WriteValue(vaString);
      const auto length = static_cast<std::uint8_t>(ansi.size());
      Bytes(&length, 1);
    } else {
      WriteValue(vaLString);
      const auto length = static_cast<std::int32_t>(ansi.size());
      Bytes(&length, 4);
    }
    if (!ansi.empty()) Bytes(ansi.data(), ansi.size());
    return;
  }
  const std::string utf8 = Utf16ToUtf8(value);
  if (utf8.size() < value.size() * 2 && Utf8ToUtf16(utf8) == value) {
    WriteValue(vaUTF8String);
    const auto length = static_cast<std::int32_t>(utf8.size());
    Bytes(&length, 4);
    Bytes(utf8.data(), utf8.size());
    return;
  }
  WriteValue(vaWString);
  const auto length = static_cast<std::int32_t>(value.size());
  Bytes(&length, 4);
  Bytes(value.data(), value.size() * 2);
}

void TWriter::WriteIdent(std::u16string_view ident) {
  if (SameText(ident, u"False"))
    WriteValue(vaFalse);
  else if (SameText(ident, u"True"))
    WriteValue(vaTrue);
  else if (SameText(ident, u"Null"))
    WriteValue(vaNull);
  else if (SameText(ident, u"nil"))
    WriteValue(vaNil);
  else {
    WriteValue(vaIdent);
    WriteStr(ident);
  }
}

void TWriter::WriteSet(const std::vector<std::u16string>& members) {
  WriteValue(vaSet);
  for (const auto& m : members) WriteStr(m);
  WriteStr(u"");
}

void TWriter::WriteBinary(const std::vector<std::uint8_t>& bytes) {
  WriteValue(vaBinary);
  const auto size = static_cast<std::int32_t>(bytes.size());
  Bytes(&size, 4);
  if (!bytes.empty()) Bytes(bytes.data(), bytes.size());
}

void TReader::ReadSignature() {
  char signature[4];
  if (stream_.Read(signature, 4) != 4 || std::string_view(signature, 4) != "TPF0")
    Invalid(u"keine Komponente");
}

TValueType TReader::ReadValue() {
  const auto byte = Read<std::uint8_t>();
  if (byte > static_cast<std::uint8_t>(vaDouble)) Invalid(u"unbekannter Werttyp");
  return static_cast<TValueType>(byte);
}

TValueType TReader::NextValue() {
  const TValueType value = ReadValue();
  stream_.Seek(-1, TSeekOrigin::soCurrent);
  return value;
}

void TReader::ReadListEnd() {
  if (ReadValue() != vaNull) Invalid(u"Listenende erwartet");
}

std::size_t TReader::Length(std::int32_t count, int unitSize) {
  // Checked against what the stream still holds before anything is reserved: a length
  // read from the stream may say anything.
  if (count < 0 || std::int64_t{count} * unitSize > stream_.Size() - stream_.Position())
    Invalid(u"Länge außerhalb des Streams");
  return static_cast<std::size_t>(count);
}

std::u16string TReader::ReadStr() {
  const auto length = Read<std::uint8_t>();
  std::string utf8(length, '\0');
  Bytes(utf8.data(), length);
  return Utf8ToUtf16(utf8);
}

std::int64_t TReader::ReadInteger() {
  switch (ReadValue()) {
    case vaInt8: return Read<std::int8_t>();
    case vaInt16: return Read<std::int16_t>();
    case vaInt32: return Read<std::int32_t>();
    case vaInt64: return Read<std::int64_t>();
    default: Invalid(u"Ganzzahl erwartet");
  }
}

bool TReader::ReadBoolean() {
  switch (ReadValue()) {
    case vaTrue: return true;
    case vaFalse: return false;
    default: Invalid(u"Wahrheitswert erwartet");
  }
}

std::u16string TReader::ReadString() {
  const TValueType type = ReadValue();
  switch (type) {
    case vaString:
    case vaLString: {
      std::vector<std::uint8_t> bytes(type == vaString ? Read<std::uint8_t>()
                                                       : Length(Read<std::int32_t>(), 1));
      if (!bytes.empty()) Bytes(bytes.data(), bytes.size());
      // Files of earlier versions of this library hold UTF-8 here: well-formed UTF-8 beyond
      // ASCII reads as such (no ANSI text of any sense is also that).
      if (IsMultiByteUtf8(bytes.data(), bytes.size()))
        return Utf8ToUtf16({reinterpret_cast<const char*>(bytes.data()), bytes.size()});
      return TEncoding::ANSI()->GetString(bytes);
    }
    case vaUTF8String: {
      std::string utf8(Length(Read<std::int32_t>(), 1), '\0');
      Bytes(utf8.data(), utf8.size());
      return Utf8ToUtf16(utf8);
    }
    case vaWString: {
      std::u16string s(Length(Read<std::int32_t>(), 2), u'\0');
      Bytes(s.data(), s.size() * 2);
      return s;
    }
    default: Invalid(u"Text erwartet");
  }
}

std::u16string TReader::ReadIdent() {
  switch (ReadValue()) {
    case vaIdent: return ReadStr();
    case vaFalse: return u"False";
    case vaTrue: return u"True";
    case vaNil: return u"nil";
    case vaNull: return u"Null";
    default: Invalid(u"Bezeichner erwartet");
  }
}

std::vector<std::u16string> TReader::ReadSet() {
  if (ReadValue() != vaSet) Invalid(u"Menge erwartet");
  std::vector<std::u16string> members;
  for (std::u16string m = ReadStr(); !m.empty(); m = ReadStr()) members.push_back(m);
  return members;
}

std::vector<std::uint8_t> TReader::ReadBinary() {
  if (ReadValue() != vaBinary) Invalid(u"Binärdaten erwartet");
  std::vector<std::uint8_t> bytes(Length(Read<std::int32_t>(), 1));
  if (!bytes.empty()) Bytes(bytes.data(), bytes.size());
  return bytes;
}

}  // namespace rtl
