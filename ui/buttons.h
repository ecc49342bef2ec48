// Speed buttons. Windows build only.
#pragma once

#include "ui/controls.h"

namespace ui {

// A push button showing its Caption; a click (mouse, keyboard or BM_CLICK) calls OnClick.
// Here it is a system "BUTTON" window rather than one its parent paints.
class TSpeedButton : public TWinControl {
 public:
  explicit TSpeedButton(TComponent* owner);  // 23x22

  LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam) override;

 protected:
  void CreateParamsFor(CreateParams& params) override;
};

}  // namespace ui
