// msgdlgdemo.exe: shows the message dialog of every kind in both languages and a long
// message, saves a picture of each as a BMP file in the folder given, and closes each with
// Enter. Usage: msgdlgdemo <folder> [--aware]. With --aware the program is aware of each
// monitor's density, as the IDE is, and takes one picture at the system's density,
// "confirmation-de-<dpi>dpi".
#include <windows.h>

#include <string>
#include <vector>

#include "devhost/screenshot.h"
#include "dialog/QMMessageDlgVCL.h"
#include "dialog/msgdlg_form.h"

namespace {

using namespace QMMessageDlgVCL;

std::wstring Folder;
std::wstring NextPicture;

// Takes the picture once the dialog has painted, then presses Enter on it.
void CALLBACK TakePicture(HWND, UINT, UINT_PTR timer, DWORD) {
  if (F_MsgDlg == nullptr || !F_MsgDlg->HandleAllocated() ||
      !IsWindowVisible(F_MsgDlg->Handle()))
    return;
  KillTimer(nullptr, timer);
  HWND window = F_MsgDlg->Handle();
  UpdateWindow(window);
  devhost::SaveWindowImage(window, Folder + L"\\" + NextPicture + L".bmp");
  PostMessageW(window, WM_KEYDOWN, VK_RETURN, 0);
}

void Show(const std::wstring& name, const std::u16string& text, TMsgDlgType type,
          TMsgDlgButtons buttons) {
  NextPicture = name;
  SetTimer(nullptr, 0, 700, &TakePicture);
  MessageDlgEx(text, type, buttons, 0);
}

}  // namespace

int wmain(int argc, wchar_t** argv) {
  if (argc < 2) return 2;
  Folder = argv[1];
  const bool aware = argc > 2 && std::wstring(argv[2]) == L"--aware";
  // The first call may set the first version where the second is unknown.
  if (aware && !SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE_V2))
    SetProcessDpiAwarenessContext(DPI_AWARENESS_CONTEXT_PER_MONITOR_AWARE);
  Initialize();
  StdDlgSettings.DialogCaptionText = u"Noxdesk";
  if (aware) {
    Show(L"confirmation-de-" + std::to_wstring(GetDpiForSystem()) + L"dpi", u"Sollen die Änderungen an der Projektgruppe gespeichert werden?",
         mtConfirmation, {mbYes, mbNo, mbCancel});
    Finalize();
    return 0;
  }

  struct Language {
    int lang;
    const wchar_t* suffix;
    std::u16string warning, question, info, error;
  };
  const std::vector<Language> languages{
      {1, L"de", u"Die Projektdatei wurde seit dem letzten Öffnen verändert.",
       u"Sollen die Änderungen an der Projektgruppe gespeichert werden?",
       u"Die Einstellungen wurden gespeichert.",
       u"Datei wurde nicht gefunden.\r\nC:\\Projekte\\Demo\\Demo.dproj"},
      {2, L"en", u"The project file has changed since it was last opened.",
       u"Save the changes to the project group?", u"The settings have been saved.",
       u"File not found.\r\nC:\\Projects\\Demo\\Demo.dproj"},
  };
  for (const Language& l : languages) {
    StdDlgSettings.lang = l.lang;
    const std::wstring s = l.suffix;
    Show(L"warning-" + s, l.warning, mtWarning, {mbOK, mbCancel});
    Show(L"confirmation-" + s, l.question, mtConfirmation, {mbYes, mbNo, mbCancel});
    Show(L"information-" + s, l.info, mtInformation, {mbOK});
    Show(L"error-" + s, l.error, mtError, {mbAbort, mbRetry, mbIgnore});
  }
  StdDlgSettings.lang = 1;
  std::u16string longText = u"Folgende Dateien konnten nicht kopiert werden:\r\n";
  for (int i = 1; i <= 60; ++i)
    longText += u"  C:\\Projekte\\Noxdesk\\Quelltext\\Einheit" + std::u16string(1, u'0' + i / 10) +
                std::u16string(1, u'0' + i % 10) + u".pas\r\n";
  Show(L"long-de", longText, mtError, {mbOK});
  Finalize();
  return 0;
}
