// Text file formats (tools/textformat.h): the byte rules, and the file routines that read
// a file whole and hand it to them.
#include "tools/textformat.h"

#include <cstring>
#include <initializer_list>
#include <string_view>
#include <vector>

#include "tools/utf8_structure.h"

#ifdef _WIN32
#include "tools/paths.h"
#else
#include <filesystem>
#include <system_error>
#endif

namespace Qm_tools {

using rtl::TEncoding;

namespace {

bool StartsWith(const std::uint8_t* data, std::size_t size, std::initializer_list<std::uint8_t> mark) {
  return size >= mark.size() && std::memcmp(data, mark.begin(), mark.size()) == 0;
}

bool Present(const std::u16string& fileName) {
#ifdef _WIN32
  return FileExists(fileName);
#else
  std::error_code error;
  return std::filesystem::is_regular_file(rtl::Utf16ToUtf8(fileName), error);
#endif
}

// Valid UTF-8 survives decoding and encoding again byte for byte; anything malformed
// comes back as U+FFFD.
bool IsValidUtf8(const std::uint8_t* data, std::size_t size) {
  const std::string_view bytes(reinterpret_cast<const char*>(data), size);
  return rtl::Utf16ToUtf8(rtl::Utf8ToUtf16(bytes)) == bytes;
}

class UpdateScope {
 public:
  explicit UpdateScope(rtl::TStrings& list) : list_(list) { list_.BeginUpdate(); }
  ~UpdateScope() noexcept(false) { list_.EndUpdate(); }
  UpdateScope(const UpdateScope&) = delete;
  UpdateScope& operator=(const UpdateScope&) = delete;

 private:
  rtl::TStrings& list_;
};

}  // namespace

bool IsUtf8Structure(const std::uint8_t* data, std::size_t size) {
  return size == 0 || utf8_structure::Fastest()(data, size);
}

std::u16string FileFormatOfBytes(const std::uint8_t* data, std::size_t size) {
  if (size <= 3) return u"Ansi";
  if (StartsWith(data, size, {0xEF, 0xBB, 0xBF})) return u"utf-8";
  if (StartsWith(data, size, {0xFF, 0xFE})) return u"utf-16";
  if (StartsWith(data, size, {0xFE, 0xFF})) return u"utf-16-big";
  if (StartsWith(data, size, {0x00, 0x00, 0xFE, 0xFF})) return u"utf-32-big";
  // Never reached behind FF FE; kept where the order of the tests puts it.
  if (StartsWith(data, size, {0xFF, 0xFE, 0x00, 0x00})) return u"utf-32-little";
  return IsUtf8Structure(data, size) ? u"utf-8" : u"Ansi";
}

TEncoding* FileFormatEncodingOfBytes(const std::uint8_t* data, std::size_t size) {
  if (size <= 3) return TEncoding::ANSI();
  if (StartsWith(data, size, {0xEF, 0xBB, 0xBF})) return TEncoding::UTF8();
  if (StartsWith(data, size, {0xFF, 0xFE})) return TEncoding::Unicode();
  if (StartsWith(data, size, {0xFE, 0xFF})) return TEncoding::BigEndianUnicode();
  // UTF-32 big endian is answered with UTF-16 little endian: callers have always had it so.
  if (StartsWith(data, size, {0x00, 0x00, 0xFE, 0xFF})) return TEncoding::Unicode();
  // The list a file without a mark is loaded into reads valid UTF-8 as UTF-8; the test is
  // whether its text fits the ANSI code page.
  TEncoding* loading = IsValidUtf8(data, size) ? TEncoding::UTF8() : TEncoding::ANSI();
  rtl::TStringList list;
  list.SetText(loading->GetString(data, size));
  const std::u16string text = list.Text();
  TEncoding* ansi = TEncoding::ANSI();
  return ansi->GetString(ansi->GetBytes(text)) != text ? TEncoding::UTF8() : ansi;
}

TEncoding* CheckFileFormatOfBytes(const std::uint8_t* data, std::size_t size, int& markLen,
                                  bool& crlf) {
  TEncoding* result = TEncoding::ANSI();
  markLen = 0;
  crlf = false;
  // The first four bytes are left out: they may be a mark.
  for (std::size_t i = 4; i < size; ++i) {
    if (data[i] != 13) continue;
    if (++i < size && data[i] == 10) {
      crlf = true;
      break;
    }
  }
  if (size <= 3) return result;
  bool marked = false;
  const auto test = [&](std::initializer_list<std::uint8_t> mark, TEncoding* encoding, int length) {
    if (!StartsWith(data, size, mark)) return;
    result = encoding;
    markLen = length;
    marked = true;
  };
  // Four for UTF-8's three-byte mark: the callers skip that many.
  test({0xEF, 0xBB, 0xBF}, TEncoding::UTF8(), 4);
  test({0xFF, 0xFE}, TEncoding::Unicode(), 2);
  test({0xFE, 0xFF}, TEncoding::BigEndianUnicode(), 2);
  test({0x00, 0x00, 0xFE, 0xFF}, TEncoding::BigEndianUnicode(), 4);
  test({0xFF, 0xFE, 0x00, 0x00}, TEncoding::Unicode(), 4);
  if (!marked && IsUtf8Structure(data, size)) result = TEncoding::UTF8();
  return result;
}

std::u16string GetFileFormat(const std::u16string& fileName) {
  if (!Present(fileName)) return u"Ansi";
  const std::vector<std::uint8_t> bytes = rtl::ReadFileBytes(fileName);
  return FileFormatOfBytes(bytes.data(), bytes.size());
}

TEncoding* GetFileFormatEncoding(const std::u16string& fileName) {
  if (!Present(fileName)) return TEncoding::ANSI();
  const std::vector<std::uint8_t> bytes = rtl::ReadFileBytes(fileName);
  return FileFormatEncodingOfBytes(bytes.data(), bytes.size());
}

TEncoding* CheckFileFormat(const std::u16string& fileName, int& markLen, bool& crlf) {
  markLen = 0;
  if (!Present(fileName)) return TEncoding::ANSI();
  const std::vector<std::uint8_t> bytes = rtl::ReadFileBytes(fileName);
  return CheckFileFormatOfBytes(bytes.data(), bytes.size(), markLen, crlf);
}

void LoadLinesFromStream(rtl::TStringList& list, rtl::TStream& stream, TEncoding* encoding) {
  UpdateScope update(list);
  rtl::TStreamReader reader(stream, encoding, false, 4096);
  while (!reader.EndOfStream()) list.Add(reader.ReadLine());
}

void SaveLinesToStream(rtl::TStringList& list, rtl::TStream& stream, TEncoding* encoding) {
  rtl::TStreamWriter writer(stream, encoding, 4096);
  for (int i = 0; i < list.Count(); ++i) writer.WriteLine(list[i]);
  writer.Flush();
}

bool CanLoadStringList(rtl::TStringList*& list, const std::u16string& fileName) {
  if (!Present(fileName)) return false;
  try {
    if (!list) list = new rtl::TStringList;
    TEncoding* encoding = GetFileFormatEncoding(fileName);
    rtl::LoadFromFile(*list, fileName, encoding);
    return true;
  } catch (...) {
    return false;
  }
}

}  // namespace Qm_tools
