// The content of the Noxdesk page: a frame that starts the companion program, docks its
// main window into Panel1, keeps it sized, and passes the program's open-project requests
// on to the IDE. It draws nothing of its own.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>

#include "ui/appevnts.h"
#include "ui/buttons.h"
#include "ui/extctrls.h"
#include "ui/forms.h"
#include "host/wnoxview_api.h"

namespace WNOXView {

// Full path of the shared settings file ("quillmark\NOX\NOX.INI" under APPDATA).
extern WNOXVIEW_API std::u16string NOXIniName;
// Full path of the companion program, without a trailing backslash.
extern WNOXVIEW_API std::u16string NOXProg;
// True from a successful docking until StopProg; shared by every frame.
extern WNOXVIEW_API bool ProgLoaded;

WNOXVIEW_API void Initialize();
WNOXVIEW_API void Finalize();

class WNOXVIEW_API TMainFrame : public ui::TFrame {
 public:
  explicit TMainFrame(ui::TComponent* owner);
  ~TMainFrame() override;

  // Starts `path` hidden and docks its main window into `panel` (handle in panel->Tag).
  void StartAProg(const std::u16string& path, const std::u16string& parameters,
                  ui::TPanel*& panel);
  // Asks the docked program to close; Panel1.Tag keeps the old handle on purpose.
  void StopProg();

  void Timer1Timer(rtl::TObject* sender);
  void Panel1Resize(rtl::TObject* sender);
  void bnShowPlugClick(rtl::TObject* sender);
  void ViewShow(ui::TWinControl* parent);
  void ViewHide();
  void ViewResize(int width, int height);
  void ApplicationEvents1Message(MSG& msg, bool& handled);

  ui::TPanel* Panel1 = nullptr;
  ui::TTimer* Timer1 = nullptr;
  ui::TApplicationEvents* ApplicationEvents1 = nullptr;
  ui::TImage* Image1 = nullptr;
  ui::TPanel* Panel2 = nullptr;
  ui::TSpeedButton* bnShowPlug = nullptr;

 protected:
  LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam) override;
  // The companion program's open-project request: dwData 10023, a zero-terminated path.
  void WMCopyData(const COPYDATASTRUCT* data);

 private:
  HWND FindTitledWindow(std::u16string_view className, std::u16string_view titlePart);
};

}  // namespace WNOXView
