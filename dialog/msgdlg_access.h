// The message dialog as screen readers see it (Microsoft Active Accessibility). Windows
// build only.
#pragma once

#include <windows.h>

struct IAccessible;

namespace QMMessageDlgVCL {

class TF_MsgDlg;

// The form's accessible object, for the form's lifetime; afterwards it answers that it is
// no longer connected.
class TMsgDlgAccess {
 public:
  explicit TMsgDlgAccess(TF_MsgDlg* form);
  ~TMsgDlgAccess();
  TMsgDlgAccess(const TMsgDlgAccess&) = delete;
  TMsgDlgAccess& operator=(const TMsgDlgAccess&) = delete;

  // The answer to WM_GETOBJECT: the object for the client area, 0 for anything else.
  LRESULT Answer(WPARAM wParam, LPARAM lParam) const;
  // Tells screen readers that the button at `buttonIndex` of the row is now the focused one.
  static void FocusMoved(HWND form, int buttonIndex);

 private:
  IAccessible* object_;
};

}  // namespace QMMessageDlgVCL
