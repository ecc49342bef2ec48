// Encodings, streams, the file-format detectors and lists saved and loaded in each encoding.
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <cstdint>
#include <filesystem>
#include <random>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "rtl/encoding.h"
#include "rtl/streams.h"
#include "tests/slow_references.h"
#include "tools/textformat.h"
#include "tools/utf8_structure.h"

#ifdef _WIN32
#include <windows.h>

#include "rtl/handles.h"
#else
#include <unistd.h>
#endif

using rtl::TEncoding;
using Bytes = std::vector<std::uint8_t>;
using Lines = std::vector<std::u16string>;
using namespace std::string_view_literals;

namespace {

Bytes B(std::string_view s) { return {s.begin(), s.end()}; }

std::u16string TempName(std::u16string_view stem) {
#ifdef _WIN32
  const auto pid = GetCurrentProcessId();
#else
  const auto pid = getpid();
#endif
  const std::u16string file = std::u16string(stem) + u"-" + rtl::IntToStr(static_cast<int>(pid));
  return (std::filesystem::temp_directory_path() / (file + u".txt")).u16string();
}

struct TempFile {
  explicit TempFile(const Bytes& content, std::u16string_view stem = u"nox-encoding")
      : name(TempName(stem)) {
    rtl::TFileStream(name, rtl::fmCreate).WriteBuffer(content.data(), content.size());
  }
  ~TempFile() { std::error_code e; std::filesystem::remove(std::filesystem::path(name), e); }
  std::u16string name;
};

bool AnsiIs1252() { return TEncoding::ANSI()->CodePage() == 1252; }

// Every version of the structural UTF-8 test that this processor runs, and the routine
// that picks one.
std::vector<std::pair<const char*, Qm_tools::utf8_structure::Test>> Utf8StructureVersions() {
  namespace u = Qm_tools::utf8_structure;
  std::vector<std::pair<const char*, u::Test>> versions = {
      {"IsUtf8Structure", Qm_tools::IsUtf8Structure}, {"portable", u::Portable}};
#ifdef QM_UTF8_STRUCTURE_X86
  versions.emplace_back("SSE2", u::Sse2);
  if (u::HasAvx2()) versions.emplace_back("AVX2", u::Avx2);
#endif
  return versions;
}

Lines LinesOf(const rtl::TStrings& list) {
  Lines r;
  for (int i = 0; i < list.Count(); ++i) r.push_back(list[i]);
  return r;
}

}  // namespace

