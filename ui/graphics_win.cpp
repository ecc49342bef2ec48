// Colours, fonts and bitmaps (ui/graphics.h) over GDI.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "ui/graphics.h"

namespace ui {

namespace {

// A top-down DIB of the given depth, 24 or 32 bits a pixel.
BITMAPINFO TopDown(int width, int height, WORD bitCount = 32) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = bitCount;
  info.bmiHeader.biCompression = BI_RGB;
  return info;
}

// `value` * `alpha` / 255, rounded.
std::uint32_t Scaled(std::uint32_t value, std::uint32_t alpha) {
  const std::uint32_t t = value * alpha + 128;
  return (t + (t >> 8)) >> 8;
}

TArgb Premultiplied(TArgb pixel) {
  const std::uint32_t a = pixel >> 24;
  if (a == 255) return pixel;
  return a << 24 | Scaled(pixel >> 16 & 0xFF, a) << 16 | Scaled(pixel >> 8 & 0xFF, a) << 8 |
         Scaled(pixel & 0xFF, a);
}

// A 32-bit copy of `bitmap` (`width` x `height`), straight or premultiplied as it is.
rtl::unique_hbitmap CopyDib32(HBITMAP bitmap, int width, int height, bool premultiply) {
  const std::vector<std::uint32_t> pixels = ReadPixels32(bitmap);
  if (pixels.empty()) return {};
  BITMAPINFO info = TopDown(width, height);
  void* bits = nullptr;
  rtl::unique_hbitmap dib(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!dib) return dib;
  auto* out = static_cast<std::uint32_t*>(bits);
  for (size_t i = 0; i < pixels.size(); ++i)
    out[i] = premultiply ? Premultiplied(pixels[i]) : pixels[i];
  return dib;
}

}  // namespace

TColor ColorToRGB(TColor color) {
  if (color < 0) return static_cast<TColor>(GetSysColor(color & 0xFF));
  return color;
}

rtl::unique_hfont CreateFontHandle(const TFont& font) {
  LOGFONTW lf{};
  lf.lfHeight = font.Height;
  lf.lfWeight = font.Style.contains(fsBold) ? FW_BOLD : FW_NORMAL;
  lf.lfItalic = font.Style.contains(fsItalic);
  lf.lfUnderline = font.Style.contains(fsUnderline);
  lf.lfStrikeOut = font.Style.contains(fsStrikeOut);
  lf.lfCharSet = font.Charset;
  lf.lfQuality = DEFAULT_QUALITY;
  lf.lfPitchAndFamily = font.Pitch == fpFixed      ? FIXED_PITCH | FF_MODERN
                        : font.Pitch == fpVariable ? VARIABLE_PITCH
                                                   : DEFAULT_PITCH;
  const size_t n = std::min(font.Name.size(), size_t{LF_FACESIZE - 1});
  std::memcpy(lf.lfFaceName, font.Name.data(), n * sizeof(wchar_t));
  return rtl::unique_hfont(CreateFontIndirectW(&lf));
}

void TBitmap::Draw(HDC dc, const TRect& dest) const {
  if (Empty()) return;
  if (bitsPerPixel_ == 32 && alphaFormat_ != afIgnored) {
    // AlphaBlend takes premultiplied colours only; straight ones are converted per draw.
    rtl::unique_hbitmap converted;
    if (alphaFormat_ == afDefined) converted = CopyDib32(bitmap_.get(), width_, height_, true);
    const rtl::unique_hdc source(CreateCompatibleDC(dc));
    const rtl::select_object selected(source.get(), converted ? converted.get() : bitmap_.get());
    const BLENDFUNCTION blend{AC_SRC_OVER, 0, 255, AC_SRC_ALPHA};
    AlphaBlend(dc, dest.Left, dest.Top, dest.Width(), dest.Height(), source.get(), 0, 0, width_,
               height_, blend);
    return;
  }
  const rtl::unique_hdc source(CreateCompatibleDC(dc));
  const rtl::select_object selected(source.get(), bitmap_.get());
  if (dest.Width() == width_ && dest.Height() == height_) {
    BitBlt(dc, dest.Left, dest.Top, width_, height_, source.get(), 0, 0, SRCCOPY);
    return;
  }
  // HALFTONE averages instead of dropping rows; it needs the brush origin set after it.
  const int oldMode = SetStretchBltMode(dc, HALFTONE);
  POINT oldOrigin;
  SetBrushOrgEx(dc, 0, 0, &oldOrigin);
  StretchBlt(dc, dest.Left, dest.Top, dest.Width(), dest.Height(), source.get(), 0, 0, width_,
             height_, SRCCOPY);
  SetBrushOrgEx(dc, oldOrigin.x, oldOrigin.y, nullptr);
  SetStretchBltMode(dc, oldMode);
}

