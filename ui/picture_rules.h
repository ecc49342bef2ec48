// Picture files written by someone else, judged before a decoder sees them: what the header
// of a BMP, PNG, GIF, JPEG or ICO file claims (size and depth), whether the bytes can hold
// that, and how large a decoded picture may be. Pure; TPicture (ui/graphics.h) asks here
// before it decodes, and again with the decoder's frame size before it reserves the pixels.
//
// A header may claim any size: 100 bytes can name a PNG of 16384 x 16384, a gigabyte once
// decoded. Whatever the format, a picture has at most MaxPicturePixels. Where the format
// ties the pixels to the bytes, the claim must fit the bytes as well:
//  - BMP, and the bitmap of an icon: uncompressed rows, each padded to 32 bits, lie in the
//    bytes from the pixel offset on (run-length, JPEG and PNG compression excepted);
//  - PNG: deflate makes at most 1032 bytes of one, so the image data chunks hold at least
//    a 1032nd of the pixel bytes claimed;
//  - JPEG with Huffman coding: every 8 x 8 block takes at least a bit, so the file has at
//    least a byte per 512 pixels (arithmetic coding has no such floor).
// A GIF's screen and each of its frames are held to the limit only: a screen may be mostly
// background. TIFF and the other formats the system decodes are left to the decoder.
//
// Not here: the decoding (ui/picture_win.cpp).
#pragma once

#include <cstdint>
#include <span>

#include "rtl/exception.h"

namespace ui {

// Bytes that are no picture the system can read, or no picture this framework makes.
class EInvalidGraphic : public rtl::Exception {
 public:
  using rtl::Exception::Exception;
};

// The file format a picture came in or was made in.
enum class TPictureFormat { pfNone, pfBmp, pfPng, pfJpeg, pfGif, pfTiff, pfIco, pfOther };
using enum TPictureFormat;

// The most pixels a decoded picture may have: 64 megapixels, 256 MiB at 32 bits a pixel.
inline constexpr std::uint64_t MaxPicturePixels = std::uint64_t{64} * 1024 * 1024;

// What a picture file's header claims. BitsPerPixel counts all channels (24 for 8-bit RGB)
// and is 0 where the header names none (a BMP holding a JPEG).
struct TPictureClaim {
  TPictureFormat Format = pfOther;
  std::uint32_t Width = 0, Height = 0;
  std::uint32_t BitsPerPixel = 0;
  bool operator==(const TPictureClaim&) const = default;
};

// The claim of the header `bytes` begin with, held against the limit and, where the format
// allows, against the bytes; EInvalidGraphic when it is refused: no bytes, a header cut
// short, a size of 0 or a negative one, more than MaxPicturePixels, more pixels than the
// bytes can hold. An icon claims what its first image (the one decoded) claims. Bytes of
// another format give {pfOther, 0, 0, 0}, for the decoder to judge.
//   CheckPictureBytes(<the first 33 bytes of a PNG of 16 x 8, gray>)  raises: no pixel data
//   CheckPictureBytes(<a whole PNG of 16 x 8, gray>) == {pfPng, 16, 8, 8}
TPictureClaim CheckPictureBytes(std::span<const std::uint8_t> bytes);

// EInvalidGraphic unless a picture of width x height is one to decode: neither side 0, at
// most MaxPicturePixels pixels.
//   CheckPictureSize(8192, 8192) passes;  CheckPictureSize(8192, 8193) raises
void CheckPictureSize(std::uint64_t width, std::uint64_t height);

}  // namespace ui