TEST(EncodingDetectors, AgreeOnMarksAndTheirEdges) {
  TEncoding *const ansi = TEncoding::ANSI(), *const utf8 = TEncoding::UTF8(),
                   *const le = TEncoding::Unicode(), *const be = TEncoding::BigEndianUnicode();
  struct Case { const char* what; std::string_view bytes; const char16_t* format;
                TEncoding *encoding, *checked; int markLen; bool crlf; };
  const Case cases[] = {
      {"UTF-8 mark alone", "\xEF\xBB\xBF", u"Ansi", ansi, ansi, 0, false},
      {"UTF-8 mark", "\xEF\xBB\xBFGr\xC3\xBC\xC3\x9F" "e\r\n", u"utf-8", utf8, utf8, 4, true},
      {"UTF-8 mark before ANSI bytes", "\xEF\xBB\xBFGr\xFC\xDF" "e", u"utf-8", utf8, utf8, 4, false},
      {"UTF-16LE mark", "\xFF\xFE" "a\0\r\0\n\0"sv, u"utf-16", le, le, 2, false},
      {"UTF-16BE mark", "\xFE\xFF\0a"sv, u"utf-16-big", be, be, 2, false},
      {"UTF-32LE mark", "\xFF\xFE\0\0"sv, u"utf-16", le, le, 4, false},
      {"UTF-32BE mark", "\0\0\xFE\xFF"sv, u"utf-32-big", le, be, 4, false},
      {"plain ASCII", "plain text\r\nline two", u"utf-8", ansi, utf8, 0, true},
      {"CR LF only in the first four", "\r\nab", u"utf-8", ansi, utf8, 0, false},
      {"CR CR LF", "abcd\r\r\n", u"utf-8", ansi, utf8, 0, false},
      {"CR starting at the fifth byte", "abc\r\r\n", u"utf-8", ansi, utf8, 0, true},
      {"LF only", "abcd\nefgh\n", u"utf-8", ansi, utf8, 0, false},
      {"German in Windows-1252", "Gr\xFC\xDF" "e aus K\xF6ln", u"Ansi", ansi, ansi, 0, false},
      {"German UTF-8 within ANSI", "Gr\xC3\xBC\xC3\x9F" "e aus K\xC3\xB6ln", u"utf-8", ansi, utf8,
       0, false},
      {"German UTF-8 with capital sharp s", "GRO\xE1\xBA\x9E" "E Gr\xC3\xBC\xC3\x9F" "e", u"utf-8",
       utf8, utf8, 0, false},
      {"UTF-8 cut at the end", "abcd\xE2\x82", u"Ansi", ansi, ansi, 0, false},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.what);
    if (!AnsiIs1252() && std::string_view(c.what).find("German") != std::string_view::npos)
      continue;
    const TempFile file(B(c.bytes));
    EXPECT_EQ(Qm_tools::GetFileFormat(file.name), c.format);
    EXPECT_EQ(Qm_tools::GetFileFormatEncoding(file.name), c.encoding);
    int markLen = -1;
    bool crlf = !c.crlf;
    EXPECT_EQ(Qm_tools::CheckFileFormat(file.name, markLen, crlf), c.checked);
    EXPECT_EQ(std::pair(markLen, crlf), std::pair(c.markLen, c.crlf));
  }
}

