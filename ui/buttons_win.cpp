// Speed buttons (ui/buttons.h).
#include "ui/buttons.h"

namespace ui {

TSpeedButton::TSpeedButton(TComponent* owner) : TWinControl(owner) { bounds_ = {0, 0, 23, 22}; }

void TSpeedButton::CreateParamsFor(CreateParams& params) {
  TWinControl::CreateParamsFor(params);
  params.className = L"BUTTON";
  params.systemClass = true;
  params.style = (params.style & ~WS_CLIPCHILDREN) | BS_PUSHBUTTON;
}

LRESULT TSpeedButton::WndProc(UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == CN_COMMAND) {
    if (HIWORD(wParam) == BN_CLICKED) Click();
    return 0;
  }
  return TWinControl::WndProc(msg, wParam, lParam);
}

}  // namespace ui
