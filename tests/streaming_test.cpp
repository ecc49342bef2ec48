// Base64 lines, the loaders' blank-text rule, the binary component format, the printer block.
#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "rtl/filer.h"
#include "rtl/netencoding.h"
#include "tools/streaming.h"

namespace {

using namespace Qm_tools;

std::vector<std::uint8_t> Counting(std::size_t n) {
  std::vector<std::uint8_t> v(n);
  for (std::size_t i = 0; i < n; ++i) v[i] = static_cast<std::uint8_t>(i * 7 + 3);
  return v;
}

TEST(StreamingBase64, LinesOf76JoinedByCrLfAndBack) {
  EXPECT_EQ(rtl::Base64Encode({'M', 'a', 'n'}), u"TWFu");
  EXPECT_EQ(rtl::Base64Encode({'M', 'a'}), u"TWE=");
  EXPECT_EQ(rtl::Base64Encode({'M'}), u"TQ==");
  EXPECT_EQ(rtl::Base64Encode(Counting(57)).size(), 76u);
  const std::u16string two = rtl::Base64Encode(Counting(100));
  ASSERT_EQ(two.size(), 76u + 2 + 60);
  EXPECT_EQ(two.substr(76, 2), u"\r\n");
  for (const std::size_t n : {0u, 1u, 2u, 3u, 56u, 57u, 58u, 114u, 1000u})
    EXPECT_EQ(rtl::Base64Decode(rtl::Base64Encode(Counting(n))), Counting(n)) << n;
  // Decoding skips white space and line breaks and refuses the rest.
  EXPECT_EQ(rtl::Base64Decode(u" TW\r\nFu\nTQ== "), (std::vector<std::uint8_t>{'M', 'a', 'n', 'M'}));
  EXPECT_EQ(rtl::Base64Decode(u"TWE"), (std::vector<std::uint8_t>{'M', 'a'})) << "padding optional";
  for (const char16_t* bad : {u"TW?u", u"T", u"TQ=x", u"TQ===", u"=TQ", u"TWFuä"})
    EXPECT_THROW(rtl::Base64Decode(bad), rtl::EEncodingError) << rtl::Utf16ToUtf8(bad);
}

TEST(StreamingBase64, StreamsInAndOut) {
  rtl::TMemoryStream source(Counting(100));
  source.SetPosition(50);
  std::u16string text;
  ASSERT_TRUE(SaveImgStreamToBase64Str(source, text)) << "from the start, wherever it stood";
  EXPECT_EQ(text, rtl::Base64Encode(Counting(100)));
  rtl::TMemoryStream empty;
  EXPECT_FALSE(SaveImgStreamToBase64Str(empty, text));

  auto kept = std::make_unique<rtl::TMemoryStream>();
  rtl::TMemoryStream* const before = kept.get();
  EXPECT_FALSE(LoadImgStreamFromBase64Str(kept, u"  \r\n \t "));
  EXPECT_EQ(kept.get(), before) << "a blank text leaves the stream alone";
  // Lines that lost their CR on the way still read.
  std::u16string lf = rtl::Base64Encode(Counting(100));
  lf.erase(76, 1);
  ASSERT_TRUE(LoadImgStreamFromBase64Str(kept, lf));
  EXPECT_EQ(kept->Position(), 0);
  EXPECT_EQ(kept->Bytes(), Counting(100));
  EXPECT_THROW(LoadImgStreamFromBase64Str(kept, u"no base64!"), rtl::EEncodingError);
}

TEST(StreamingFiler, ValuesTakeTheirSmallestForm) {
  const std::int64_t integers[] = {-128, 300, -70000, std::int64_t{1} << 40};
  // ANSI text in one byte a character; other text as UTF-8 where that is shorter than
  // UTF-16 ("aΩ": 3 bytes against 4), else as UTF-16 ("ΩΩΩ": 6 against 6; a lone surrogate).
  const struct { std::u16string text; rtl::TValueType form; } strings[] = {
      {u"abc", rtl::vaString}, {u"äöü€", rtl::vaString}, {std::u16string(300, u'ä'), rtl::vaLString},
      {u"aΩ", rtl::vaUTF8String}, {u"ΩΩΩ", rtl::vaWString}, {u"ab\xD800" u"cd", rtl::vaWString},
      {u"", rtl::vaString}};
  rtl::TMemoryStream s;
  rtl::TWriter w(s);
  w.WriteSignature();
  for (const std::int64_t i : integers) w.WriteInteger(i);
  for (const auto& t : strings) w.WriteString(t.text);
  w.WriteIdent(u"alClient");
  w.WriteIdent(u"true");
  w.WriteSet({u"fsBold", u"fsItalic"});
  w.WriteListEnd();
  const std::vector<std::uint8_t> head(s.Bytes().begin(), s.Bytes().begin() + 21);
  EXPECT_EQ(head, (std::vector<std::uint8_t>{'T', 'P', 'F', '0', 2, 0x80, 3, 0x2C, 0x01, 4, 0x90,
                                              0xEE, 0xFE, 0xFF, 19, 0, 0, 0, 0, 0, 1}));

  s.SetPosition(0);
  rtl::TReader r(s);
  r.ReadSignature();
  for (const std::int64_t i : integers) EXPECT_EQ(r.ReadInteger(), i);
  for (const auto& t : strings) {
    EXPECT_EQ(r.NextValue(), t.form);
    EXPECT_EQ(r.ReadString(), t.text);
  }
  EXPECT_EQ(r.ReadIdent(), u"alClient");
  EXPECT_TRUE(r.ReadBoolean());
  EXPECT_EQ(r.ReadSet(), (std::vector<std::u16string>{u"fsBold", u"fsItalic"}));
  EXPECT_TRUE(r.EndOfList());
}

// Strings as the framework writes them, by hand: one-byte types in the ANSI code page, and
// the UTF-8 and UTF-16 types; one-byte UTF-8, as earlier versions of this library wrote
// it, reads as UTF-8.
TEST(StreamingFiler, StringsOfEveryValueTypeAsTheFrameworkWritesThem) {
  const struct { std::vector<std::uint8_t> bytes; std::u16string text; } cases[] = {
      {{6, 5, 'G', 'r', 0xFC, 0xDF, 'e'}, u"Grüße"}, {{12, 3, 0, 0, 0, 0x80, 0x85, 0xE4}, u"€…ä"},
      {{20, 5, 0, 0, 0, 0xC5, 0x81, 0xE4, 0xB8, 0xAD}, u"Ł中"},
      {{18, 2, 0, 0, 0, 0xA9, 0x03, 0x3D, 0xD8}, u"Ω\xD83D"}, {{6, 2, 0xC3, 0xB6}, u"ö"},
      {{6, 2, 0xC3, 0x28}, u"Ã("},
  };
  for (const auto& c : cases) {
    rtl::TMemoryStream s(c.bytes);
    EXPECT_EQ(rtl::TReader(s).ReadString(), c.text);
  }
  rtl::TMemoryStream written;
  rtl::TWriter(written).WriteString(u"Grüße");
  EXPECT_EQ(written.Bytes(), cases[0].bytes);

}

TEST(StreamingFiler, Refusing) {
  rtl::TMemoryStream bad(std::vector<std::uint8_t>{'T', 'P', 'F', '1', 99});
  rtl::TReader rb(bad);
  EXPECT_THROW(rb.ReadSignature(), rtl::EFilerError);
  EXPECT_THROW(rb.ReadValue(), rtl::EFilerError) << "value type 99";
  rtl::TMemoryStream word(std::vector<std::uint8_t>{6, 3, 'a'});
  rtl::TReader rw(word);
  EXPECT_THROW(rw.ReadInteger(), rtl::EFilerError);
  word.SetPosition(0);
  EXPECT_THROW(rw.ReadString(), rtl::EReadError) << "a string cut short";
  // Lengths are held against the stream's end before anything is reserved.
  rtl::TMemoryStream huge(std::vector<std::uint8_t>{12, 0xFF, 0xFF, 0xFF, 0x7F, 'x'});
  EXPECT_THROW(rtl::TReader(huge).ReadString(), rtl::EFilerError);
  rtl::TMemoryStream binary;
  rtl::TWriter(binary).WriteBinary({1, 2, 3});
  binary.SetPosition(0);
  EXPECT_EQ(rtl::TReader(binary).ReadBinary(), (std::vector<std::uint8_t>{1, 2, 3}));
}

TEST(StreamingPrinter, TheBlockIsReadFromTwiceItsFixedPart) {
  const TPrinterInfoRange r = PrinterInfoRange(1000);
  EXPECT_EQ(std::make_tuple(r.Offset, r.Count, r.Reserve), std::make_tuple(272u, 864u, 1136u));
  EXPECT_EQ(PrinterInfoRange(100).Count, 0u);
}

}  // namespace
