// Colours, fonts and pictures: the framework's TColor encoding, a font description that
// controls resolve to a GDI font, and the bitmaps, opaque or with alpha, that image controls
// and image lists show. Windows build.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <vector>

#include "rtl/classes.h"
#include "rtl/handles.h"
#include "rtl/streams.h"
#include "ui/align.h"
#include "ui/color.h"
#include "ui/picture_rules.h"

namespace ui {

using rtl::TNotifyEvent;
using rtl::TObject;

constexpr TColor clScrollBar = SystemColor(COLOR_SCROLLBAR);
constexpr TColor clBackground = SystemColor(COLOR_BACKGROUND);
constexpr TColor clWindow = SystemColor(COLOR_WINDOW);
constexpr TColor clWindowText = SystemColor(COLOR_WINDOWTEXT);
constexpr TColor clWindowFrame = SystemColor(COLOR_WINDOWFRAME);
constexpr TColor clBtnFace = SystemColor(COLOR_BTNFACE);
constexpr TColor clBtnShadow = SystemColor(COLOR_BTNSHADOW);
constexpr TColor clBtnHighlight = SystemColor(COLOR_BTNHIGHLIGHT);
constexpr TColor clBtnText = SystemColor(COLOR_BTNTEXT);
constexpr TColor clHighlight = SystemColor(COLOR_HIGHLIGHT);
constexpr TColor clHighlightText = SystemColor(COLOR_HIGHLIGHTTEXT);
constexpr TColor clGrayText = SystemColor(COLOR_GRAYTEXT);
constexpr TColor clInfoBk = SystemColor(COLOR_INFOBK);
constexpr TColor clInfoText = SystemColor(COLOR_INFOTEXT);
constexpr TColor clBlack = 0x000000;
constexpr TColor clMaroon = 0x000080;
constexpr TColor clGreen = 0x008000;
constexpr TColor clNavy = 0x800000;
constexpr TColor clGray = 0x808080;
constexpr TColor clSilver = 0xC0C0C0;
constexpr TColor clRed = 0x0000FF;
constexpr TColor clLime = 0x00FF00;
constexpr TColor clYellow = 0x00FFFF;
constexpr TColor clBlue = 0xFF0000;
constexpr TColor clWhite = 0xFFFFFF;
// "No colour": a control with it paints no background.
constexpr TColor clNone = 0x1FFFFFFF;

// A system colour resolved to 0x00BBGGRR through GetSysColor; a plain colour as it is.
TColor ColorToRGB(TColor color);

enum class TFontStyle { fsBold, fsItalic, fsUnderline, fsStrikeOut };
using enum TFontStyle;
using TFontStyles = std::set<TFontStyle>;

enum class TFontPitch { fpDefault, fpVariable, fpFixed };
using enum TFontPitch;

struct TFont {
  std::u16string Name = u"Segoe UI";
  int Height = -12;  // negative: character height in pixels, as the framework stores it
  TColor Color = clWindowText;
  TFontStyles Style;
  // fpFixed asks for a fixed-pitch face when Name is not installed.
  TFontPitch Pitch = fpDefault;
  // The character set asked of the face, as Win32 numbers them; DEFAULT_CHARSET (1) takes
  // the system's.
  std::uint8_t Charset = 1;
  bool operator==(const TFont&) const = default;
};

// A GDI font for the description; the caller owns it.
rtl::unique_hfont CreateFontHandle(const TFont& font);

// Something that draws itself into a rectangle; the framework's abstract picture.
class TGraphic : public TObject {
 public:
  virtual int Width() const = 0;
  virtual int Height() const = 0;
  bool Empty() const { return Width() == 0 || Height() == 0; }
  // Draws the whole graphic scaled into `dest`.
  virtual void Draw(HDC dc, const TRect& dest) const = 0;
};

// How Draw reads the fourth byte of a 32-bit bitmap, as the framework names it: not at
// all (the bitmap is opaque), as straight alpha, or as alpha that the colours are already
// multiplied by. Bitmaps of other depths are always opaque.
enum class TAlphaFormat { afIgnored, afDefined, afPremultiplied };
using enum TAlphaFormat;

// A device-independent bitmap owned by the object.
class TBitmap : public TGraphic {
 public:
  TBitmap() = default;
  int Width() const override { return width_; }
  int Height() const override { return height_; }
  // A 32-bit bitmap whose AlphaFormat is not afIgnored is alpha-blended over what `dc`
  // holds, scaled when `dest` is not the bitmap's size; any other is copied opaque.
  void Draw(HDC dc, const TRect& dest) const override;

