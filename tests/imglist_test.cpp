// Image lists and alpha bitmaps, read back pixel by pixel: the message glyphs, icons with
// an alpha channel or only a mask, at their size or scaled, and alpha-blended drawing.
#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>
#include <functional>
#include <stdexcept>
#include <string>

#include "ui/imglist.h"

namespace {

using namespace ui;

// A 24-bit DIB of one colour, selected into a memory DC to draw on.
struct Canvas {
  explicit Canvas(TColor color, int size = 48)
      : bitmap(CreateDib24(size, size, [=](int, int) { return color; })),
        dc(CreateCompatibleDC(nullptr)),
        selected(dc.get(), bitmap.get()) {}
  TColor At(int x, int y) const { return static_cast<TColor>(GetPixel(dc.get(), x, y)); }
  rtl::unique_hbitmap bitmap;
  rtl::unique_hdc dc;
  rtl::select_object selected;
};

// Channel by channel within 2, for blends that round either way.
bool Near(TColor a, TColor b) {
  for (int shift : {0, 8, 16})
    if (std::abs((a >> shift & 0xFF) - (b >> shift & 0xFF)) > 2) return false;
  return true;
}

// A 32-bit DIB with straight alpha, as icons and afDefined bitmaps hold it.
rtl::unique_hbitmap StraightDib(int width, int height,
                                const std::function<TArgb(int, int)>& pixel) {
  BITMAPINFO info{{sizeof(BITMAPINFOHEADER), width, -height, 1, 32, BI_RGB, 0, 0, 0, 0, 0}, {}};
  void* bits = nullptr;
  rtl::unique_hbitmap dib(CreateDIBSection(nullptr, &info, DIB_RGB_COLORS, &bits, nullptr, 0));
  for (int i = 0; i < width * height; ++i)
    static_cast<TArgb*>(bits)[i] = pixel(i % width, i / width);
  return dib;
}

enum class Kind { mask, alpha, mono };

// A size x size icon. mask: its left half transparent by the AND mask (colour black there,
// as icons have it), its right half opaque red. alpha: a 32-bit colour bitmap instead,
// half-transparent blue everywhere, with an all-opaque mask that must be ignored. mono: no
// colour bitmap, the image below the AND mask in one bitmap of twice the height; left half
// transparent, right half black.
rtl::unique_any<HICON, &DestroyIcon> TestIcon(int size, Kind kind) {
  const int stride = (size + 15) / 16 * 2;  // monochrome rows are padded to 16 bits
  const int rows = kind == Kind::mono ? 2 * size : size;
  std::string maskBits(size_t(stride * rows), '\0');
  for (int y = 0; y < size && kind != Kind::alpha; ++y)
    for (int x = 0; x < size / 2; ++x) maskBits[size_t(y * stride + x / 8)] |= char(0x80 >> x % 8);
  const rtl::unique_hbitmap mask(CreateBitmap(size, rows, 1, 1, maskBits.data()));
  rtl::unique_hbitmap color;
  if (kind == Kind::alpha)
    color = StraightDib(size, size, [](int, int) { return Argb(clBlue, 128); });
  else if (kind == Kind::mask)
    color = CreateDib24(size, size, [=](int x, int) { return x < size / 2 ? clBlack : clRed; });
  ICONINFO info{TRUE, 0, 0, mask.get(), color.get()};
  return rtl::unique_any<HICON, &DestroyIcon>(CreateIconIndirect(&info));
}

TEST(ImgListGlyphs, FourDistinctPremultipliedGlyphsAtTheListSize) {
  TImageList list(nullptr);
  list.SetWidth(32);
  list.SetHeight(32);
  AddMessageGlyphs(list);
  ASSERT_EQ(list.Count(), 4);
  std::vector<std::uint32_t> glyphs[4];
  for (int i = 0; i < 4; ++i) {
    TBitmap bitmap;
    ASSERT_TRUE(list.GetBitmap(i, bitmap));
    EXPECT_EQ(bitmap.Width(), 32);
    EXPECT_EQ(bitmap.AlphaFormat(), afPremultiplied);
    glyphs[i] = ReadPixels32(bitmap.Handle());
    for (std::uint32_t p : glyphs[i])
      for (int shift : {0, 8, 16}) ASSERT_LE(p >> shift & 0xFF, p >> 24) << "glyph " << i;
    for (int j = 0; j < i; ++j) EXPECT_NE(glyphs[i], glyphs[j]) << "glyphs " << j << ", " << i;
  }
  // Drawn over a solid colour, a glyph keeps its corners clear and covers its middle.
  for (int i = 0; i < 4; ++i) {
    Canvas canvas(clLime);
    list.Draw(canvas.dc.get(), 8, 8, i);
    EXPECT_EQ(canvas.At(8, 8), clLime) << "glyph " << i;
    EXPECT_EQ(canvas.At(39, 8), clLime) << "glyph " << i;
    EXPECT_NE(canvas.At(24, 24), clLime) << "glyph " << i;
  }
}

TEST(ImgListIcons, MaskOrAlphaDecidesWhatShowsAtAnySize) {
  struct Case {
    int iconSize, listWidth, listHeight;
    Kind kind;
    TColor left, right;  // drawn over white, a quarter in from each side, half way down
  };
  const TColor halfBlue = 0xFF7F7F;
  const Case cases[] = {
      {16, 16, 16, Kind::mask, clWhite, clRed},     {16, 32, 32, Kind::mask, clWhite, clRed},
      {32, 16, 16, Kind::mask, clWhite, clRed},     {16, 32, 16, Kind::mask, clWhite, clRed},
      {16, 16, 32, Kind::mask, clWhite, clRed},     {16, 16, 16, Kind::alpha, halfBlue, halfBlue},
      {16, 32, 32, Kind::alpha, halfBlue, halfBlue}, {16, 16, 16, Kind::mono, clWhite, clBlack},
      {16, 32, 32, Kind::mono, clWhite, clBlack}};
  for (const Case& c : cases) {
    SCOPED_TRACE(std::to_string(c.iconSize) + " in " + std::to_string(c.listWidth) + "x" +
                 std::to_string(c.listHeight) + ", kind " + std::to_string(int(c.kind)));
    const auto icon = TestIcon(c.iconSize, c.kind);
    TImageList list(nullptr);
    list.SetWidth(c.listWidth);
    list.SetHeight(c.listHeight);
    ASSERT_EQ(list.AddIcon(icon.get()), 0);
    Canvas canvas(clWhite);
    list.Draw(canvas.dc.get(), 0, 0, 0);
    const int w = c.listWidth, h = c.listHeight;
    EXPECT_PRED2(Near, canvas.At(w / 4, h / 2), c.left);
    EXPECT_PRED2(Near, canvas.At(w - w / 4, h / 2), c.right);
    EXPECT_EQ(canvas.At(w + 1, h / 2), clWhite) << "nothing beyond the image";
    EXPECT_EQ(canvas.At(w / 2, h + 1), clWhite) << "nothing below the image";
  }
}

TEST(ImgListIndexes, BadIndexesAreRefusedAndLaterImagesMoveDown) {
  const auto masked = TestIcon(16, Kind::mask), blended = TestIcon(16, Kind::alpha);
  TImageList list(nullptr);
  EXPECT_EQ(list.AddIcon(nullptr), -1);
  EXPECT_EQ(list.AddIcon(reinterpret_cast<HICON>(std::intptr_t{0x4321})), -1);
  ASSERT_EQ(list.AddIcon(masked.get()), 0);
  ASSERT_EQ(list.AddIcon(blended.get()), 1);
  TBitmap bitmap;
  bitmap.SetHandle(CreateDib24(3, 3, [](int, int) { return clBlack; }));
  const HBITMAP before = bitmap.Handle();
  Canvas canvas(clLime);
  for (int bad : {-1, 2}) {
    EXPECT_FALSE(list.GetBitmap(bad, bitmap));
    list.Draw(canvas.dc.get(), 0, 0, bad);
    EXPECT_THROW(list.Delete(bad), ui::EInvalidOperation);
  }
  EXPECT_EQ(bitmap.Handle(), before);
  // Masked icons become premultiplied pixels: transparent black or fully opaque colour.
  ASSERT_TRUE(list.GetBitmap(0, bitmap));
  const std::vector<std::uint32_t> pixels = ReadPixels32(bitmap.Handle());
  ASSERT_EQ(pixels.size(), 256u);
  EXPECT_EQ(pixels[8 * 16 + 2], 0u);
  EXPECT_EQ(pixels[8 * 16 + 12], 0xFFFF0000u);
  EXPECT_EQ(canvas.At(12, 8), clLime);
  list.Delete(0);
  ASSERT_EQ(list.Count(), 1);
  list.Draw(canvas.dc.get(), 0, 0, 0);
  EXPECT_PRED2(Near, canvas.At(4, 8), 0x807F00) << "the alpha icon is first now";
  list.SetWidth(16);
  list.SetHeight(16);
  EXPECT_EQ(list.Count(), 1) << "the same size keeps the images";
  list.SetWidth(24);
  EXPECT_EQ(list.Count(), 0) << "a new width empties the list";
  ASSERT_EQ(list.AddIcon(blended.get()), 0);
  list.SetHeight(24);
  EXPECT_EQ(list.Count(), 0) << "a new height empties the list";
}

TEST(ImgListBitmap, AlphaBitmapsBlendWhenStretchedAndWhenCopied) {
  // Left half transparent, right half half-transparent red; straight alpha here.
  auto straight = [](int x, int) { return x < 4 ? Argb(clBlue, 0) : Argb(clRed, 128); };
  TBitmap premultiplied, defined, ignored;
  premultiplied.SetHandle(CreateDib32(8, 2, straight), afPremultiplied);
  defined.SetHandle(StraightDib(8, 2, straight), afDefined);
  ignored.SetHandle(CreateDib32(8, 2, straight));
  TPicture picture;
  picture.Assign(premultiplied);
  struct Case {
    const char* what;
    const TGraphic* graphic;
    TColor left, right;
  };
  const Case cases[] = {
      {"premultiplied", &premultiplied, clLime, 0x007F80},
      {"straight", &defined, clLime, 0x007F80},
      {"opaque", &ignored, clBlack, 0x000080},
      {"picture's copy", picture.Graphic(), clLime, 0x007F80},
  };
  for (const Case& c : cases) {
    Canvas canvas(clLime);
    c.graphic->Draw(canvas.dc.get(), {0, 0, 40, 20});
    EXPECT_PRED2(Near, canvas.At(2, 10), c.left) << c.what;
    EXPECT_PRED2(Near, canvas.At(37, 10), c.right) << c.what;
  }
}

}  // namespace
