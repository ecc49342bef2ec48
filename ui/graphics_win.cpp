// Colours, fonts and bitmaps (ui/graphics.h) over GDI.
#include <algorithm>
#include <cstdlib>
#include <cstring>

#include "ui/graphics.h"

namespace ui {

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
  lf.lfCharSet = DEFAULT_CHARSET;
  lf.lfQuality = DEFAULT_QUALITY;
  const size_t n = std::min(font.Name.size(), size_t{LF_FACESIZE - 1});
  std::memcpy(lf.lfFaceName, font.Name.data(), n * sizeof(wchar_t));
  return rtl::unique_hfont(CreateFontIndirectW(&lf));
}

void TBitmap::Draw(HDC dc, const TRect& dest) const {
  if (Empty()) return;
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

void TBitmap::SetHandle(rtl::unique_hbitmap bitmap) {
  BITMAP info{};
  if (!bitmap || GetObjectW(bitmap.get(), sizeof(info), &info) == 0) info = BITMAP{};
  bitmap_ = std::move(bitmap);
  width_ = info.bmWidth;
  // A top-down DIB reports a negative height.
  height_ = std::abs(info.bmHeight);
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

rtl::unique_hbitmap CreateDib24(int width, int height,
                                const std::function<TColor(int x, int y)>& pixel) {
  BITMAPINFO info{};
  info.bmiHeader.biSize = sizeof(info.bmiHeader);
  info.bmiHeader.biWidth = width;
  info.bmiHeader.biHeight = -height;
  info.bmiHeader.biPlanes = 1;
  info.bmiHeader.biBitCount = 24;
  info.bmiHeader.biCompression = BI_RGB;
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

void TPicture::Assign(rtl::unique_hbitmap bitmap) {
  bitmap_.SetHandle(std::move(bitmap));
  Changed();
}

void TPicture::LoadFromHandle(HBITMAP bitmap) {
  bitmap_.LoadFromHandle(bitmap);
  Changed();
}

bool TPicture::LoadFromResourceName(HINSTANCE module, const wchar_t* name) {
  const bool loaded = bitmap_.LoadFromResourceName(module, name);
  if (loaded) Changed();
  return loaded;
}

void TPicture::Changed() {
  if (OnChange) OnChange(this);
}

}  // namespace ui
