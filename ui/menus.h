// Menu items in a tree and the popup menu that shows them as a system popup menu.
// Main menus (menu bars) are not here. Windows build only.
#pragma once

#include <windows.h>

#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "rtl/handles.h"
#include "ui/controls.h"

namespace ui {

// Raised for a misuse of the item tree: an item added twice, or into itself.
class EMenuError : public rtl::Exception {
 public:
  using rtl::Exception::Exception;
};

// One entry of a menu; with subitems it opens a submenu. The fields are read each time the
// menu is shown. A Caption of "-" is a separator line; "&" marks the next character as the
// item's access key, which the system underlines ("&&" shows one "&").
class TMenuItem : public TComponent {
 public:
  explicit TMenuItem(TComponent* owner);
  // Leaves its parent item and frees its subitems, whoever owns them.
  ~TMenuItem() override;

  std::u16string Caption;
  bool Enabled = true;  // false: shown greyed, and cannot be chosen
  bool Visible = true;  // false: left out of the menu
  bool Checked = false;
  // The longer text a status line shows for the item; the menu itself does not show it.
  std::u16string Hint;
  TNotifyEvent OnClick;

  // Runs OnClick when the item is enabled.
  virtual void Click();

  // Stored inside its menu or parent item, with its subitems.
  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;
  void GetChildren(const std::function<void(TComponent*)>& proc, TComponent* root) override;
  bool HasParent() const override { return true; }
  void SetParentComponent(TComponent* parent) override;
  TComponent* GetParentComponent() const override;

  // Appends a subitem. An item belongs to one parent at a time: adding one that has a
  // parent, or this item or one above it, raises EMenuError.
  void Add(TMenuItem* item);
  // Takes a subitem out without freeing it; an item that is not a subitem is ignored.
  void Remove(TMenuItem* item);
  int Count() const { return static_cast<int>(items_.size()); }
  // EMenuError for an index out of range.
  TMenuItem* Items(int index) const;
  TMenuItem* Parent() const { return parent_; }

  // The item's command number in the system menus of this module, unique and fixed.
  UINT Command() const { return command_; }
  // This item or the one below it with that command, or null.
  TMenuItem* Find(UINT command);

 private:
  std::vector<TMenuItem*> items_;
  TMenuItem* parent_ = nullptr;
  UINT command_;
};

// A menu that pops up at a point of the screen. Its items are the subitems of Items(),
// usually created with the popup menu as owner.
class TPopupMenu : public TComponent {
 public:
  explicit TPopupMenu(TComponent* owner);
  ~TPopupMenu() override;

  // The root item; it is not shown itself.
  TMenuItem* Items() const { return items_; }

  // Calls OnPopup, then shows the items at screen point (x, y) and returns when the menu
  // has closed. The item the user chose, if any, is clicked (Click) after the menu has
  // closed and before Popup returns; it may free the popup menu.
  virtual void Popup(int x, int y);

  // Its items are stored inside it.
  void GetChildren(const std::function<void(TComponent*)>& proc, TComponent* root) override;

  // Whoever pops the menu up sets this to the component it was asked for over.
  TComponent* PopupComponent = nullptr;
  // Before the menu shows: the place to change the items.
  TNotifyEvent OnPopup;

 private:
  TMenuItem* items_;
  // The owner of the system menu while it shows, made at the first Popup.
  rtl::unique_hwnd window_;
  // Cleared when the popup menu is freed, which an event handler may do.
  std::shared_ptr<bool> alive_ = std::make_shared<bool>(true);
};

}  // namespace ui
