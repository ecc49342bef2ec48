// Header controls (ui/comctrls.h) over the common controls' header window.
#include "ui/comctrls.h"
#include "rtl/wide.h"

#include <commctrl.h>

#include <algorithm>

namespace ui {

using rtl::W;

int THeaderSection::Index() const { return header_.Sections.IndexOf(*this); }

int THeaderSection::Width() const {
  if (!header_.HandleAllocated()) return width_;
  HDITEMW item{};
  item.mask = HDI_WIDTH;
  if (!SendMessageW(header_.Handle(), HDM_GETITEMW, static_cast<WPARAM>(Index()),
                    reinterpret_cast<LPARAM>(&item)))
    return width_;
  return item.cxy;
}

void THeaderSection::SetWidth(int width) {
  width_ = width;
  header_.WriteSection(Index(), false);
}

void THeaderSection::SetText(const std::u16string& text) {
  text_ = text;
  header_.WriteSection(Index(), false);
}

THeaderSection& THeaderSections::Add() {
  items_.push_back(std::make_unique<THeaderSection>(header_, 50));
  header_.WriteSection(Count() - 1, true);
  return *items_.back();
}

void THeaderSections::Clear() {
  while (!items_.empty()) {
    items_.pop_back();
    header_.DeleteSection(Count());
  }
}

THeaderSection& THeaderSections::operator[](int index) const {
  if (index < 0 || index >= Count()) throw EInvalidOperation("header section index out of range");
  return *items_[static_cast<size_t>(index)];
}

int THeaderSections::IndexOf(const THeaderSection& section) const {
  const auto it = std::find_if(items_.begin(), items_.end(),
                               [&](const auto& item) { return item.get() == &section; });
  return it == items_.end() ? -1 : static_cast<int>(it - items_.begin());
}

THeaderControl::THeaderControl(TComponent* owner) : TWinControl(owner) {
  bounds_ = {0, 0, 185, 17};
}

void THeaderControl::CreateParamsFor(CreateParams& params) {
  // The header class is registered by the common controls only when asked for.
  INITCOMMONCONTROLSEX init{sizeof init, ICC_LISTVIEW_CLASSES};
  InitCommonControlsEx(&init);
  TWinControl::CreateParamsFor(params);
  params.className = WC_HEADERW;
  params.systemClass = true;
  params.style = (params.style & ~WS_CLIPCHILDREN) | HDS_HORZ | HDS_BUTTONS | HDS_FULLDRAG;
}

void THeaderControl::CreateWnd() {
  TWinControl::CreateWnd();
  for (int i = 0; i < Sections.Count(); ++i) WriteSection(i, true);
}

void THeaderControl::WriteSection(int index, bool insert) {
  if (!HandleAllocated() || index < 0) return;
  THeaderSection& section = Sections[index];
  HDITEMW item{};
  item.mask = HDI_WIDTH | HDI_TEXT | HDI_FORMAT;
  item.cxy = section.width_;
  item.pszText = const_cast<wchar_t*>(W(section.text_));
  item.fmt = HDF_LEFT | HDF_STRING;
  SendMessageW(Handle(), insert ? HDM_INSERTITEMW : HDM_SETITEMW, static_cast<WPARAM>(index),
               reinterpret_cast<LPARAM>(&item));
}

void THeaderControl::DeleteSection(int index) {
  if (HandleAllocated()) SendMessageW(Handle(), HDM_DELETEITEM, static_cast<WPARAM>(index), 0);
}

}  // namespace ui