TEST(EncodingDetectors, MissingAndUnreadableFiles) {
  // A missing file is ANSI and leaves the line-end flag alone; a list is made only for a file.
  const std::u16string missing = TempName(u"nox-encoding-missing");
  EXPECT_EQ(Qm_tools::GetFileFormat(missing), u"Ansi");
  EXPECT_EQ(Qm_tools::GetFileFormatEncoding(missing), TEncoding::ANSI());
  for (const bool before : {false, true}) {
    int markLen = 7;
    bool crlf = before;
    EXPECT_EQ(Qm_tools::CheckFileFormat(missing, markLen, crlf), TEncoding::ANSI());
    EXPECT_EQ(std::pair(markLen, crlf), std::pair(0, before));
  }
  rtl::TStringList* list = nullptr;
  EXPECT_FALSE(Qm_tools::CanLoadStringList(list, missing));
  EXPECT_EQ(list, nullptr);
  const TempFile file(B("one\r\ntwo"));
  ASSERT_TRUE(Qm_tools::CanLoadStringList(list, file.name));
  ASSERT_NE(list, nullptr);
  EXPECT_EQ(LinesOf(*list), (Lines{u"one", u"two"}));
  delete std::exchange(list, nullptr);

  // An unreadable file raises to the caller of the detectors.
  const TempFile locked(B("some text\r\n"), u"nox-encoding-locked");
  std::u16string name = locked.name;
#ifdef _WIN32
  const rtl::unique_hfile hold(CreateFileW(reinterpret_cast<const wchar_t*>(name.c_str()),
                                           GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
  ASSERT_TRUE(hold);
#else
  // Root reads any mode, but reading a process's own memory at address 0 fails.
  if (geteuid() == 0)
    name = u"/proc/self/mem";
  else
    std::filesystem::permissions(std::filesystem::path(name), std::filesystem::perms::none);
#endif
  int markLen = 0;
  bool crlf = false;
  EXPECT_THROW(Qm_tools::GetFileFormat(name), rtl::Exception);
  EXPECT_THROW(Qm_tools::GetFileFormatEncoding(name), rtl::Exception);
  EXPECT_THROW(Qm_tools::CheckFileFormat(name, markLen, crlf), rtl::Exception);
  EXPECT_FALSE(Qm_tools::CanLoadStringList(list, name));
  delete list;
}

TEST(EncodingUtf8Structure, ShortCases) {
  const std::pair<std::string_view, bool> cases[] = {
      {"", true}, {"\xC3\xA4", true}, {"\xC3" "A", false}, {"\xE2\x82", false},
      {"\xED\xA0\x80", true}, {"\xC0\x80", true}, {"\xF0\x9D\x84\x9E", true},
      {"\xF8\x80\x80\x80\x80", false}, {"\x80", false},
      {"0123456789abcdef0123456789abcdef0123456\xC3", false},
      {"0123456789abcdef0123456789abcdef\xE2\x82\xAC" "0123456", true},
  };
  for (const auto& [name, test] : Utf8StructureVersions())
    for (const auto& [bytes, pass] : cases)
      EXPECT_EQ(test(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()), pass)
          << name << " " << ::testing::PrintToString(std::string(bytes));
}

TEST(EncodingUtf8Structure, EveryVersionEqualsTheRuleAcrossBlockEdges) {
  const auto versions = Utf8StructureVersions();
  // One sequence, whole, cut short or broken, in ASCII or in multi-byte text, at every
  // offset across the edges of words and vector blocks, and the data cut just around it.
  const std::string_view pieces[] = {
      "\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80", "\xC3", "\xE2\x82", "\xF0\x9F\x98",
      "\x80", "\xBF", "\xF7\xBF\xBF\xBF", "\xF8\x80\x80\x80", "\xFF", "\xC3\xA4\x80",
      "\xDF\xC3\xA4", "\xE0\xA0\x80", "\xF0\x90\x80\x80", "\xC0\x80", "\xC0"};
  for (const char filler : {'a', '\0'}) {
    for (const auto piece : pieces) {
      for (size_t at = 0; at < 300; ++at) {
        Bytes buffer;
        while (buffer.size() < 320) {
          if (filler) buffer.push_back(filler);
          else buffer.insert(buffer.end(), {0xC3, 0xBC});  // "ü" all along
        }
        std::copy(piece.begin(), piece.end(), buffer.begin() + at);
        std::vector<size_t> sizes = {buffer.size()};
        for (size_t size = at; size <= at + piece.size() + 3; ++size) sizes.push_back(size);
        for (const size_t size : sizes) {
          const bool expected = slow::Utf8Structure(buffer.data(), size);
          for (const auto& [name, test] : versions)
            ASSERT_EQ(test(buffer.data(), size), expected)
                << name << ": piece " << ::testing::PrintToString(std::string(piece)) << " at "
                << at << ", size " << size << ", filler " << int(filler);
        }
      }
    }
  }
  // Random text with multi-byte characters now dense, now rare, from every alignment.
  std::mt19937 random(12345);
  const std::string_view characters[] = {"\xC3\xA4", "\xE2\x82\xAC", "\xF0\x9F\x98\x80",
                                         "\x80", "\xC3", "\xFF"};
  for (int round = 0; round < 3000; ++round) {
    Bytes buffer;
    const size_t size = random() % 700;
    const unsigned rareness = 1 + random() % 100;
    while (buffer.size() < size) {
      const auto c = characters[random() % (round % 2 ? 6 : 3)];
      if (random() % rareness == 0)
        buffer.insert(buffer.end(), c.begin(), c.end());
      else
        buffer.push_back(static_cast<std::uint8_t>(random() % 0x80));
    }
    const size_t from = buffer.empty() ? 0 : random() % std::min<size_t>(buffer.size(), 33);
    const bool expected = slow::Utf8Structure(buffer.data() + from, buffer.size() - from);
    for (const auto& [name, test] : versions)
      ASSERT_EQ(test(buffer.data() + from, buffer.size() - from), expected)
          << name << ", round " << round;
  }
}

TEST(EncodingAnsi, Windows1252Table) {
  for (const auto& [byte, c] : std::vector<std::pair<std::uint8_t, char16_t>>{
           {0x80, u'\u20AC'}, {0x9F, u'\u0178'}, {0xE4, u'\u00E4'}, {0x81, 0x81}, {0x8D, 0x8D},
           {0x8F, 0x8F}, {0x90, 0x90}, {0x9D, 0x9D}})  // the holes map to themselves
    EXPECT_EQ(rtl::Windows1252ToChar(byte), c) << int{byte};
  Bytes all(256);
  std::u16string table;
  for (int b = 0; b < 256; ++b) {
    all[b] = static_cast<std::uint8_t>(b);
    table += rtl::Windows1252ToChar(all[b]);
    EXPECT_EQ(rtl::CharToWindows1252(table.back()), b);
  }
  EXPECT_EQ(rtl::CharToWindows1252(u'\u2192'), '?');
  EXPECT_EQ(rtl::CharToWindows1252(u'\u0100'), '?');
  if (!AnsiIs1252()) GTEST_SKIP() << "ANSI code page is not 1252";
  // The system page agrees with the table, holes included.
  EXPECT_EQ(TEncoding::ANSI()->GetString(all), table);
  EXPECT_EQ(TEncoding::ANSI()->GetBytes(table), all);
  EXPECT_EQ(TEncoding::ANSI()->GetBytes(u"\u0100\u2192\U0001D11E"), B("????"));
}

TEST(EncodingUnits, ABlockEndsBeforeACutCharacter) {
  TEncoding *const le = TEncoding::Unicode(), *const be = TEncoding::BigEndianUnicode(),
                   *const utf8 = TEncoding::UTF8();
  const struct { TEncoding* encoding; std::string_view bytes; size_t complete; } cases[] = {
      {le, "a\0b\0"sv, 4},      {le, "a\0b"sv, 2},           // whole units, odd byte
      {le, "a\0\x00\xD8"sv, 2}, {le, "a\0\xFF\xDB"sv, 2},    // first and last high surrogate
      {le, "a\0\x00\xDC"sv, 4}, {be, "\xD8\x3D"sv, 0},       // low surrogate; high one alone
      {be, "\xD8\x3D\xDE\x00"sv, 4}, {utf8, "a\xE2\x82"sv, 1}, {utf8, "a\xE2\x82\xAC"sv, 4},
  };
  for (const auto& c : cases) {
    const Bytes bytes = B(c.bytes);
    EXPECT_EQ(c.encoding->CompleteLength(bytes.data(), bytes.size()), c.complete)
        << ::testing::PrintToString(std::string(c.bytes));
  }
  EXPECT_EQ(le->GetString(B("a\0b"sv)), u"a\uFFFD");
  EXPECT_EQ(be->GetString(B("\0ab"sv)), u"a\uFFFD");
}

TEST(EncodingWriter, WritesEachFullBufferButNeverHalfAPair) {
  rtl::TMemoryStream stream;
  rtl::TStreamWriter writer(stream, TEncoding::UTF8(), 4);
  // A full buffer whose last unit is a high surrogate keeps it for its partner.
  for (const auto& [text, written] : std::vector<std::pair<std::u16string, std::string_view>>{
           {u"ab", ""}, {u"cd", "abcd"}, {u"efg\xD834", "abcdefg"}, {u"\xDD1E", "abcdefg"}}) {
    writer.Write(text);
    EXPECT_EQ(stream.Bytes(), B(written)) << stream.Bytes().size();
  }
  writer.Flush();
  EXPECT_EQ(stream.Bytes(), B("abcdefg\xF0\x9D\x84\x9E"));
}

TEST(EncodingReader, SplitsOnEveryLineEndAcrossSmallBlocks) {
  const std::u16string text =
      u"a\r\nb\n\nc\rd\r\r\n\n\u00E4\u20AC\U0001D11E x\r\n\u00FC\u00FC\u00FC\u00FC\u00FC\u00FC\u00FC\r\nlast";
  const Lines expected = {u"a", u"b", u"", u"c", u"d", u"", u"", u"\u00E4\u20AC\U0001D11E x",
                          u"\u00FC\u00FC\u00FC\u00FC\u00FC\u00FC\u00FC", u"last"};
  for (TEncoding* e : {TEncoding::UTF8(), TEncoding::Unicode(), TEncoding::BigEndianUnicode()}) {
    for (const int block : {16, 17, 4096}) {
      SCOPED_TRACE(e->CodePage() * 10000 + block);
      Bytes bytes = e->GetPreamble();
      const Bytes body = e->GetBytes(text);
      bytes.insert(bytes.end(), body.begin(), body.end());
      rtl::TMemoryStream stream(bytes);
      rtl::TStreamReader reader(stream, e, false, block);
      Lines lines;
      while (!reader.EndOfStream()) lines.push_back(reader.ReadLine());
      EXPECT_EQ(lines, expected);
      rtl::TMemoryStream again(bytes);
      rtl::TStreamReader detecting(again, TEncoding::ANSI(), true, block);
      EXPECT_EQ(detecting.ReadLine(), u"a");
      EXPECT_EQ(detecting.CurrentEncoding(), e);
    }
  }
}

TEST(EncodingLists, SaveThenLoadKeepsEveryLineInEachEncoding) {
  rtl::TStringList lines;
  for (int i = 0; i < 1500; ++i)  // lengths that put line ends on every block offset
    lines.Add(std::u16string(static_cast<size_t>(i % 37), static_cast<char16_t>(u'a' + i % 26)) +
              (i % 5 ? u"" : u"\u00E4\u00DF\u20AC"));
  lines.Add(u"");
  rtl::TMemoryStream stream;  // one stream, emptied for each encoding
  for (TEncoding* e : {TEncoding::ANSI(), TEncoding::UTF8(), TEncoding::Unicode(),
                       TEncoding::BigEndianUnicode()}) {
    SCOPED_TRACE(e->CodePage());
    if (e == TEncoding::ANSI() && !AnsiIs1252()) continue;
    rtl::TStringList source;
    source.Assign(lines);
    if (e != TEncoding::ANSI()) source.Add(u"\U0001D11E \u0100");
    stream.Clear();
    Qm_tools::SaveLinesToStream(source, stream, e);
    EXPECT_EQ(stream.Bytes(), e->GetBytes(source.Text()));  // no mark, CR LF after each line

    rtl::TStringList loaded;
    loaded.Add(u"kept");
    stream.SetPosition(0);
    Qm_tools::LoadLinesFromStream(loaded, stream, e);
    ASSERT_EQ(loaded.Count(), source.Count() + 1);
    EXPECT_EQ(loaded[0], u"kept");
    loaded.Delete(0);
    EXPECT_EQ(LinesOf(loaded), LinesOf(source));
    EXPECT_EQ(loaded.UpdateCount(), 0);

    Bytes bytes = e->GetPreamble();
    bytes.insert(bytes.end(), stream.Bytes().begin(), stream.Bytes().end());
    const TempFile file(bytes);
    rtl::TStringList* list = &loaded;
    loaded.Add(u"gone");
    ASSERT_TRUE(Qm_tools::CanLoadStringList(list, file.name));
    EXPECT_EQ(list, &loaded);
    EXPECT_EQ(LinesOf(loaded), LinesOf(source));
  }
}

// What passes as UTF-8 text beyond ASCII, and what the ANSI page holds: they decide how an
// unmarked file is read and whether a text may go into one-byte storage.
TEST(EncodingUtf8Text, WellFormedMultiByteUtf8AndWhatAnsiHolds) {
  const auto utf8 = [](std::string_view b) {
    return rtl::IsMultiByteUtf8(reinterpret_cast<const std::uint8_t*>(b.data()), b.size());
  };
  for (const auto yes : {"a\xC3\xBC"sv, "\xE2\x82\xAC"sv, "\xF0\x9F\x98\x80"sv, "\xF4\x8F\xBF\xBF"sv,
                         "\xDF\xBF"sv, "\xEF\xBF\xBD"sv})
    EXPECT_TRUE(utf8(yes)) << yes;
  for (const auto no : {"plain"sv, "\xC3"sv, "\xC0\x80"sv, "\xC1\xBF\x80"sv, "\xE0\x9F\xBF"sv,
                        "\xED\xA0\x80"sv, "\xF0\x8F\xBF\xBF"sv, "\xF4\x90\x80\x80"sv, "\xF5\x80\x80\x80"sv,
                        "\xFC\xBC"sv, "\xE2\x82"sv, "\x80\x80\x80"sv, "\xC3\xBC\xFF"sv, "\xC3\xC3\xBC"sv})
    EXPECT_FALSE(utf8(no)) << no;

  EXPECT_TRUE(!AnsiIs1252() || rtl::FitsAnsi(u"Grüße € …"));
  for (const auto no : {u"\u03A9"sv, u"\u0141"sv, u"a\u4E2D"sv, u"\U0001F600"sv, u"\xD800"sv})
    EXPECT_FALSE(rtl::FitsAnsi(no));

  // Streams: a short read is an error in the framework's words; a character cut off by the
  // end of the stream is read as malformed input.
  rtl::TMemoryStream stream(Bytes{'x'});
  char two[2];
  EXPECT_THAT([&] { stream.ReadBuffer(two, 2); },
              testing::ThrowsMessage<rtl::EReadError>(testing::StrEq("Stream read error")));
  const std::string_view cut = "ab\r\ncd\xE2\x82";
  rtl::TMemoryStream cutStream(Bytes(cut.begin(), cut.end()));
  rtl::TStreamReader reader(cutStream, TEncoding::UTF8(), false, 16);
  EXPECT_EQ(reader.ReadLine(), u"ab");
  EXPECT_EQ(reader.ReadLine(), u"cd" + TEncoding::UTF8()->GetString(Bytes(cut.end() - 2, cut.end())));
  // A file's own encoding given: its bytes are read so even without a mark.
  const TempFile file(Bytes{'G', 'r', 0xC3, 0xBC, 0xC3, 0x9F, 'e'});
  rtl::TStringList lines;
  rtl::LoadFromFile(lines, file.name, TEncoding::UTF8());
  EXPECT_EQ(lines.Text(), u"Grüße\r\n");
}

TEST(EncodingFileStream, ReportsTheFileItCannotOpen) {
  const std::u16string missing = TempName(u"nox-encoding-absent");
  try {
    rtl::TFileStream f(missing, rtl::fmOpenRead);
    FAIL() << "opened a missing file";
  } catch (const rtl::EFOpenError& e) {
    EXPECT_NE(e.Message().find(missing), std::u16string::npos);
  }
  const TempFile file(B("0123456789"));
  rtl::TFileStream f(file.name, rtl::fmOpenRead | rtl::fmShareDenyNone);
  EXPECT_EQ(f.Size(), 10);
  f.SetPosition(7);
  char tail[8] = {};
#ifndef _WIN32
  errno = EINTR;  // left over from an interrupted call elsewhere: the end is still the end
#endif
  EXPECT_EQ(f.Read(tail, sizeof tail), 3u);
  EXPECT_STREQ(tail, "789");
  EXPECT_THROW(f.ReadBuffer(tail, 1), rtl::EReadError);
}
