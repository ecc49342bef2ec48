// Image lists: same-sized images with alpha that buttons and dialogs draw by index, and the
// system's message glyphs for them. Each image is kept as a premultiplied 32-bit DIB of its
// own; no system image list is involved. Windows build only.
#pragma once

#include <windows.h>

#include <vector>

#include "ui/controls.h"
#include "ui/graphics.h"

namespace ui {

// Images of one size, Width x Height, drawn by index.
class TImageList : public TComponent {
 public:
  explicit TImageList(TComponent* owner);  // 16x16, as the framework's

  int Width() const { return width_; }
  int Height() const { return height_; }
  // A new size empties the list, as the framework's does; set it before adding. Sizes
  // below 1 are taken as 1.
  void SetWidth(int width);
  void SetHeight(int height);
  int Count() const { return static_cast<int>(images_.size()); }

  // Appends `icon` rendered at the list's size and returns its index; -1 when the icon is
  // unusable. The icon's alpha channel gives the opacity when it has one (any pixel with a
  // non-zero alpha byte), its AND mask otherwise. An icon of another size is replaced by
  // CopyImage's fitting copy: the nearest size of its resource when it came from one
  // (shared icons), else the system's stretch of it. The caller keeps `icon`.
  int AddIcon(HICON icon);
  // The image at `index` as a 32-bit afPremultiplied bitmap; false and `bitmap` untouched
  // for an index outside the list.
  bool GetBitmap(int index, TBitmap& bitmap) const;
  // Alpha-blends the image at `index` with its top left corner at (x, y); nothing for an
  // index outside the list.
  void Draw(HDC dc, int x, int y, int index) const;
  void Clear() { images_.clear(); }
  // Removes the image at `index`, moving the later ones down; throws std::out_of_range for
  // an index outside the list, as the framework raises.
  void Delete(int index);

 private:
  int width_ = 16, height_ = 16;
  std::vector<TBitmap> images_;
};

// Appends the system's message icons at the list's size, in the order the message dialog
// indexes them: warning, question (confirmation), information, error. An icon the system
// cannot give at that size is taken at its default size and scaled.
void AddMessageGlyphs(TImageList& list);

}  // namespace ui
