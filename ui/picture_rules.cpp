// Picture headers read and held against their bytes (ui/picture_rules.h). Every read is
// checked against the bytes' end first; offsets and lengths from a header are added in 64
// bits, so that no claim can wrap around.
#include "ui/picture_rules.h"

#include <algorithm>
#include <initializer_list>
#include <string_view>

#include "rtl/ustring.h"

namespace ui {

namespace {

using Bytes = std::span<const std::uint8_t>;

[[noreturn]] void Unknown() { throw EInvalidGraphic(u"Unbekanntes Bildformat"); }
[[noreturn]] void CutShort() { throw EInvalidGraphic(u"Die Bilddaten sind unvollständig"); }
[[noreturn]] void BadHeader() { throw EInvalidGraphic(u"Der Bildkopf ist ungültig"); }
[[noreturn]] void TooLarge(std::uint64_t width, std::uint64_t height) {
  throw EInvalidGraphic(u"Das Bild ist zu groß: " +
                        rtl::IntToStr(static_cast<std::int64_t>(width)) + u" x " +
                        rtl::IntToStr(static_cast<std::int64_t>(height)) + u" Pixel");
}

bool OneOf(std::uint32_t value, std::initializer_list<std::uint32_t> values) {
  return std::find(values.begin(), values.end(), value) != values.end();
}

// Whether `b` holds `count` bytes from `at` on.
bool Holds(Bytes b, std::uint64_t at, std::uint64_t count) {
  return at <= b.size() && count <= b.size() - at;
}

bool Equal(Bytes b, std::uint64_t at, std::string_view text) {
  return Holds(b, at, text.size()) &&
         std::equal(text.begin(), text.end(), b.begin() + static_cast<std::ptrdiff_t>(at),
                    [](char c, std::uint8_t u) { return static_cast<std::uint8_t>(c) == u; });
}

std::uint32_t Le16(Bytes b, std::size_t at) { return b[at] | std::uint32_t{b[at + 1]} << 8; }
std::uint32_t Le32(Bytes b, std::size_t at) { return Le16(b, at) | Le16(b, at + 2) << 16; }
std::uint32_t Be16(Bytes b, std::size_t at) { return std::uint32_t{b[at]} << 8 | b[at + 1]; }
std::uint32_t Be32(Bytes b, std::size_t at) { return Be16(b, at) << 16 | Be16(b, at + 2); }

constexpr std::string_view kPngSignature{"\x89PNG\r\n\x1A\n", 8};

// A device-independent bitmap's header at `at`: its claim and, for uncompressed rows, the
// bytes its rows take. In an icon the header counts the rows of the mask too.
struct TDib {
  TPictureClaim Claim;
  std::uint32_t HeaderSize = 0;
  std::uint64_t RowBytes = 0;
};

TDib ReadDib(Bytes b, std::uint64_t at, bool icon) {
  if (!Holds(b, at, 4)) CutShort();
  const std::uint32_t headerSize = Le32(b, at);
  std::int64_t width = 0, height = 0;
  std::uint32_t bits = 0, compression = 0;
  if (headerSize == 12) {  // the old core header: 16-bit sizes, always uncompressed
    if (!Holds(b, at, 12)) CutShort();
    width = Le16(b, at + 4);
    height = Le16(b, at + 6);
    bits = Le16(b, at + 10);
  } else if (headerSize >= 40) {  // the info header and its longer versions
    if (!Holds(b, at, headerSize)) CutShort();
    width = static_cast<std::int32_t>(Le32(b, at + 4));
    height = static_cast<std::int32_t>(Le32(b, at + 8));
    bits = Le16(b, at + 14);
    compression = Le32(b, at + 16);
  } else {
    BadHeader();
  }
  // A negative height stores the rows from the top.
  if (height < 0) height = -height;
  if (icon) height /= 2;
  if (width <= 0 || height == 0) BadHeader();
  CheckPictureSize(static_cast<std::uint64_t>(width), static_cast<std::uint64_t>(height));

  TDib dib{{pfBmp, static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height), bits},
           headerSize, 0};
  // Plain colours or colours through bit masks: rows. Run lengths may skip whole areas,
  // and JPEG or PNG inside are judged by their decoders.
  if (compression == 0 || compression == 3 || compression == 6) {
    if (!OneOf(bits, {1, 2, 4, 8, 16, 24, 32})) BadHeader();
    const std::uint64_t stride = (static_cast<std::uint64_t>(width) * bits + 31) / 32 * 4;
    dib.RowBytes = stride * static_cast<std::uint64_t>(height);
  }
  return dib;
}

TPictureClaim Bmp(Bytes b) {
  // The file header: "BM", the file size, 4 reserved bytes, where the pixels begin.
  if (!Holds(b, 0, 14)) CutShort();
  const TDib dib = ReadDib(b, 14, false);
  if (!Holds(b, Le32(b, 10), dib.RowBytes)) CutShort();
  return dib.Claim;
}

TPictureClaim Png(Bytes b) {
  // The signature, then the header chunk: length 13, "IHDR", width, height, bit depth,
  // colour type, compression, filter, interlace.
  if (!Holds(b, 0, 8 + 8 + 13)) CutShort();
  if (Be32(b, 8) != 13 || !Equal(b, 12, "IHDR")) BadHeader();
  const std::uint32_t width = Be32(b, 16), height = Be32(b, 20);
  const std::uint32_t depth = b[24], colour = b[25];
  // Channels by colour type: gray, -, RGB, palette, gray and alpha, -, RGBA.
  constexpr std::uint32_t kChannels[7] = {1, 0, 3, 1, 2, 0, 4};
  const std::uint32_t channels = colour < 7 ? kChannels[colour] : 0;
  const bool depthFits = colour == 0   ? OneOf(depth, {1, 2, 4, 8, 16})
                         : colour == 3 ? OneOf(depth, {1, 2, 4, 8})
                                       : OneOf(depth, {8, 16});
  if (channels == 0 || !depthFits || width == 0 || height == 0) BadHeader();
  CheckPictureSize(width, height);

  // The image data chunks as far as the bytes go; each chunk is its length, its type, its
  // data and a checksum.
  std::uint64_t data = 0;
  for (std::uint64_t at = 8; Holds(b, at, 8);) {
    const std::uint64_t length = Be32(b, at);
    if (Equal(b, at + 4, "IDAT")) data += std::min<std::uint64_t>(length, b.size() - (at + 8));
    if (Equal(b, at + 4, "IEND")) break;
    at += 12 + length;
  }
  // Interlaced or not, the rows hold at least every pixel's bits.
  const std::uint64_t pixelBytes = std::uint64_t{width} * height * depth * channels / 8;
  if (pixelBytes > 1032 * data) CutShort();
  return {pfPng, width, height, depth * channels};
}

// Past a chain of GIF sub-blocks (each a length byte and that many bytes, ended by length
// 0) that begins at `at`; the bytes' end when the chain is cut.
std::uint64_t SkipSubBlocks(Bytes b, std::uint64_t at) {
  while (Holds(b, at, 1)) {
    const std::uint8_t n = b[at];
    at += 1 + n;
    if (n == 0) break;
  }
  return at;
}

// The size of a colour table whose presence and size a GIF packs into `flags`.
std::uint64_t GifColourTable(std::uint8_t flags) {
  return flags & 0x80 ? std::uint64_t{3} << ((flags & 7) + 1) : 0;
}

TPictureClaim Gif(Bytes b) {
  // "GIF89a", the screen's width and height, flags, background, aspect.
  if (!Holds(b, 0, 13)) CutShort();
  const std::uint32_t width = Le16(b, 6), height = Le16(b, 8);
  if (width == 0 || height == 0) BadHeader();
  CheckPictureSize(width, height);
  // Frames need not lie inside the screen, and a decoder may read them all at once.
  std::uint64_t at = 13 + GifColourTable(b[10]);
  while (Holds(b, at, 1)) {
    if (b[at] == 0x2C) {  // a frame: position, size, flags, colour table, code size, data
      if (!Holds(b, at, 10)) break;
      const std::uint32_t frameWidth = Le16(b, at + 5), frameHeight = Le16(b, at + 7);
      if (std::uint64_t{frameWidth} * frameHeight > MaxPicturePixels)
        TooLarge(frameWidth, frameHeight);
      at = SkipSubBlocks(b, at + 10 + GifColourTable(b[at + 9]) + 1);
    } else if (b[at] == 0x21) {  // an extension: its label, then sub-blocks
      at = SkipSubBlocks(b, at + 2);
    } else {
      break;  // the trailer, or something for the decoder to judge
    }
  }
  return {pfGif, width, height, 8};
}

TPictureClaim Jpeg(Bytes b) {
  // Segments after the start marker until the frame header; each is 0xFF, a marker, and
  // (but for the restart and TEM markers) a length that counts itself.
  std::uint64_t at = 2;
  for (;;) {
    // Decoders pass over stray bytes and the fill bytes before a marker.
    while (Holds(b, at, 1) && b[at] != 0xFF) ++at;
    while (Holds(b, at, 2) && b[at + 1] == 0xFF) ++at;
    if (!Holds(b, at, 2)) CutShort();
    const std::uint8_t marker = b[at + 1];
    at += 2;
    if (marker == 0x01 || marker == 0xD8 || (marker >= 0xD0 && marker <= 0xD7)) continue;
    if (marker == 0xD9 || marker == 0xDA) BadHeader();  // the end or a scan before a frame
    if (!Holds(b, at, 2)) CutShort();
    const std::uint32_t length = Be16(b, at);
    if (length < 2) BadHeader();
    const bool frame = marker >= 0xC0 && marker <= 0xCF && marker != 0xC4 && marker != 0xC8 &&
                       marker != 0xCC;
    if (!frame) {
      at += length;
      continue;
    }
    // Length, sample precision, height, width, number of components.
    if (!Holds(b, at, 8)) CutShort();
    const std::uint32_t precision = b[at + 2], height = Be16(b, at + 3),
                        width = Be16(b, at + 5), components = b[at + 7];
    // A height of 0 is to come later in the scan (DNL); no decoder here reads that.
    if (width == 0 || height == 0 || components == 0) BadHeader();
    CheckPictureSize(width, height);
    // Baseline, extended, progressive and lossless with Huffman tables.
    if (marker <= 0xC3 && std::uint64_t{width} * height > 512 * std::uint64_t{b.size()})
      CutShort();
    return {pfJpeg, width, height, precision * components};
  }
}

TPictureClaim Ico(Bytes b) {
  // 0, type 1, the number of images, then 16 bytes for each: sizes, colours, planes, bits,
  // the image's length and where it lies. The first image is the one decoded.
  if (!Holds(b, 0, 6)) CutShort();
  if (Le16(b, 4) == 0) BadHeader();
  if (!Holds(b, 6, 16)) CutShort();
  const std::uint64_t length = Le32(b, 6 + 8), offset = Le32(b, 6 + 12);
  if (!Holds(b, offset, length)) CutShort();
  const Bytes image = b.subspan(offset, length);
  TPictureClaim claim;
  if (Equal(image, 0, kPngSignature)) {
    claim = Png(image);
  } else {
    const TDib dib = ReadDib(image, 0, true);
    if (!Holds(image, dib.HeaderSize, dib.RowBytes)) CutShort();
    claim = dib.Claim;
  }
  claim.Format = pfIco;
  return claim;
}

}  // namespace

void CheckPictureSize(std::uint64_t width, std::uint64_t height) {
  if (width == 0 || height == 0) BadHeader();
  // Each side first, so that the product cannot wrap.
  if (width > MaxPicturePixels || height > MaxPicturePixels || width * height > MaxPicturePixels)
    TooLarge(width, height);
}

TPictureClaim CheckPictureBytes(std::span<const std::uint8_t> bytes) {
  if (bytes.empty()) Unknown();
  if (Equal(bytes, 0, "BM")) return Bmp(bytes);
  if (Equal(bytes, 0, kPngSignature)) return Png(bytes);
  if (Equal(bytes, 0, "GIF87a") || Equal(bytes, 0, "GIF89a")) return Gif(bytes);
  if (Equal(bytes, 0, "\xFF\xD8")) return Jpeg(bytes);
  if (Equal(bytes, 0, std::string_view("\0\0\1\0", 4))) return Ico(bytes);
  return {};
}

}  // namespace ui
