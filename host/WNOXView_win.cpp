#include "host/WNOXView.h"

#include <shellapi.h>

#include <cstdint>
#include <cstdlib>

#include "host/view_rules.h"
#include "ide/ToolsAPI.h"
#include "rtl/handles.h"
#include "rtl/inifiles.h"
#include "rtl/unitinit.h"
#include "rtl/wide.h"
#include "tools/paths.h"
#include "tools/interapp.h"

namespace WNOXView {

using rtl::W;

std::u16string NOXIniName;
std::u16string NOXProg;
bool ProgLoaded = false;

namespace {

rtl::TUnitCounter Counter;

// Window handles travel as 32-bit signed values: only a value above 0 is a window.
std::int32_t HandleValue(HWND wnd) {
  return static_cast<std::int32_t>(reinterpret_cast<std::intptr_t>(wnd));
}
HWND HandleOf(std::intptr_t value) { return reinterpret_cast<HWND>(value); }

std::u16string EnvironmentVariable(const wchar_t* name) {
  wchar_t buffer[32768];
  const DWORD n = GetEnvironmentVariableW(name, buffer, 32768);
  if (n == 0 || n >= 32768) return {};
  return std::u16string(reinterpret_cast<const char16_t*>(buffer), n);
}

std::u16string HostExecutable() {
  wchar_t buffer[32768];
  const DWORD n = GetModuleFileNameW(nullptr, buffer, 32768);
  return std::u16string(reinterpret_cast<const char16_t*>(buffer), n < 32768 ? n : 0);
}

// The page's 48 x 48 logo: a white "N" on a blue tile with a lighter rim.
ui::TColor NoxdeskLogo(int x, int y) {
  if (x < 2 || y < 2 || x > 45 || y > 45) return 0x00E0B080;
  const bool stem = (x >= 10 && x <= 15) || (x >= 32 && x <= 37);
  const bool diagonal = y >= 10 && y <= 37 && x - 10 >= y - 13 && x - 10 <= y - 8;
  return (stem && y >= 10 && y <= 37) || diagonal ? ui::clWhite : 0x00A05020;
}

bool FileExists(const std::u16string& path) {
  // The attributes of a link are its own; what it leads to is asked by opening it.
  const DWORD attributes = GetFileAttributesW(W(path));
  std::optional<std::uint32_t> own, target;
  if (attributes != INVALID_FILE_ATTRIBUTES) own = attributes;
  if (own && (*own & FILE_ATTRIBUTE_REPARSE_POINT)) {
    const rtl::unique_hfile f(CreateFileW(W(path), 0,
                                          FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE,
                                          nullptr, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS, nullptr));
    BY_HANDLE_FILE_INFORMATION info{};
    if (f && GetFileInformationByHandle(f.get(), &info)) target = info.dwFileAttributes;
  }
  return ProgramFileExists(own, target);
}

}  // namespace

void Initialize() { Counter.Start(); }

void Finalize() {
  if (!Counter.Stop()) return;
  NOXIniName.clear();
  NOXProg.clear();
  // ProgLoaded keeps its value: a program still docked somewhere stays accounted for.
}

TMainFrame::TMainFrame(ui::TComponent* owner) : ui::TFrame(owner) {
  Name = u"MainFrame";
  SetBounds(0, 0, 822, 363);
  Color = ui::clWindow;
  Font.Name = u"Segoe UI";
  Font.Height = -12;
  ParentBackground = false;
  ParentColor = false;
  ParentFont = false;

  Panel1 = new ui::TPanel(this);
  Panel1->Name = u"Panel1";
  Panel1->SetParent(this);
  Panel1->SetAlign(ui::TAlign::alClient);
  Panel1->BevelOuter = ui::TBevelCut::bvNone;
  Panel1->Color = ui::clWindow;
  Panel1->StyleElements = {ui::TStyleElement::seFont, ui::TStyleElement::seBorder};
  Panel1->OnResize = [this](rtl::TObject* sender) { Panel1Resize(sender); };

  Timer1 = new ui::TTimer(this);
  Timer1->Name = u"Timer1";
  Timer1->SetEnabled(false);
  Timer1->SetInterval(3000);
  Timer1->OnTimer = [this](rtl::TObject* sender) { Timer1Timer(sender); };

  ApplicationEvents1 = new ui::TApplicationEvents(this);
  ApplicationEvents1->Name = u"ApplicationEvents1";
  ApplicationEvents1->OnMessage = [this](MSG& msg, bool& handled) {
    ApplicationEvents1Message(msg, handled);
  };

  Image1 = new ui::TImage(this);
  Image1->Name = u"Image1";
  Image1->SetParent(Panel1);
  Image1->SetBounds(600, 128, 49, 49);
  Image1->Stretch = true;
  Image1->SetVisible(false);
  Image1->Picture.Assign(ui::CreateDib24(48, 48, NoxdeskLogo));

  Panel2 = new ui::TPanel(this);
  Panel2->Name = u"Panel2";
  Panel2->SetParent(Panel1);
  Panel2->SetAlign(ui::TAlign::alTop);
  Panel2->SetHeight(28);

  bnShowPlug = new ui::TSpeedButton(this);
  bnShowPlug->Name = u"bnShowPlug";
  bnShowPlug->SetParent(Panel2);
  bnShowPlug->SetAlign(ui::TAlign::alLeft);
  bnShowPlug->SetBounds(0, 0, 97, 26);
  bnShowPlug->SetCaption(u"Show PlugIn");
  bnShowPlug->SetVisible(false);
  bnShowPlug->OnClick = [this](rtl::TObject* sender) { bnShowPlugClick(sender); };

  // Follow the IDE's style when it is themed.
  ToolsAPI::InterfacePtr<ToolsAPI::IOTAIDEThemingServices> theming;
  if (ToolsAPI::Supports(ToolsAPI::BorlandIDEServices, ToolsAPI::IID_IOTAIDEThemingServices,
                         &theming) &&
      theming->IDEThemingEnabled()) {
    Panel1->StyleElements.erase(ui::TStyleElement::seClient);
    Panel1->ParentBackground = false;
    Panel1->Color = theming->StyleServices()->GetSystemColor(ui::clWindow);
  }

  NOXIniName = SettingsFileName(EnvironmentVariable(L"APPDATA"));
  const std::u16string defaultProgram = DefaultProgram(HostExecutable());
  {
    rtl::TIniFile ini(NOXIniName);
    NOXProg = ini.ReadString(u"PlugInSettings", u"Programlocation", defaultProgram);
  }
  NOXProg = Qm_tools::RemoveSlash(NOXProg);  // one backslash, not more

  Timer1->SetEnabled(true);
}

TMainFrame::~TMainFrame() { StopProg(); }

void TMainFrame::Timer1Timer(rtl::TObject* /*sender*/) {
  bnShowPlug->SetEnabled(false);
  Timer1->SetEnabled(false);
  if (!ProgLoaded && FileExists(NOXProg)) {
    StartAProg(NOXProg, SlaveParameters(HandleValue(Handle())), Panel1);
    Panel1Resize(this);
  }
  bnShowPlug->SetVisible(true);
  bnShowPlug->SetEnabled(true);
}

void TMainFrame::StartAProg(const std::u16string& path, const std::u16string& parameters,
                            ui::TPanel*& panel) {
  static_assert(sizeof(SHELLEXECUTEINFOW) == 112, "the record the shell expects of a 64-bit caller");
  SHELLEXECUTEINFOW info{};
  info.cbSize = sizeof(info);
  info.fMask = SEE_MASK_NOCLOSEPROCESS;
  info.hwnd = Handle();
  info.lpVerb = L"open";
  info.lpFile = W(path);
  info.lpParameters = W(parameters);
  info.nShow = SW_HIDE;  // the window is shown by docking it
  const BOOL started = ShellExecuteExW(&info);
  // Owned from here on, whatever happens below; closing it does not end the program.
  const rtl::unique_handle process(info.hProcess);
  // The process handle is compared with 32 as the old instance-handle result was.
  if (!started || reinterpret_cast<std::uintptr_t>(info.hProcess) <= 32) return;

  const std::wstring className(kCompanionClass.begin(), kCompanionClass.end());
  const std::wstring title(kCompanionTitle.begin(), kCompanionTitle.end());
  Sleep(2000);
  HWND wnd = FindTitledWindow(kCompanionClass, kCompanionTitle);
  for (int round = 0; round < 5; ++round) {
    if (wnd != nullptr && IsWindowVisible(wnd)) break;
    Sleep(1500);
    wnd = FindWindowW(className.c_str(), title.c_str());
  }
  if (HandleValue(wnd) > 0) {
    ProgLoaded = true;
    panel->Tag = HandleValue(wnd);
    ::SetParent(wnd, panel->Handle());
    SetWindowLongW(wnd, GWL_STYLE, GetWindowLongW(wnd, GWL_STYLE) & ~WS_BORDER);
    SetWindowPos(wnd, HWND_TOP, Left(), Top(), Width(), Height(), SWP_FRAMECHANGED);
    panel->SetVisible(true);
  }
}

void TMainFrame::Panel1Resize(rtl::TObject* /*sender*/) {
  if (Panel1->Tag > 0)
    MoveWindow(HandleOf(Panel1->Tag), 0, 0, Panel1->Width(), Panel1->Height(), TRUE);
}

void TMainFrame::StopProg() {
  if (Panel1 == nullptr || Panel1->Tag <= 0) return;
  PostMessageW(HandleOf(Panel1->Tag), WM_CLOSE, 0, 0);
  const std::wstring appClass(kCompanionAppClass.begin(), kCompanionAppClass.end());
  const std::wstring title(kCompanionTitle.begin(), kCompanionTitle.end());
  PostMessageW(FindWindowW(appClass.c_str(), title.c_str()), WM_CLOSE, 0, 0);
  Sleep(100);
  ProgLoaded = false;
}

void TMainFrame::bnShowPlugClick(rtl::TObject* /*sender*/) {
  StopProg();
  Timer1->SetEnabled(true);
}

void TMainFrame::ViewShow(ui::TWinControl* /*parent*/) {}
void TMainFrame::ViewHide() {}
void TMainFrame::ViewResize(int /*width*/, int /*height*/) {}
void TMainFrame::ApplicationEvents1Message(MSG& /*msg*/, bool& /*handled*/) {}

LRESULT TMainFrame::WndProc(UINT msg, WPARAM wParam, LPARAM lParam) {
  if (msg == WM_COPYDATA) {
    WMCopyData(reinterpret_cast<const COPYDATASTRUCT*>(lParam));
    return 0;
  }
  return ui::TFrame::WndProc(msg, wParam, lParam);
}

void TMainFrame::WMCopyData(const COPYDATASTRUCT* data) {
  ToolsAPI::InterfacePtr<ToolsAPI::IOTAActionServices> actions;
  if (!ToolsAPI::Supports(ToolsAPI::BorlandIDEServices, ToolsAPI::IID_IOTAActionServices,
                          &actions))
    return;
  if (data == nullptr || data->dwData != kOpenProjectMessage || data->lpData == nullptr) return;
  // The sender may be any process: the path ends at its terminator or at cbData,
  // whichever comes first.
  const auto* text = static_cast<const char16_t*>(data->lpData);
  const size_t units = data->cbData / sizeof(char16_t);
  size_t length = 0;
  while (length < units && text[length] != u'\0') ++length;
  const std::u16string path(text, length);
  actions->OpenProject(W(path), true);
}

HWND TMainFrame::FindTitledWindow(std::u16string_view className,
                                  std::u16string_view titlePart) {
  return Qm_tools::InAllWindowTitle(className, titlePart);
}

}  // namespace WNOXView
