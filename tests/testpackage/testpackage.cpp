// The development host's test package: plug-in "TEST" shows a coloured panel whose caption
// tells the IDE's theming, and making its view asks the IDE to open a project.
#include <windows.h>

#include <cstdio>

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
  explicit TClientFrame(ui::TComponent* owner) : ui::TFrame(owner) {
    auto* panel = new ui::TPanel(this);
    panel->BevelOuter = ui::bvNone;
    panel->Color = kPanelColor;
    panel->ParentBackground = false;
    panel->SetCaption(ThemingText());
    panel->SetAlign(ui::alClient);
    panel->SetParent(this);
  }
};

// Reference counted: the plug-in service's reference keeps it alive.
class TTestCreator final : public INTAWelcomePageContentPluginCreator {
 public:
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

  std::u16string GetPluginID() override { return u"TEST"; }
  std::u16string GetPluginName() override { return u"Test page"; }
  bool GetPluginVisible() override { return true; }

  ui::TFrame* GetView() override { return view_; }
  ui::TFrame* CreateView() override {
    if (view_ == nullptr)
      view_ = WelcomePagePluginService->CreateCaptionFrame(L"TEST", L"Test page", nullptr);
    InterfacePtr<INTAWelcomePageCaptionFrame> captionFrame;
    if (Supports(view_, IID_INTAWelcomePageCaptionFrame, &captionFrame)) {
      captionFrame->SetClientFrame(new TClientFrame(view_));
      SetIconIndex(3);
    }
    InterfacePtr<IOTAActionServices> actions;
    if (Supports(BorlandIDEServices, IID_IOTAActionServices, &actions))
      actions->OpenProject(L"C:\\Projects\\Demo\\Demo.dproj", true);
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
  LONG refs_ = 0;
  ui::TFrame* view_ = nullptr;
  int iconIndex_ = 2;
};

}  // namespace testpackage

extern "C" {

__declspec(dllexport) void Initialize() {}

__declspec(dllexport) void Register() {
  ToolsAPI::WelcomePage::WelcomePagePluginService->RegisterPluginCreator(
      new testpackage::TTestCreator);
}

__declspec(dllexport) void Finalize() {
  if (ToolsAPI::WelcomePage::WelcomePagePluginService != nullptr)
    ToolsAPI::WelcomePage::WelcomePagePluginService->UnRegisterPlugin(L"TEST");
}

}
