// The development host's main window, "Development host": the registered content
// plug-ins listed on the left, the Welcome Page area on the right showing the chosen
// plug-in's view, and a status line at the bottom.
#pragma once

#include <functional>
#include <string>

#include "devhost/services.h"
#include "ui/extctrls.h"
#include "ui/forms.h"

namespace devhost {

// A system list box of plug-in names; tells which line the user picked.
class TPluginList final : public ui::TWinControl {
 public:
  explicit TPluginList(ui::TComponent* owner) : ui::TWinControl(owner) {}
  void SetItems(const std::vector<std::wstring>& names, int selected);
  std::function<void(int index)> OnSelect;

  LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam) override;

 protected:
  void CreateParamsFor(CreateParams& params) override;
  void CreateWnd() override;

 private:
  std::vector<std::wstring> names_;
  int selected_ = -1;
  void Fill();
};

class TDevHostForm final : public ui::TForm {
 public:
  TDevHostForm(TWelcomePageService& pages, TColor pageColor);

  // Shows the plug-in's view in the Welcome Page area: its existing view, or one made by
  // CreateView when it has none. False for an unknown ID or a creator that made no view.
  bool ShowPlugin(const std::wstring& id);
  // Destroys every plug-in's view, as the IDE does when its Welcome Page closes.
  void DestroyViews();
  // The Welcome Page area, the root of the window tree dumps.
  HWND PageArea() { return page_->Handle(); }
  void SetStatus(const std::wstring& text);

 private:
  void PluginsChanged();
  void ViewDestroying(const TWelcomePageService::TPlugin& plugin);

  TWelcomePageService& pages_;
  TPluginList* list_;
  ui::TPanel* page_;
  ui::TPanel* status_;
  ui::TFrame* shown_ = nullptr;  // the view in the page area
  std::wstring shownID_;
};

}  // namespace devhost
