// Image lists (ui/imglist.h): icons turned into premultiplied 32-bit DIBs, drawn with
// AlphaBlend through TBitmap.
#include <algorithm>
#include <stdexcept>

#include "ui/imglist.h"

namespace ui {

namespace {

// The owner of an icon from CopyImage; rtl has none for icons yet.
using unique_hicon = rtl::unique_any<HICON, &DestroyIcon>;

// The size an icon shows at: its mask is twice as high when it has no colour bitmap (AND
// mask over XOR image).
SIZE IconSize(const ICONINFO& info) {
  BITMAP mask{};
  if (GetObjectW(info.hbmMask, sizeof(mask), &mask) == 0) return {0, 0};
  return {mask.bmWidth, info.hbmColor ? mask.bmHeight : mask.bmHeight / 2};
}

// The icon that `info` describes, which must be `width` x `height`, as a premultiplied
// 32-bit DIB.
rtl::unique_hbitmap RenderIcon(const ICONINFO& info, int width, int height) {
  const std::vector<std::uint32_t> mask = ReadPixels32(info.hbmMask);
  const size_t count = size_t(width) * size_t(height);
  if (mask.size() < count) return {};
  // A monochrome icon keeps its image in the lower half of the mask bitmap.
  std::vector<std::uint32_t> color;
  if (info.hbmColor)
    color = ReadPixels32(info.hbmColor);
  else if (mask.size() == 2 * count)
    color.assign(mask.begin() + std::ptrdiff_t(count), mask.end());
  if (color.size() != count) return {};
  const bool hasAlpha = std::any_of(color.begin(), color.end(), [](auto p) { return p >> 24; });
  if (!hasAlpha) {
    // The AND mask is white where the screen shows through. Pixels that would invert the
    // screen (mask white, image not black) cannot be kept and go transparent too.
    for (size_t i = 0; i < count; ++i)
      color[i] = (mask[i] & 0xFFFFFF) != 0 ? 0 : color[i] | 0xFF000000;
  }
  return CreateDib32(width, height, [&](int x, int y) { return color[size_t(y * width + x)]; });
}

}  // namespace

TImageList::TImageList(TComponent* owner) : TComponent(owner) {}

void TImageList::SetWidth(int width) {
  width = std::max(width, 1);
  if (width == width_) return;
  width_ = width;
  Clear();
}

void TImageList::SetHeight(int height) {
  height = std::max(height, 1);
  if (height == height_) return;
  height_ = height;
  Clear();
}

int TImageList::AddIcon(HICON icon) {
  if (icon == nullptr) return -1;
  ICONINFO info{};
  if (!GetIconInfo(icon, &info)) return -1;
  rtl::unique_hbitmap color(info.hbmColor), mask(info.hbmMask);
  unique_hicon fitting;
  const SIZE size = IconSize(info);
  if (size.cx != width_ || size.cy != height_) {
    // The resource's own image of the nearest size beats a stretch; only icons loaded from
    // a resource (shared ones) have that.
    fitting.reset(
        static_cast<HICON>(CopyImage(icon, IMAGE_ICON, width_, height_, LR_COPYFROMRESOURCE)));
    if (!fitting)
      fitting.reset(static_cast<HICON>(CopyImage(icon, IMAGE_ICON, width_, height_, 0)));
    if (!fitting || !GetIconInfo(fitting.get(), &info)) return -1;
    color.reset(info.hbmColor);
    mask.reset(info.hbmMask);
    const SIZE copied = IconSize(info);
    if (copied.cx != width_ || copied.cy != height_) return -1;
  }
  rtl::unique_hbitmap image = RenderIcon(info, width_, height_);
  if (!image) return -1;
  images_.emplace_back().SetHandle(std::move(image), afPremultiplied);
  return Count() - 1;
}

bool TImageList::GetBitmap(int index, TBitmap& bitmap) const {
  if (index < 0 || index >= Count()) return false;
  bitmap.Assign(images_[size_t(index)]);
  return true;
}

void TImageList::Draw(HDC dc, int x, int y, int index) const {
  if (index < 0 || index >= Count()) return;
  images_[size_t(index)].Draw(dc, {x, y, x + width_, y + height_});
}

void TImageList::Delete(int index) {
  if (index < 0 || index >= Count()) throw EInvalidOperation("image list index out of range");
  images_.erase(images_.begin() + index);
}

void AddMessageGlyphs(TImageList& list) {
  for (const wchar_t* id : {IDI_WARNING, IDI_QUESTION, IDI_INFORMATION, IDI_ERROR}) {
    // System icons load only as shared ones; they belong to the system and are not
    // destroyed. AddIcon copies the pixels.
    auto icon = static_cast<HICON>(
        LoadImageW(nullptr, id, IMAGE_ICON, list.Width(), list.Height(), LR_SHARED));
    if (icon == nullptr) icon = LoadIconW(nullptr, id);
    list.AddIcon(icon);
  }
}

}  // namespace ui
