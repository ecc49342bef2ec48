// The host frame and the package end to end with the stand-in companion program, a fake IDE
// and a fake Welcome Page; windows of this thread stand in for the program's where needed.
#include <gtest/gtest.h>
#include <windows.h>

#include <memory>
#include <string>
#include <vector>

#include "host/WNOXView.h"
#include "ide/WelcomePage.h"
#include "message_pump.h"
#include "package/packageinfo.h"
#include "rtl/handles.h"
#include "ui/forms.h"
#include "win_support.h"

namespace {

using namespace ToolsAPI;
using namespace ToolsAPI::WelcomePage;
using WNOXView::TMainFrame;

const std::wstring kCompanion = nox_test::WidePath(NOX_COMPANION_EXE);
const std::wstring kPackage = nox_test::WidePath(NOX_PACKAGE_DLL);
constexpr const wchar_t* kCompanionExe = L"NOXPlugIn.exe";
constexpr const wchar_t* kCompanionTitle = L"NOXPlugIn Slave Delphi 13 Florence";

// The clock may lag a timer a little; a late wake-up stays below any wait change that matters.
constexpr ULONGLONG kClockSlack = 50;
constexpr ULONGLONG kLate = 950;

std::u16string U16(const std::wstring& s) { return std::u16string(s.begin(), s.end()); }

// The IDE as the frame sees it: theming and action services, with the requests recorded.
class FakeIDE final : public IBorlandIDEServices,
                      public IOTAIDEThemingServices,
                      public IOTAActionServices,
                      public TCustomStyleServices {
 public:
  struct Request { std::wstring path; bool newGroup; };
  std::vector<Request> requests;
  bool themed = true;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (iid == IID_IUnknown || iid == IID_IBorlandIDEServices)
      *out = static_cast<IBorlandIDEServices*>(this);
    else if (iid == IID_IOTAIDEThemingServices) *out = static_cast<IOTAIDEThemingServices*>(this);
    else if (iid == IID_IOTAActionServices) *out = static_cast<IOTAActionServices*>(this);
    else return *out = nullptr, E_NOINTERFACE;
    return S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  bool IDEThemingEnabled() override { return themed; }
  TCustomStyleServices* StyleServices() override { return this; }
  TColor GetSystemColor(TColor color) override { return color == ui::clWindow ? 0x00F4F0EE : color; }
  bool CloseFile(const wchar_t*) override { return false; }
  bool OpenFile(const wchar_t*) override { return false; }
  bool OpenProject(const wchar_t* name, bool newGroup) override {
    return requests.push_back({name, newGroup}), true;
  }
  bool ReloadFile(const wchar_t*) override { return false; }
  bool SaveFile(const wchar_t*) override { return false; }
};

HWND Docked(TMainFrame& frame) { return reinterpret_cast<HWND>(frame.Panel1->Tag); }

bool NoCompanionRuns() { return nox_test::CountProcesses(kCompanionExe) == 0; }

// When the (one) running companion program was started, on the scale of ClockMs.
ULONGLONG CompanionStartedAt() {
  ULONGLONG at = 0;
  nox_test::ForEachProcess(kCompanionExe, [&](DWORD id) { at = nox_test::StartedAt(id); });
  return at;
}

// The colour the panel's window fills its background with, read from a picture of it.
COLORREF PaintedColour(ui::TPanel& panel) {
  const rtl::unique_screen_dc screen(GetDC(nullptr));
  const rtl::unique_hdc dc(CreateCompatibleDC(screen.get()));
  const rtl::unique_hbitmap picture(CreateCompatibleBitmap(screen.get(), 8, 8));
  const rtl::select_object into(dc.get(), picture.get());
  SendMessageW(panel.Handle(), WM_ERASEBKGND, reinterpret_cast<WPARAM>(dc.get()), 0);
  return GetPixel(dc.get(), 4, 4);
}

class SpineFrame : public ::testing::Test {
 protected:
  void SetUp() override {
    nox_test::EndProcesses(kCompanionExe);
    WNOXView::ProgLoaded = false;
    appData_ = nox_test::W(nox_test::TempFolder() + u"nox-spine-");
    appData_ += std::to_wstring(GetCurrentProcessId());
    CreateDirectoryW(appData_.c_str(), nullptr);
    SetEnvironmentVariableW(L"APPDATA", appData_.c_str());
    SetEnvironmentVariableW(L"NOXPLUGIN_OPTIONS", nullptr);
    BorlandIDEServices = &ide_;
    form_ = std::make_unique<ui::TForm>(nullptr);
    form_->SetBounds(0, 0, 900, 500);
  }
  void TearDown() override {
    form_.reset();
    PumpUntil(NoCompanionRuns, 10000);
    nox_test::EndProcesses(kCompanionExe);
    BorlandIDEServices = nullptr;
    DeleteFileW(IniFile().c_str());
  }
  std::wstring IniFile() const { return appData_ + L"\\quillmark\\NOX\\NOX.INI"; }
  void SetProgramLocation(const std::wstring& location) {
    CreateDirectoryW((appData_ + L"\\quillmark").c_str(), nullptr);
    CreateDirectoryW((appData_ + L"\\quillmark\\NOX").c_str(), nullptr);
    WritePrivateProfileStringW(L"PlugInSettings", L"Programlocation", location.c_str(),
                               IniFile().c_str());
  }
  TMainFrame* NewFrame() {
    auto* frame = new TMainFrame(form_.get());
    frame->SetParent(form_.get());
    frame->SetAlign(ui::TAlign::alClient);
    form_->Show();
    return frame;
  }
  // The first timer run comes after 3000 ms and may wait up to 9500 ms for the window.
  static bool WaitForTimerRun(TMainFrame& frame) {
    return PumpUntil([&] { return frame.bnShowPlug->Visible() && frame.bnShowPlug->Enabled(); },
                     20000);
  }
  // The docked window covers the panel exactly, also after the form was made smaller.
  void ExpectFillsPanel(HWND wnd, TMainFrame& frame, bool resize) {
    if (resize) {
      form_->SetBounds(0, 0, 640, 420);
      Pause(300);
      EXPECT_LT(frame.Panel1->Width(), 700);
    }
    RECT r;
    GetWindowRect(wnd, &r);
    MapWindowPoints(HWND_DESKTOP, frame.Panel1->Handle(), reinterpret_cast<POINT*>(&r), 2);
    EXPECT_EQ((std::vector<LONG>{r.left, r.top, r.right, r.bottom}),
              (std::vector<LONG>{0, 0, frame.Panel1->Width(), frame.Panel1->Height()}));
  }

