// Header controls: the system's column header with sections the user can resize.
// Windows build only.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "ui/controls.h"

namespace ui {

class THeaderControl;

// One section of a header. While the header has its window, Width is the window's (so a
// width the user dragged is read); before that it is the value set.
class THeaderSection {
 public:
  THeaderSection(THeaderControl& header, int width) : header_(header), width_(width) {}

  int Width() const;
  void SetWidth(int width);
  const std::u16string& Text() const { return text_; }
  void SetText(const std::u16string& text);
  // The section's position among the header's sections.
  int Index() const;

 private:
  friend class THeaderControl;
  THeaderControl& header_;
  int width_;
  std::u16string text_;
};

// The sections of a header in their order; the header owns them.
class THeaderSections {
 public:
  explicit THeaderSections(THeaderControl& header) : header_(header) {}

  int Count() const { return static_cast<int>(items_.size()); }
  // A section of width 50 at the end.
  THeaderSection& Add();
  void Clear();
  // EInvalidOperation for an index out of range.
  THeaderSection& operator[](int index) const;
  THeaderSection& Items(int index) const { return (*this)[index]; }
  int IndexOf(const THeaderSection& section) const;

 private:
  THeaderControl& header_;
  std::vector<std::unique_ptr<THeaderSection>> items_;
};

class THeaderControl : public TWinControl {
 public:
  explicit THeaderControl(TComponent* owner);  // 185x17

  // Stored as the collection "Sections", each item with its Text and Width.
  THeaderSections Sections{*this};

  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

 protected:
  void CreateParamsFor(CreateParams& params) override;
  void CreateWnd() override;

 private:
  friend class THeaderSection;
  friend class THeaderSections;
  // Hands a section to the window, inserting it or updating it in place.
  void WriteSection(int index, bool insert);
  // Takes the section at `index` out of the window.
  void DeleteSection(int index);
};

}  // namespace ui
