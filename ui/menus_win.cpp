// Menu items and popup menus (ui/menus.h): the item tree becomes a system popup menu at each
// Popup and is destroyed when the menu closes.
#include "ui/menus.h"
#include "rtl/wide.h"

#include <algorithm>

#include "ui/winclass.h"

namespace ui {

using rtl::W;

namespace {

// Destroying a menu destroys the submenus attached to it.
using rtl::unique_hmenu;

// Commands are never reused, so a command that comes back from a menu whose item has
// been freed meanwhile finds nothing.
UINT NextCommand() {
  static UINT last = 0;
  return ++last;
}

void AppendItems(HMENU menu, const TMenuItem& parent) {
  for (int i = 0; i < parent.Count(); ++i) {
    const TMenuItem& item = *parent.Items(i);
    if (!item.Visible) continue;
    if (item.Caption == u"-") {
      AppendMenuW(menu, MF_SEPARATOR, 0, nullptr);
      continue;
    }
    UINT flags = MF_STRING | (item.Enabled ? MF_ENABLED : MF_GRAYED) |
                 (item.Checked ? MF_CHECKED : MF_UNCHECKED);
    if (item.Count() == 0) {
      AppendMenuW(menu, flags, item.Command(), W(item.Caption));
      continue;
    }
    unique_hmenu submenu(CreatePopupMenu());
    if (!submenu) continue;
    AppendItems(submenu.get(), item);
    // The parent menu owns the submenu once it holds it.
    if (AppendMenuW(menu, flags | MF_POPUP, reinterpret_cast<UINT_PTR>(submenu.get()),
                    W(item.Caption)))
      (void)submenu.release();
  }
}

}  // namespace

// ---- TMenuItem ---------------------------------------------------------------------------

TMenuItem::TMenuItem(TComponent* owner) : TComponent(owner), command_(NextCommand()) {}

TMenuItem::~TMenuItem() {
  while (!items_.empty()) delete items_.back();  // each one leaves this item as it goes
  if (parent_ != nullptr) parent_->Remove(this);
}

void TMenuItem::Click() {
  if (!Enabled || !OnClick) return;
  // A copy runs, so that the handler may free the item (and the menu with it).
  const TNotifyEvent handler = OnClick;
  handler(this);
}

void TMenuItem::Add(TMenuItem* item) {
  if (item == nullptr) throw EMenuError("no menu item to add");
  if (item->parent_ != nullptr) throw EMenuError("menu item inserted twice");
  for (const TMenuItem* above = this; above != nullptr; above = above->parent_)
    if (above == item) throw EMenuError("menu item inserted into itself");
  items_.push_back(item);
  item->parent_ = this;
}

void TMenuItem::Remove(TMenuItem* item) {
  const auto it = std::find(items_.begin(), items_.end(), item);
  if (it == items_.end()) return;
  items_.erase(it);
  item->parent_ = nullptr;
}

TMenuItem* TMenuItem::Items(int index) const {
  if (index < 0 || index >= Count()) throw EMenuError("menu index out of range");
  return items_[static_cast<size_t>(index)];
}

TMenuItem* TMenuItem::Find(UINT command) {
  if (command == command_) return this;
  for (TMenuItem* item : items_)
    if (TMenuItem* found = item->Find(command)) return found;
  return nullptr;
}

// ---- TPopupMenu --------------------------------------------------------------------------

TPopupMenu::TPopupMenu(TComponent* owner) : TComponent(owner), items_(new TMenuItem(this)) {}

TPopupMenu::~TPopupMenu() { *alive_ = false; }

void TPopupMenu::Popup(int x, int y) {
  const std::shared_ptr<bool> alive = alive_;
  if (OnPopup) OnPopup(this);
  if (!*alive) return;
  if (!window_) {
    // The owner of the system menus: a top-level window that is never shown.
    window_ = AllocateHWnd(&DefWindowProcW, L"TPopupList", true);
    if (!window_) throw rtl::EOSError(u"Kein Fenster für ein Kontextmenü", GetLastError());
  }
  unique_hmenu menu(CreatePopupMenu());
  if (!menu) throw rtl::EOSError(u"Kein Kontextmenü vom System", GetLastError());
  AppendItems(menu.get(), *items_);
  if (GetMenuItemCount(menu.get()) <= 0) return;  // nothing to show
  // With TPM_RETURNCMD the choice comes back here instead of as WM_COMMAND, so it is acted
  // on after the menu has closed, whichever message loop runs.
  const int command = static_cast<int>(
      TrackPopupMenuEx(menu.get(), TPM_LEFTALIGN | TPM_TOPALIGN | TPM_RIGHTBUTTON | TPM_RETURNCMD,
                       x, y, window_.get(), nullptr));
  if (!*alive || command <= 0) return;  // freed while the menu showed, or nothing chosen
  if (TMenuItem* item = items_->Find(static_cast<UINT>(command))) item->Click();
}

}  // namespace ui