  FakeIDE ide_;
  std::wstring appData_;
  std::unique_ptr<ui::TForm> form_;
};

TEST_F(SpineFrame, DocksTheCompanionPassesItsRequestOnOnceAndRestartsLeaveNothingBehind) {
  SetProgramLocation(kCompanion);
  SetEnvironmentVariableW(L"NOXPLUGIN_OPTIONS", L"--send-after 500 C:\\Projects\\Demo\\Demo.dproj");
  const ULONGLONG made = nox_test::ClockMs();
  TMainFrame* frame = NewFrame();
  ASSERT_TRUE(WaitForTimerRun(*frame));
  // Not started before the frame's timer ran out, 3000 ms after the page was made.
  EXPECT_GE(CompanionStartedAt(), made + 3000 - kClockSlack);
  ASSERT_TRUE(WNOXView::ProgLoaded);
  const HWND first = Docked(*frame);
  ASSERT_TRUE(IsWindow(first));
  EXPECT_TRUE(nox_test::IsDescendant(frame->Panel1->Handle(), first));
  EXPECT_EQ(GetWindowLongW(first, GWL_STYLE) & WS_BORDER, 0);
  ExpectFillsPanel(first, *frame, false);
  // The themed IDE's window colour fills the docking panel.
  EXPECT_EQ(PaintedColour(*frame->Panel1), 0x00F4F0EEu);
  ExpectFillsPanel(first, *frame, true);

  // The program's one request reaches the IDE once, for a new project group.
  ASSERT_TRUE(PumpUntil([&] { return !ide_.requests.empty(); }, 10000));
  Pause(500);
  ASSERT_EQ(ide_.requests.size(), 1u);
  EXPECT_EQ(ide_.requests[0].path, L"C:\\Projects\\Demo\\Demo.dproj");
  EXPECT_TRUE(ide_.requests[0].newGroup);

  // The button closes the program; the timer starts a new one 3000 ms later.
  SetEnvironmentVariableW(L"NOXPLUGIN_OPTIONS", nullptr);
  SendMessageW(frame->bnShowPlug->Handle(), BM_CLICK, 0, 0);
  EXPECT_FALSE(WNOXView::ProgLoaded);
  ASSERT_TRUE(PumpUntil([&] { return !IsWindow(first); }, 10000));
  ASSERT_TRUE(PumpUntil([&] { return WNOXView::ProgLoaded; }, 20000));
  EXPECT_NE(Docked(*frame), first);
  EXPECT_EQ(nox_test::CountProcesses(kCompanionExe), 1);

  // An ended program whose process handle the frame kept can still be opened by its id.
  std::vector<DWORD> ended;
  for (int i = 0; i < 10; ++i) {
    nox_test::ForEachProcess(kCompanionExe, [&](DWORD id) { ended.push_back(id); });
    frame->StopProg();
    ASSERT_TRUE(PumpUntil(NoCompanionRuns, 10000)) << "restart " << i;
    frame->Timer1Timer(frame);
    ASSERT_TRUE(WNOXView::ProgLoaded) << "restart " << i;
  }
  // Destroying the frame ends the companion program.
  delete frame;
  EXPECT_TRUE(PumpUntil(NoCompanionRuns, 10000));
  for (const DWORD id : ended)
    EXPECT_FALSE(rtl::unique_handle(OpenProcess(SYNCHRONIZE, FALSE, id))) << "process " << id;
}

TEST_F(SpineFrame, SettingsDecideWhereTheProgramIsUntilTheUnitsLastStop) {
  WNOXView::Initialize();
  WNOXView::Initialize();
  // No settings file: the program beside the host executable.
  delete NewFrame();
  wchar_t exe[MAX_PATH];
  GetModuleFileNameW(nullptr, exe, MAX_PATH);
  std::wstring expected(exe);
  expected = expected.substr(0, expected.find_last_of(L'\\') + 1) + L"NOXPlugIn.exe";
  EXPECT_EQ(WNOXView::NOXProg, U16(expected));

  // "Programlocation" as the user wrote it: one trailing backslash goes, and only one.
  const struct { const wchar_t* location; std::u16string program; } cases[] = {
      {L"C:\\Tools\\NOXPlugIn.exe\\\\", u"C:\\Tools\\NOXPlugIn.exe\\"},
      {L"\\\\\\", u"\\\\"},
      {L"C:\\Tools\\NOXPlugIn.exe", u"C:\\Tools\\NOXPlugIn.exe"},
      {L"C:\\Tools\\NOXPlugIn.exe\\", u"C:\\Tools\\NOXPlugIn.exe"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << "Programlocation=" << c.location);
    SetProgramLocation(c.location);
    delete NewFrame();
    EXPECT_EQ(WNOXView::NOXProg, c.program);
    EXPECT_EQ(WNOXView::NOXIniName, U16(IniFile()));
  }

  // The settings file is found under APPDATA whatever its length.
  SetEnvironmentVariableW(L"APPDATA", L"Q");
  delete NewFrame();
  EXPECT_EQ(WNOXView::NOXIniName, u"Q\\quillmark\\NOX\\NOX.INI");
  SetEnvironmentVariableW(L"APPDATA", appData_.c_str());
  delete NewFrame();

  // The unit's last stop forgets the settings, but not whether a program is loaded.
  WNOXView::ProgLoaded = true;
  WNOXView::Finalize();
  EXPECT_EQ(WNOXView::NOXProg, u"C:\\Tools\\NOXPlugIn.exe");
  WNOXView::Finalize();
  EXPECT_EQ(WNOXView::NOXProg, u"");
  EXPECT_EQ(WNOXView::NOXIniName, u"");
  EXPECT_TRUE(WNOXView::ProgLoaded);
}

// With nothing docked, open-project requests still pass: read within their bytes only.
TEST_F(SpineFrame, AMissingProgramDocksNothingButPassesOnCopyDataRequests) {
  ide_.themed = false;
  SetProgramLocation(L"Z:\\nowhere\\NOXPlugIn.exe");
  const ULONGLONG made = nox_test::ClockMs();
  // As designed, before the page aligns it: 822 x 363 in 9-point Segoe UI, which the
  // page's button shows.
  auto* frame = new TMainFrame(form_.get());
  const ui::TRect designed = frame->BoundsRect();
  EXPECT_EQ((std::vector<int>{designed.Left, designed.Top, designed.Right, designed.Bottom}),
            (std::vector<int>{0, 0, 822, 363}));
  frame->SetParent(form_.get());
  LOGFONTW font{};
  GetObjectW(reinterpret_cast<HFONT>(SendMessageW(frame->bnShowPlug->Handle(), WM_GETFONT, 0, 0)),
             sizeof(font), &font);
  EXPECT_EQ(std::wstring(font.lfFaceName), L"Segoe UI");
  EXPECT_EQ(font.lfHeight, -12);
  frame->SetAlign(ui::TAlign::alClient);
  form_->Show();
  EXPECT_FALSE(frame->bnShowPlug->Visible()) << "the button waits for the timer";
  EXPECT_FALSE(frame->Image1->Visible()) << "the logo is kept hidden";
  // Without IDE theming, panel and frame both show the system's window colour.
  EXPECT_EQ(frame->Panel1->Color, ui::clWindow);
  EXPECT_EQ(PaintedColour(*frame->Panel1), GetSysColor(COLOR_WINDOW));

  const auto send = [&](ULONG_PTR dwData, const void* data, DWORD bytes) {
    COPYDATASTRUCT cds{dwData, bytes, const_cast<void*>(data)};
    EXPECT_EQ(SendMessageW(frame->Handle(), WM_COPYDATA, 0, reinterpret_cast<LPARAM>(&cds)), 0);
  };
  const wchar_t path[] = L"C:\\P\\A.dproj";
  send(10024, path, sizeof(path));
  send(0, path, sizeof(path));
  EXPECT_TRUE(ide_.requests.empty());
  // A path without a terminator that ends right before an inaccessible page.
  SYSTEM_INFO si;
  GetSystemInfo(&si);
  auto* pages = static_cast<char*>(
      VirtualAlloc(nullptr, 2 * si.dwPageSize, MEM_RESERVE | MEM_COMMIT, PAGE_READWRITE));
  ASSERT_NE(pages, nullptr);
  DWORD old;
  VirtualProtect(pages + si.dwPageSize, si.dwPageSize, PAGE_NOACCESS, &old);
  const std::wstring unterminated = L"C:\\X\\B.dproj";
  const DWORD bytes = static_cast<DWORD>(unterminated.size() * sizeof(wchar_t));
  char* at = pages + si.dwPageSize - bytes;
  memcpy(at, unterminated.data(), bytes);
  send(10023, at, bytes);
  send(10023, path, sizeof(path));
  VirtualFree(pages, 0, MEM_RELEASE);
  ASSERT_EQ(ide_.requests.size(), 2u);
  EXPECT_EQ(ide_.requests[0].path, unterminated);
  EXPECT_EQ(ide_.requests[1].path, L"C:\\P\\A.dproj");

  ASSERT_TRUE(WaitForTimerRun(*frame));
  const ULONGLONG offered = nox_test::ClockMs() - made;
  EXPECT_GE(offered, 3000 - kClockSlack);
  EXPECT_LT(offered, 3000 + kLate);
  EXPECT_EQ(frame->Panel1->Tag, 0);
  EXPECT_FALSE(WNOXView::ProgLoaded);
  // The button offered: at the left of the 28-pixel bar above the panel, inside its bevel.
  const ui::TRect button = frame->bnShowPlug->BoundsRect();
  EXPECT_EQ((std::vector<int>{button.Left, button.Top, button.Right, button.Bottom}),
            (std::vector<int>{1, 1, 98, 27}));
  EXPECT_EQ(frame->bnShowPlug->Caption(), u"Show PlugIn");
  form_->SetBounds(0, 0, 700, 400);  // a resize with nothing docked does nothing

  // Without the IDE's action services the message is dropped.
  BorlandIDEServices = nullptr;
  send(10023, path, sizeof(path));
  EXPECT_EQ(ide_.requests.size(), 2u);
}

TEST_F(SpineFrame, AWindowLaterThanTheLastRetryIsNotDocked) {
  SetProgramLocation(kCompanion);
  SetEnvironmentVariableW(L"NOXPLUGIN_OPTIONS", L"--show-after 11000");
  TMainFrame* frame = NewFrame();
  ASSERT_TRUE(WaitForTimerRun(*frame));
  // The frame looked 2000 ms after the start and then 5 times 1500 ms apart, no longer.
  const ULONGLONG waited = nox_test::ClockMs() - CompanionStartedAt();
  EXPECT_GE(waited, 2000 + 5 * 1500 - kClockSlack);
  EXPECT_LT(waited, 2000 + 5 * 1500 + kLate);
  EXPECT_EQ(frame->Panel1->Tag, 0);
  EXPECT_FALSE(WNOXView::ProgLoaded);
  nox_test::EndProcesses(kCompanionExe);  // never docked, so nobody asks it to close
}

TEST_F(SpineFrame, ShowPlugInAsksBothProgramWindowsToCloseAndResizesStillMoveTheOldOne) {
  // The companion's two windows played by this thread; the program started ends at once.
  nox_test::StandInWindow mainForm(L"TMainForm", kCompanionTitle, true);
  nox_test::StandInWindow application(L"TApplication", kCompanionTitle, false);
  SetProgramLocation(nox_test::WidePath(NOX_RECORDARGS_EXE));
  TMainFrame* frame = NewFrame();
  ASSERT_TRUE(WaitForTimerRun(*frame));
  ASSERT_EQ(Docked(*frame), mainForm.get());

  SendMessageW(frame->bnShowPlug->Handle(), BM_CLICK, 0, 0);
  PumpUntil([&] { return mainForm.Count(WM_CLOSE) > 0 && application.Count(WM_CLOSE) > 0; },
            1000);
  EXPECT_EQ(mainForm.Count(WM_CLOSE), 1);
  EXPECT_EQ(application.Count(WM_CLOSE), 1);
  EXPECT_FALSE(WNOXView::ProgLoaded);
  // The panel keeps the handle: a window still there goes on following the panel.
  ExpectFillsPanel(mainForm.get(), *frame, true);
  delete frame;  // before its timer starts the program again
}

TEST_F(SpineFrame, OneDockedProgramServesEveryFrame) {
  SetProgramLocation(kCompanion);
  TMainFrame* first = NewFrame();
  TMainFrame* second = NewFrame();
  ASSERT_TRUE(WaitForTimerRun(*first));
  ASSERT_TRUE(WaitForTimerRun(*second));
  EXPECT_EQ(nox_test::CountProcesses(kCompanionExe), 1);
  EXPECT_TRUE((first->Panel1->Tag > 0) != (second->Panel1->Tag > 0));
}

// ---- The package as the IDE loads it ----------------------------------------------------

// At another density, in a process aware of densities as the IDE is, the page's bar and
// button take their size from it and the docked program still fills the panel.
TEST(SpineDpi, ThePageFollowsTheSystemDensity) {
  nox_test::ExpectPassesAtEachDensity("SpineDpiMeasure.*");
}

class SpineDpiMeasure : public SpineFrame {};

TEST_F(SpineDpiMeasure, DISABLED_InAProcessAwareOfDensities) {
  const int dpi = nox_test::AwareOfDensities();
  ASSERT_GT(dpi, 0);
  SetProgramLocation(kCompanion);
  TMainFrame* frame = NewFrame();
  EXPECT_EQ(frame->CurrentPPI(), dpi);
  EXPECT_NEAR(frame->Panel2->Height(), 28 * dpi / 96.0, 1);
  EXPECT_NEAR(frame->bnShowPlug->Width(), 97 * dpi / 96.0, 1);
  ASSERT_TRUE(WaitForTimerRun(*frame));
  // The docked window covers the panel from its corner, before and after the form shrinks.
  // Between two processes aware of densities Windows passes sizes unchanged; Wine hands a
  // window of another process the size converted from this thread's density to 96, so
  // there the window is the panel's size times 96/dpi.
  const HWND docked = Docked(*frame);
  const auto fills = [&] {
    RECT r;
    GetWindowRect(docked, &r);
    MapWindowPoints(HWND_DESKTOP, frame->Panel1->Handle(), reinterpret_cast<POINT*>(&r), 2);
    const bool wine = GetProcAddress(GetModuleHandleW(L"ntdll.dll"), "wine_get_version") != nullptr;
    const double share = wine ? 96.0 / dpi : 1.0;
    EXPECT_EQ(std::make_pair(r.left, r.top), std::make_pair(0L, 0L));
    EXPECT_NEAR(r.right - r.left, frame->Panel1->Width() * share, 1);
    EXPECT_NEAR(r.bottom - r.top, frame->Panel1->Height() * share, 1);
  };
  fills();
  form_->SetBounds(0, 0, 640, 420);
  Pause(300);
  EXPECT_LT(frame->Panel1->Width(), 700);
  fills();
}

class FakeCaptionFrame final : public ui::TFrame, public INTAWelcomePageCaptionFrame {
 public:
  using ui::TFrame::TFrame;
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** out) override {
    if (iid == IID_IUnknown || iid == IID_INTAWelcomePageCaptionFrame)
      return *out = static_cast<INTAWelcomePageCaptionFrame*>(this), S_OK;
    return *out = nullptr, E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  void SetClientFrame(ui::TFrame* frame) override {
    clients.push_back(frame);
    if (HandleAllocated()) {
      frame->SetParent(this);
      frame->SetAlign(ui::TAlign::alClient);
    }
  }
  std::vector<ui::TFrame*> clients;
};

class FakeWelcomePage final : public INTAWelcomePagePluginService {
 public:
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID, void** out) override {
    return *out = nullptr, E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  void RegisterPluginCreator(INTAWelcomePageContentPluginCreator* c) override {
    references.push_back(c->AddRef());
    creators.push_back(c);
  }
  void UnRegisterPlugin(const wchar_t* id) override {
    unregistered.push_back(id);
    for (auto*& c : creators)
      if (c != nullptr && c->GetPluginID() == u"WNOX") {
        c->DestroyView();
        references.push_back(c->Release());
        c = nullptr;
      }
  }
  ui::TFrame* CreateCaptionFrame(const wchar_t*, const wchar_t* caption, ui::TFrame*) override {
    captions.push_back(caption);
    auto* frame = new FakeCaptionFrame(nullptr);
    if (parent != nullptr) {
      frame->SetParent(parent);
      frame->SetAlign(ui::TAlign::alClient);
      frame->Handle();
    }
    return frame;
  }
  ui::TWinControl* parent = nullptr;  // where views are shown; none: views stay windowless
  std::vector<INTAWelcomePageContentPluginCreator*> creators;
  std::vector<ULONG> references;  // the counts AddRef and Release gave back
  std::vector<std::wstring> unregistered, captions;
};

// Calls an entry point of the loaded package.
template <class R = void>
R Call(HMODULE module, const char* name) {
  return reinterpret_cast<R (*)()>(reinterpret_cast<void*>(GetProcAddress(module, name)))();
}

TEST_F(SpineFrame, PackageRegistersBuildsViewsAndItsLastStopEndsTheDockedCompanion) {
  SetProgramLocation(L"Z:\\nowhere\\NOXPlugIn.exe");
  FakeWelcomePage page;
  WelcomePagePluginService = &page;
  HMODULE module = LoadLibraryW(kPackage.c_str());
  ASSERT_NE(module, nullptr);
  // The package describes itself to the IDE's loader and in its version record.
  const auto* info = Call<const TPackageInfoTable*>(module, "GetPackageInfoTable");
  EXPECT_STREQ(info->PackageName, L"WNOXD13_64");
  const std::wstring description = L"--- Quillmark Noxdesk PlugIn f\u00fcr Delphi 13 64 Bit Welcome Page";
  EXPECT_EQ(info->Description, description);
  EXPECT_EQ(std::vector<std::wstring>(info->Requires, info->Requires + info->RequiresCount),
            (std::vector<std::wstring>{L"designide370", L"vcl370", L"rtl370"}));
  std::vector<std::wstring> names;
  for (int i = 0; i < info->UnitCount; ++i) names.push_back(info->Units[i].Name);
  EXPECT_EQ(names, (std::vector<std::wstring>{L"WNOXD13_64", L"NOXEData", L"Qm_tools",
                                               L"QMMessageDlgVCL", L"SysInit", L"DVersion",
                                               L"WNOXView", L"WNOXConstants", L"WNOXCreator"}));
  std::vector<char> version(GetFileVersionInfoSizeW(kPackage.c_str(), nullptr));
  ASSERT_TRUE(GetFileVersionInfoW(kPackage.c_str(), 0, static_cast<DWORD>(version.size()),
                                  version.data()));
  wchar_t* text = nullptr;
  UINT length = 0;
  ASSERT_TRUE(VerQueryValueW(version.data(), L"\\StringFileInfo\\040704B0\\FileDescription",
                             reinterpret_cast<void**>(&text), &length));
  EXPECT_EQ(std::wstring(text), description);

  Call(module, "Initialize");
  Call(module, "Initialize");
  Call(module, "Register");
  ASSERT_EQ(page.creators.size(), 1u);
  INTAWelcomePageContentPluginCreator* creator = page.creators[0];
  // The package holds a reference of its own, as COM does, released last.
  EXPECT_EQ(page.references, std::vector<ULONG>{2});
  EXPECT_EQ(creator->GetPluginID(), u"WNOX");
  EXPECT_EQ(creator->GetPluginName(), u"Noxdesk");
  EXPECT_EQ(creator->GetView(), nullptr);
  EXPECT_EQ(creator->GetIconIndex(), 2);

  ui::TFrame* view = creator->CreateView();
  ASSERT_NE(view, nullptr);
  EXPECT_EQ(creator->CreateView(), view);
  auto* caption = dynamic_cast<FakeCaptionFrame*>(view);
  ASSERT_NE(caption, nullptr);
  EXPECT_EQ(page.captions, std::vector<std::wstring>{L"Noxdesk"});
  ASSERT_EQ(caption->clients.size(), 2u);
  EXPECT_NE(caption->clients[0], caption->clients[1]);
  EXPECT_EQ(creator->GetIconIndex(), 3);
  creator->DestroyView();
  creator->DestroyView();
  EXPECT_EQ(creator->GetView(), nullptr);

  // A view in a window docks the companion (started inside the timer run, which then docks).
  SetProgramLocation(kCompanion);
  page.parent = form_.get();
  form_->Show();
  ASSERT_NE(creator->CreateView(), nullptr);
  ASSERT_TRUE(PumpUntil([] { return !NoCompanionRuns(); }, 20000));

  // The first Finalize of two only counts; the second unregisters "WNOX" and ends the program.
  Call(module, "Finalize");
  EXPECT_TRUE(page.unregistered.empty());
  Call(module, "Finalize");
  EXPECT_EQ(page.unregistered, std::vector<std::wstring>{L"WNOX"});
  EXPECT_EQ(page.references, (std::vector<ULONG>{2, 1})) << "the package's own is released last";
  EXPECT_TRUE(PumpUntil(NoCompanionRuns, 10000));

  // Once the Welcome Page is gone, a start and stop of the package asks nothing of it.
  WelcomePagePluginService = nullptr;
  Call(module, "Initialize");
  Call(module, "Finalize");
  FreeLibrary(module);
}

}  // namespace
