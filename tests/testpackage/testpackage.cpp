// The development host's test package: plug-in "TEST" shows a coloured panel whose caption
// tells the IDE's theming, and making its view asks the IDE to open a project.
#include <windows.h>

#include <cstdio>
#include <cwchar>
#include <stdexcept>
#include <string>
#include <vector>

#include "ide/ToolsAPI.h"
#include "ide/WelcomePage.h"
#include "ui/extctrls.h"
#include "ui/forms.h"

namespace testpackage {

using namespace ToolsAPI;
using namespace ToolsAPI::WelcomePage;

constexpr ui::TColor kPanelColor = 0x00996633;

std::u16string ThemingText() {
  InterfacePtr<IOTAIDEThemingServices> theming;
  if (!Supports(BorlandIDEServices, IID_IOTAIDEThemingServices, &theming))
    return u"no theming services";
  if (!theming->IDEThemingEnabled()) return u"theming=off";
  char text[40];
  std::snprintf(text, sizeof text, "theming=on clWindow=%08X",
                static_cast<unsigned>(theming->StyleServices()->GetSystemColor(ui::clWindow)));
  return std::u16string(text, text + std::char_traits<char>::length(text));
}

class TClientFrame final : public ui::TFrame {
 public:
  TClientFrame(ui::TComponent* owner, const std::u16string& caption) : ui::TFrame(owner) {
    auto* panel = new ui::TPanel(this);
    panel->BevelOuter = ui::bvNone;
    panel->Color = kPanelColor;
    panel->ParentBackground = false;
    panel->SetCaption(caption);
    panel->SetAlign(ui::alClient);
    panel->SetParent(this);
  }
};

// Reference counted: the plug-in service's reference keeps it alive. "TEST" makes its
// caption frame first and hands it the client frame afterwards; "SECOND" hands the client
// frame over with the caption frame; "HIDDEN" is not shown in the IDE's list.
class TTestCreator final : public INTAWelcomePageContentPluginCreator {
 public:
  TTestCreator(const wchar_t* id, const wchar_t* name, bool visible)
      : id_(id), name_(name), visible_(visible) {}
  ~TTestCreator() { DestroyView(); }

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (!IsEqualIID(iid, IID_IUnknown) && !IsEqualIID(iid, IID_INTAWelcomePagePlugin) &&
        !IsEqualIID(iid, IID_INTAWelcomePageContentPluginCreator))
      return *object = nullptr, E_NOINTERFACE;
    *object = static_cast<INTAWelcomePageContentPluginCreator*>(this);
    return AddRef(), S_OK;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = InterlockedDecrement(&refs_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

  std::u16string GetPluginID() override { return U16(id_); }
  std::u16string GetPluginName() override { return U16(name_); }
  bool GetPluginVisible() override { return visible_; }

  ui::TFrame* GetView() override { return view_; }
  ui::TFrame* CreateView() override {
    InterfacePtr<IOTAActionServices> actions;
    Supports(BorlandIDEServices, IID_IOTAActionServices, &actions);
    if (id_ == std::wstring(L"TEST")) {
      if (view_ == nullptr) view_ = WelcomePagePluginService->CreateCaptionFrame(id_, name_, nullptr);
      InterfacePtr<INTAWelcomePageCaptionFrame> captionFrame;
      if (Supports(view_, IID_INTAWelcomePageCaptionFrame, &captionFrame)) {
        captionFrame->SetClientFrame(new TClientFrame(view_, ThemingText()));
        SetIconIndex(3);
      }
      if (actions) actions->OpenProject(L"C:\\Projects\\Demo\\Demo.dproj", true);
    } else if (view_ == nullptr) {
      // The panel tells what the IDE answered to a request it does not carry out.
      const bool opened = actions && actions->OpenFile(L"C:\\Projects\\Demo\\Unit1.pas");
      auto* client = new TClientFrame(nullptr,  // freed with the caption frame, its parent
                                      opened ? u"OpenFile=yes" : u"OpenFile=no");
      view_ = WelcomePagePluginService->CreateCaptionFrame(id_, name_, client);
      if (actions) actions->OpenProject(L"C:\\Projects\\Second\\Second.dproj", false);
    }
    return view_;
  }
  void DestroyView() override {
    delete view_;
    view_ = nullptr;
  }
  TGraphicArray GetIcon() override { return {}; }
  int GetIconIndex() override { return iconIndex_; }
  void SetIconIndex(int index) override { iconIndex_ = index; }

 private:
  static std::u16string U16(const wchar_t* s) { return {s, s + std::wcslen(s)}; }
  const wchar_t* id_;
  const wchar_t* name_;
  bool visible_;
  LONG refs_ = 0;
  ui::TFrame* view_ = nullptr;
  int iconIndex_ = 2;
};

// The package's creators while it is loaded, to tell the IDE at unload about a view that
// the IDE did not have destroyed.
std::vector<TTestCreator*> creators;

void Register(TTestCreator* creator) {
  creator->AddRef();  // the IDE may refuse it without taking a reference
  creators.push_back(creator);
  WelcomePagePluginService->RegisterPluginCreator(creator);
}

}  // namespace testpackage

extern "C" {

__declspec(dllexport) void Initialize() {}

// NOX_TESTPACKAGE_FAIL=Register makes registering fail as a broken package's would.
__declspec(dllexport) void Register() {
  using testpackage::Register, testpackage::TTestCreator;
  wchar_t fail[16] = {};
  GetEnvironmentVariableW(L"NOX_TESTPACKAGE_FAIL", fail, 16);
  if (std::wstring(fail) == L"Register") throw std::runtime_error("asked to fail");
  Register(new TTestCreator(L"TEST", L"Test page", true));
  Register(new TTestCreator(L"SECOND", L"Second page", true));
  Register(new TTestCreator(L"HIDDEN", L"Hidden page", false));
  Register(new TTestCreator(L"TEST", L"Test page again", true));
}

// "HIDDEN" stays registered: the IDE releases what a package leaves behind.
__declspec(dllexport) void Finalize() {
  using namespace ToolsAPI;
  if (WelcomePage::WelcomePagePluginService == nullptr) return;
  InterfacePtr<IOTAActionServices> actions;
  Supports(BorlandIDEServices, IID_IOTAActionServices, &actions);
  for (testpackage::TTestCreator* creator : testpackage::creators) {
    if (creator->GetView() != nullptr && actions) actions->CloseFile(L"view left alive");
    creator->Release();
  }
  testpackage::creators.clear();
  WelcomePage::WelcomePagePluginService->UnRegisterPlugin(L"TEST");
  WelcomePage::WelcomePagePluginService->UnRegisterPlugin(L"SECOND");
  WelcomePage::WelcomePagePluginService->UnRegisterPlugin(L"NOPE");
}

}
