// Picture headers from hostile bytes: the claim each format's header makes, the claims
// refused before a decoder sees them, and the size limit of a decoded picture.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

#include "rtl/sysutils.h"
#include "ui/picture_rules.h"

namespace {

using Bytes = std::vector<std::uint8_t>;
using ui::TPictureClaim;

// Integers of `n` bytes, least or most significant byte first.
void Le(Bytes& b, std::uint32_t v, int n) {
  for (int i = 0; i < n; ++i) b.push_back(static_cast<std::uint8_t>(v >> 8 * i));
}
void Be(Bytes& b, std::uint32_t v, int n) {
  for (int i = n - 1; i >= 0; --i) b.push_back(static_cast<std::uint8_t>(v >> 8 * i));
}
Bytes Cut(const Bytes& b, std::size_t n) { return Bytes(b.begin(), b.begin() + n); }
Bytes Patch(Bytes b, std::size_t at, std::initializer_list<std::uint8_t> with) {
  std::copy(with.begin(), with.end(), b.begin() + static_cast<std::ptrdiff_t>(at));
  return b;
}

// Signature, header, one image data chunk of `data` bytes, end; checksums left 0.
Bytes Png(std::uint32_t width, std::uint32_t height, std::uint8_t depth = 8,
          std::uint8_t colour = 0, std::size_t data = 64) {
  Bytes b{0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n', 0, 0, 0, 13, 'I', 'H', 'D', 'R'};
  Be(b, width, 4), Be(b, height, 4);
  b.insert(b.end(), {depth, colour, 0, 0, 0, 0, 0, 0, 0});  // methods, interlace, checksum
  for (const auto& [type, length] : {std::pair{"IDAT", data}, std::pair{"IEND", std::size_t{0}}}) {
    Be(b, static_cast<std::uint32_t>(length), 4);
    b.insert(b.end(), type, type + 4);
    b.insert(b.end(), length + 4, 0);
  }
  return b;
}

// File header, info header (40 bytes, or the 12-byte core one), `pixels` bytes right after.
Bytes Bmp(std::int32_t width, std::int32_t height, std::uint16_t bits, std::size_t pixels,
          std::uint32_t compression = 0, std::uint32_t header = 40) {
  Bytes b{'B', 'M'};
  // File size, two reserved words, where the pixels start; the info header's size.
  Le(b, 14 + header + static_cast<std::uint32_t>(pixels), 4), Le(b, 0, 4), Le(b, 14 + header, 4);
  Le(b, header, 4);
  const int side = header == 12 ? 2 : 4;  // the core header's sizes are 16 bits
  Le(b, static_cast<std::uint32_t>(width), side), Le(b, static_cast<std::uint32_t>(height), side);
  Le(b, 1, 2), Le(b, bits, 2);  // one plane
  if (header != 12) {  // compression and the rest of the longer headers
    Le(b, compression, 4), b.insert(b.end(), header - 20, 0);
  }
  b.insert(b.end(), pixels, 0x55);
  return b;
}

// A screen with a two-colour table, an extension, one frame of a one-pixel data block, the end.
Bytes Gif(std::uint32_t width, std::uint32_t height, std::uint32_t frameWidth = 1,
          std::uint32_t frameHeight = 1) {
  Bytes b{'G', 'I', 'F', '8', '9', 'a'};
  Le(b, width, 2), Le(b, height, 2);
  b.insert(b.end(), {0x80, 0, 0, 0, 0, 0, 0xFF, 0xFF, 0xFF, 0x21, 0xF9, 4, 0, 0, 0, 0, 0,
                     0x2C, 0, 0, 0, 0});
  Le(b, frameWidth, 2), Le(b, frameHeight, 2);
  b.insert(b.end(), {0, 2, 2, 0x44, 0x01, 0, 0x3B});
  return b;
}

// Start, an application segment, a frame header of `marker` with three components, scan
// bytes up to `size`, end.
Bytes Jpeg(std::uint32_t width, std::uint32_t height, std::size_t size,
           std::uint8_t marker = 0xC0) {
  Bytes b{0xFF, 0xD8, 0xFF, 0xE0, 0, 16, 'J', 'F', 'I', 'F', 0, 1, 1, 0, 0, 1, 0, 1, 0, 0};
  b.insert(b.end(), {0xFF, marker, 0, 17, 8});  // length 17, precision 8
  Be(b, height, 2), Be(b, width, 2);
  b.insert(b.end(), {3, 1, 0x22, 0, 2, 0x11, 1, 3, 0x11, 1});
  if (b.size() + 2 < size) b.insert(b.end(), size - b.size() - 2, 0x5A);
  b.insert(b.end(), {0xFF, 0xD9});
  return b;
}

// An icon whose one image is `image`.
Bytes Ico(const Bytes& image, std::uint32_t offset = 22) {
  Bytes b{0, 0, 1, 0, 1, 0, 16, 16, 0, 0, 1, 0, 32, 0};
  Le(b, static_cast<std::uint32_t>(image.size()), 4), Le(b, offset, 4);
  b.insert(b.end(), image.begin(), image.end());
  return b;
}

// The bitmap of an icon: an info header whose height counts the mask's rows too.
Bytes IconDib(std::int32_t width, std::int32_t height, std::uint16_t bits, std::size_t pixels) {
  const Bytes file = Bmp(width, 2 * height, bits, pixels);
  return Bytes(file.begin() + 14, file.end());
}

TEST(StreamingPictureHeaders, EachFormatClaimsItsSizeAndDepth) {
  Bytes jpegFill = Jpeg(64, 32, 600);
  jpegFill.insert(jpegFill.begin() + 20, {0xFF, 0xFF});  // fill bytes before the frame's marker
  const struct { const char* what; Bytes bytes; TPictureClaim claim; } cases[] = {
      {"gray PNG", Png(16, 8), {ui::pfPng, 16, 8, 8}},
      {"RGBA PNG of 16 bits", Png(3, 2, 16, 6), {ui::pfPng, 3, 2, 64}},
      {"palette PNG of 2 bits", Png(5, 5, 2, 3), {ui::pfPng, 5, 5, 2}},
      // 8000 x 8000 gray is 64 million bytes; 62016 bytes of deflate make up to 64 million.
      {"PNG with just enough data", Png(8000, 8000, 8, 0, 62016), {ui::pfPng, 8000, 8000, 8}},
      {"gray PNG of 1 bit, of the largest size", Png(8192, 8192, 1, 0, 8200), {ui::pfPng, 8192, 8192, 1}},
      {"24-bit BMP, rows of 9 bytes padded to 12", Bmp(3, 2, 24, 24), {ui::pfBmp, 3, 2, 24}},
      {"BMP stored from the top", Bmp(3, -2, 24, 24), {ui::pfBmp, 3, 2, 24}},
      {"1-bit BMP, rows of 5 bytes padded to 8", Bmp(33, 2, 1, 16), {ui::pfBmp, 33, 2, 1}},
      {"BMP with the core header", Bmp(5, 3, 8, 24, 0, 12), {ui::pfBmp, 5, 3, 8}},
      {"BMP with the version 5 header", Bmp(2, 2, 32, 16, 3, 124), {ui::pfBmp, 2, 2, 32}},
      // Runs may skip whole areas: the bytes say nothing of the size.
      {"run-length BMP", Bmp(1000, 1000, 8, 10, 1), {ui::pfBmp, 1000, 1000, 8}},
      {"GIF", Gif(10, 20), {ui::pfGif, 10, 20, 8}},
      {"GIF frame larger than its screen", Gif(10, 20, 300, 400), {ui::pfGif, 10, 20, 8}},
      {"JPEG", Jpeg(64, 32, 600), {ui::pfJpeg, 64, 32, 24}},
      // 64 million pixels take 125000 bytes at a bit per 8 x 8 block.
      {"JPEG with just enough bytes", Jpeg(8000, 8000, 125000), {ui::pfJpeg, 8000, 8000, 24}},
      {"progressive JPEG", Jpeg(64, 32, 600, 0xC2), {ui::pfJpeg, 64, 32, 24}},
      {"JPEG with fill bytes", jpegFill, {ui::pfJpeg, 64, 32, 24}},
      {"arithmetic JPEG: no floor", Jpeg(8000, 8000, 300, 0xC9), {ui::pfJpeg, 8000, 8000, 24}},
      {"icon with a PNG", Ico(Png(16, 16, 8, 6)), {ui::pfIco, 16, 16, 32}},
      {"icon with a bitmap", Ico(IconDib(16, 16, 32, 16 * 16 * 4)), {ui::pfIco, 16, 16, 32}},
      {"text, as any unknown format", {'h', 'e', 'l', 'l', 'o'}, {}},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(ui::CheckPictureBytes(c.bytes), c.claim) << c.what;
    // Every cut of a small one in a buffer of its own size, so that a read past it is caught.
    for (std::size_t n = 0; n < c.bytes.size() && c.bytes.size() < 2000; ++n) {
      try {
        ui::CheckPictureBytes(Cut(c.bytes, n));
      } catch (const ui::EInvalidGraphic&) {
      }
    }
  }
}

TEST(StreamingPictureHeaders, HostileHeadersAreRefused) {
  // No global colour table (the top flag bit) but a size for one: the frame follows at once.
  Bytes gifNoTable = Gif(16, 16, 65535, 65535);
  gifNoTable[10] = 0x01;
  gifNoTable.erase(gifNoTable.begin() + 13, gifNoTable.begin() + 19);
  const struct { const char* what; Bytes bytes; } cases[] = {
      {"nothing", {}}, {"PNG of 8000 x 8000 with too little data", Png(8000, 8000, 8, 0, 62015)},
      {"PNG of 8192 x 8193", Png(8192, 8193, 1, 0, 9000)},
      {"PNG wider than 2^31", Png(0x80000000u, 1, 1, 0, 100)}, {"PNG of width 0", Png(0, 16)},
      {"PNG colour type 5", Png(16, 16, 8, 5)}, {"PNG RGB of 4 bits", Png(16, 16, 4, 2)},
      {"PNG header chunk of 14 bytes", Patch(Png(16, 16), 11, {14})},
      {"PNG whose first chunk is not IHDR", Patch(Png(16, 16), 12, {'I', 'D', 'A', 'T'})},
      {"PNG without image data", Png(16, 16, 8, 0, 0)},
      {"PNG cut in its header", Cut(Png(16, 16), 20)},
      // The data chunk claims 2 GiB and the file ends in it: its 100 bytes make at most 103200,
      // short of the 160000 of 400 x 400.
      {"PNG whose data chunk claims more than the file",
       Patch(Cut(Png(400, 400, 8, 0, 100), 8 + 25 + 8 + 100), 33, {0x7F})},
      {"BMP claiming more rows than its bytes", Bmp(100, 100, 24, 10)},
      {"bit-field BMP claiming more rows than its bytes", Bmp(100, 100, 32, 16, 3)},
      {"BMP without its last row's padding", Bmp(3, 2, 24, 23)},
      {"BMP of width 0", Bmp(0, 2, 24, 24)}, {"BMP of negative width", Bmp(-3, 2, 24, 24)},
      {"BMP of height 0", Bmp(3, 0, 24, 24)}, {"BMP of height -2^31", Bmp(3, INT32_MIN, 24, 24)},
      {"BMP of 7 bits", Bmp(3, 2, 7, 24)}, {"BMP with a 20-byte header", Bmp(3, 2, 24, 24, 0, 20)},
      {"BMP with a 4 GiB header", Patch(Bmp(2, 2, 32, 16), 17, {0xFF})},
      {"BMP whose pixels lie 4 GiB on", Patch(Bmp(2, 2, 32, 16), 10, {0xF0, 0, 0, 0xFF})},
      {"BMP cut after its signature", {'B', 'M'}},
      {"run-length BMP of 20000 x 20000", Bmp(20000, 20000, 8, 10, 1)},
      {"GIF screen of 65535 x 65535", Gif(65535, 65535)}, {"GIF screen of 0 x 0", Gif(0, 0)},
      {"GIF frame of 65535 x 65535", Gif(16, 16, 65535, 65535)},
      {"GIF frame of 65535 x 65535 after a screen without colours", gifNoTable},
      {"GIF cut in its screen", Cut(Gif(16, 16), 10)},
      {"JPEG a byte short of its floor", Jpeg(8000, 8000, 124999)},
      {"JPEG of 65535 x 65535", Jpeg(65535, 65535, 1 << 20, 0xC9)},
      {"JPEG of height 0", Jpeg(64, 0, 600)},
      {"JPEG of no components", Patch(Jpeg(64, 32, 600), 29, {0})},
      {"JPEG with a scan before its frame", Patch(Jpeg(64, 32, 600), 21, {0xDA})},
      {"JPEG segment of length 1", Patch(Jpeg(64, 32, 600), 5, {1})},
      {"JPEG cut before its frame", Cut(Jpeg(64, 32, 600), 20)},
      {"icon of no images", {0, 0, 1, 0, 0, 0}},
      {"icon whose image lies past its end", Ico(Png(16, 16), 4000)},
      {"icon with a PNG of 16384 x 16384", Ico(Png(16384, 16384, 8, 6, 45))},
      {"icon bitmap claiming more rows than its bytes", Ico(IconDib(16, 64, 32, 16 * 16 * 4))},
  };
  for (const auto& c : cases)
    EXPECT_THROW(ui::CheckPictureBytes(c.bytes), ui::EInvalidGraphic) << c.what;
}

TEST(StreamingPictureHeaders, ADecodedPictureHasAtMost64Megapixels) {
  const struct { std::uint64_t width, height; bool allowed; } cases[] = {
      {1, 1, true}, {8192, 8192, true}, {8192, 8193, false}, {64 * 1024 * 1024, 1, true},
      {1, 64 * 1024 * 1024 + 1, false}, {0, 5, false}, {5, 0, false},
      // Products that wrap around in 64 bits.
      {std::uint64_t{1} << 32, std::uint64_t{1} << 32, false}, {std::uint64_t{1} << 63, 2, false},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(std::to_string(c.width) + " x " + std::to_string(c.height));
    if (c.allowed)
      EXPECT_NO_THROW(ui::CheckPictureSize(c.width, c.height));
    else
      EXPECT_THROW(ui::CheckPictureSize(c.width, c.height), ui::EInvalidGraphic);
  }
}

}  // namespace