void TBitmap::SetHandle(rtl::unique_hbitmap bitmap, TAlphaFormat alphaFormat) {
  BITMAP info{};
  if (!bitmap || GetObjectW(bitmap.get(), sizeof(info), &info) == 0) info = BITMAP{};
  bitmap_ = std::move(bitmap);
  width_ = info.bmWidth;
  // A top-down DIB reports a negative height.
  height_ = std::abs(info.bmHeight);
  bitsPerPixel_ = info.bmBitsPixel;
  alphaFormat_ = alphaFormat;
}

void TBitmap::LoadFromHandle(HBITMAP bitmap) {
  SetHandle(rtl::unique_hbitmap(
      static_cast<HBITMAP>(CopyImage(bitmap, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION))));
}

bool TBitmap::LoadFromResourceName(HINSTANCE module, const wchar_t* name) {
  rtl::unique_hbitmap loaded(
      static_cast<HBITMAP>(LoadImageW(module, name, IMAGE_BITMAP, 0, 0, LR_CREATEDIBSECTION)));
  if (!loaded) return false;
  SetHandle(std::move(loaded));
  return true;
}

void TBitmap::Assign(const TBitmap& source) {
  if (&source == this) return;
  if (source.Empty()) {
    SetHandle({});
    return;
  }
  // CopyImage may hand back a bitmap of the screen's depth; a 32-bit one keeps its alpha
  // byte only when copied pixel by pixel.
  if (source.bitsPerPixel_ == 32)
    SetHandle(CopyDib32(source.Handle(), source.width_, source.height_, false),
              source.alphaFormat_);
  else
    LoadFromHandle(source.Handle());
}

rtl::unique_hbitmap CreateDib24(int width, int height,
                                const std::function<TColor(int x, int y)>& pixel) {
  BITMAPINFO info = TopDown(width, height, 24);
  void* bits = nullptr;
  rtl::unique_hbitmap dib(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!dib) return dib;
  const int stride = (width * 3 + 3) & ~3;  // rows are padded to 32 bits
  auto* row = static_cast<unsigned char*>(bits);
  for (int y = 0; y < height; ++y, row += stride) {
    for (int x = 0; x < width; ++x) {
      const auto c = static_cast<unsigned>(ColorToRGB(pixel(x, y)));
      row[3 * x] = static_cast<unsigned char>(c >> 16);     // blue
      row[3 * x + 1] = static_cast<unsigned char>(c >> 8);  // green
      row[3 * x + 2] = static_cast<unsigned char>(c);       // red
    }
  }
  return dib;
}

TArgb Argb(TColor color, std::uint8_t alpha) {
  const auto c = static_cast<std::uint32_t>(ColorToRGB(color));
  return std::uint32_t{alpha} << 24 | (c & 0xFF) << 16 | (c & 0xFF00) | (c >> 16 & 0xFF);
}

rtl::unique_hbitmap CreateDib32(int width, int height,
                                const std::function<TArgb(int x, int y)>& pixel) {
  BITMAPINFO info = TopDown(width, height);
  void* bits = nullptr;
  rtl::unique_hbitmap dib(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  if (!dib) return dib;
  auto* out = static_cast<std::uint32_t*>(bits);
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) *out++ = Premultiplied(pixel(x, y));
  return dib;
}

std::vector<std::uint32_t> ReadPixels32(HBITMAP bitmap) {
  BITMAP object{};
  if (bitmap == nullptr || GetObjectW(bitmap, sizeof(object), &object) == 0) return {};
  const int width = object.bmWidth, height = std::abs(object.bmHeight);
  std::vector<std::uint32_t> pixels(size_t(width) * size_t(height));
  if (pixels.empty()) return pixels;
  // GDI may still be writing to a DIB section through a DC.
  GdiFlush();
  BITMAPINFO info = TopDown(width, height);
  const rtl::unique_hdc dc(CreateCompatibleDC(nullptr));
  if (GetDIBits(dc.get(), bitmap, 0, UINT(height), pixels.data(), &info, DIB_RGB_COLORS) != height)
    return {};
  return pixels;
}

void TPicture::Assign(rtl::unique_hbitmap bitmap, TAlphaFormat alphaFormat) {
  bitmap_.SetHandle(std::move(bitmap), alphaFormat);
  encoded_.clear();
  format_ = bitmap_.Empty() ? pfNone : pfBmp;
  Changed();
}

void TPicture::Assign(const TBitmap& bitmap) {
  bitmap_.Assign(bitmap);
  encoded_.clear();
  format_ = bitmap_.Empty() ? pfNone : pfBmp;
  Changed();
}

void TPicture::LoadFromHandle(HBITMAP bitmap) {
  bitmap_.LoadFromHandle(bitmap);
  encoded_.clear();
  format_ = bitmap_.Empty() ? pfNone : pfBmp;
  Changed();
}

bool TPicture::LoadFromResourceName(HINSTANCE module, const wchar_t* name) {
  const bool loaded = bitmap_.LoadFromResourceName(module, name);
  if (loaded) {
    encoded_.clear();
    format_ = pfBmp;
    Changed();
  }
  return loaded;
}

void TPicture::Changed() {
  if (OnChange) OnChange(this);
}

}  // namespace ui