  HBITMAP Handle() const { return bitmap_.get(); }
  // Takes `bitmap` over, its fourth byte read as `alphaFormat`; the previous one is deleted.
  void SetHandle(rtl::unique_hbitmap bitmap, TAlphaFormat alphaFormat = afIgnored);
  // A copy of `bitmap` as a DIB section, opaque; the caller keeps the original.
  void LoadFromHandle(HBITMAP bitmap);
  // A bitmap resource of `module` by name or MAKEINTRESOURCE id, opaque; false when it is
  // missing.
  bool LoadFromResourceName(HINSTANCE module, const wchar_t* name);
  // A copy of `source`'s pixels (as a DIB section of the same depth) and its AlphaFormat.
  void Assign(const TBitmap& source);

  TAlphaFormat AlphaFormat() const { return alphaFormat_; }
  // Says how the pixels already there are read; they are not converted.
  void SetAlphaFormat(TAlphaFormat alphaFormat) { alphaFormat_ = alphaFormat; }

 private:
  rtl::unique_hbitmap bitmap_;
  int width_ = 0, height_ = 0, bitsPerPixel_ = 0;
  TAlphaFormat alphaFormat_ = afIgnored;
};

// A top-down 24-bit DIB section of the given size, each pixel from `pixel(x, y)` (a
// plain TColor; system colours are resolved).
rtl::unique_hbitmap CreateDib24(int width, int height,
                                const std::function<TColor(int x, int y)>& pixel);

// A pixel with straight (not premultiplied) alpha as 0xAARRGGBB, the byte order of a
// 32-bit DIB; alpha 0 is fully transparent.
using TArgb = std::uint32_t;
// `color` (plain or system) with the given opacity.
//   Argb(clRed, 255) == 0xFFFF0000,  Argb(clBlue, 128) == 0x800000FF
TArgb Argb(TColor color, std::uint8_t alpha);

// A top-down 32-bit DIB section of the given size, each pixel from `pixel(x, y)` in
// straight alpha, stored premultiplied: hand it to a TBitmap as afPremultiplied.
rtl::unique_hbitmap CreateDib32(int width, int height,
                                const std::function<TArgb(int x, int y)>& pixel);

// The pixels of `bitmap`, any depth, row by row from the top as 32-bit 0xAARRGGBB values;
// the fourth byte as stored in a 32-bit bitmap, 0 from any other. Empty on failure.
std::vector<std::uint32_t> ReadPixels32(HBITMAP bitmap);

// The picture of an image control: its pixels as a bitmap, the bytes of the file format it
// came in (a PNG stays a PNG when saved again), and a notification when it changes.
class TPicture : public TObject {
 public:
  // The pixels, to change them: the picture is a bitmap from then on.
  TBitmap& Bitmap() {
    encoded_.clear();
    format_ = bitmap_.Empty() ? pfNone : pfBmp;
    return bitmap_;
  }
  const TGraphic* Graphic() const { return bitmap_.Empty() ? nullptr : &bitmap_; }
  int Width() const { return bitmap_.Width(); }
  int Height() const { return bitmap_.Height(); }
  // As TBitmap::SetHandle, Assign, LoadFromHandle and LoadFromResourceName, then OnChange.
  void Assign(rtl::unique_hbitmap bitmap, TAlphaFormat alphaFormat = afIgnored);
  void Assign(const TBitmap& bitmap);
  void LoadFromHandle(HBITMAP bitmap);
  bool LoadFromResourceName(HINSTANCE module, const wchar_t* name);

  TPictureFormat Format() const { return format_; }
  // Reads a picture in any format the system decodes (BMP, PNG, JPEG, GIF, TIFF, ICO),
  // recognised from the bytes from the stream's position on. EInvalidGraphic, the picture
  // unchanged, for others and for what CheckPictureBytes refuses or the decoder finds larger
  // than MaxPicturePixels (ui/picture_rules.h): nothing of a refused size is reserved.
  void LoadFromStream(rtl::TStream& stream);
  // Writes the picture in its own format: the bytes it came in, a bitmap as a BMP file.
  // Nothing for an empty picture.
  void SaveToStream(rtl::TStream& stream) const;
  // Makes the picture a PNG of `bitmap`'s pixels, alpha kept. EInvalidGraphic, the picture
  // unchanged, when there are no pixels to encode.
  void AssignPng(const TBitmap& bitmap);

  TNotifyEvent OnChange;

 private:
  void Changed();
  TBitmap bitmap_;
  TPictureFormat format_ = pfNone;
  std::vector<std::uint8_t> encoded_;  // empty: encode the bitmap when saved
};

}  // namespace ui
