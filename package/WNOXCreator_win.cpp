#include "package/WNOXCreator.h"

#include "host/WNOXView.h"
#include "package/WNOXConstants.h"
#include "rtl/unitinit.h"
#include "rtl/wide.h"
#include "ui/forms.h"

#include <utility>

namespace WNOXCreator {

using rtl::W;

using namespace ToolsAPI::WelcomePage;

namespace {
// The same ID registers the plug-in, names its view and unregisters it.
constexpr wchar_t kPluginID[] = L"WNOX";
rtl::TUnitCounter Counter;
// The package's own reference to the creator it registered, as COM holds one: the creator
// lives until unregistration whatever the service does with its reference (a service that
// refuses a duplicate takes none). Released by PlugInFinish, never by the module's
// unloading.
TWPDemoPlugInCreator* Registered = nullptr;
}  // namespace

TWPDemoPlugInCreator::TWPDemoPlugInCreator() = default;

TWPDemoPlugInCreator::~TWPDemoPlugInCreator() { DestroyView(); }

void TWPDemoPlugInCreator::PlugInStartup() {
  if (WelcomePagePluginService == nullptr) return;
  if (Registered != nullptr) std::exchange(Registered, nullptr)->Release();
  Registered = new TWPDemoPlugInCreator();
  Registered->AddRef();
  WelcomePagePluginService->RegisterPluginCreator(Registered);
}

void TWPDemoPlugInCreator::PlugInFinish() {
  if (WelcomePagePluginService != nullptr) WelcomePagePluginService->UnRegisterPlugin(kPluginID);
  if (Registered != nullptr) std::exchange(Registered, nullptr)->Release();
}

std::u16string TWPDemoPlugInCreator::GetPluginID() { return u"WNOX"; }

std::u16string TWPDemoPlugInCreator::GetPluginName() {
  return WNOXConstants::LoadResString(WNOXConstants::sPluginName);
}

bool TWPDemoPlugInCreator::GetPluginVisible() { return true; }

ui::TFrame* TWPDemoPlugInCreator::CreateView() {
  if (FWPPluginView == nullptr && WelcomePagePluginService != nullptr) {
    const std::u16string caption = WNOXConstants::LoadResString(WNOXConstants::sPluginName);
    FWPPluginView = WelcomePagePluginService->CreateCaptionFrame(
        kPluginID, W(caption), nullptr);
  }
  // Every call hands the view a fresh hosting frame, also when the view existed already.
  ToolsAPI::InterfacePtr<INTAWelcomePageCaptionFrame> captionFrame;
  if (ToolsAPI::Supports(FWPPluginView, IID_INTAWelcomePageCaptionFrame, &captionFrame)) {
    auto* frame = new WNOXView::TMainFrame(FWPPluginView);
    captionFrame->SetClientFrame(frame);
    SetIconIndex(3);
  }
  return FWPPluginView;
}

void TWPDemoPlugInCreator::DestroyView() {
  // Freeing the view frees the TMainFrames it owns, which close the companion program.
  delete FWPPluginView;
  FWPPluginView = nullptr;
}

TGraphicArray TWPDemoPlugInCreator::GetIcon() { return {}; }
int TWPDemoPlugInCreator::GetIconIndex() { return FIconIndex; }
void TWPDemoPlugInCreator::SetIconIndex(int index) { FIconIndex = index; }
ui::TFrame* TWPDemoPlugInCreator::GetView() { return FWPPluginView; }

HRESULT STDMETHODCALLTYPE TWPDemoPlugInCreator::QueryInterface(REFIID iid, void** object) {
  if (object == nullptr) return E_POINTER;
  if (iid == IID_IUnknown || iid == IID_INTAWelcomePagePlugin ||
      iid == IID_INTAWelcomePageContentPluginCreator) {
    // One method table serves all three.
    *object = static_cast<INTAWelcomePageContentPluginCreator*>(this);
    AddRef();
    return S_OK;
  }
  *object = nullptr;
  return E_NOINTERFACE;
}

ULONG STDMETHODCALLTYPE TWPDemoPlugInCreator::AddRef() {
  return static_cast<ULONG>(++refCount_);
}

ULONG STDMETHODCALLTYPE TWPDemoPlugInCreator::Release() {
  const LONG count = --refCount_;
  if (count == 0) delete this;
  return static_cast<ULONG>(count);
}

void Register() { TWPDemoPlugInCreator::PlugInStartup(); }

void Initialize() { Counter.Start(); }

void Finalize() {
  if (Counter.Stop()) TWPDemoPlugInCreator::PlugInFinish();
}

}  // namespace WNOXCreator
