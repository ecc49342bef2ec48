// The object the IDE's Welcome Page knows the Noxdesk page by: it names the plug-in and
// builds and destroys the page's view, a caption frame of the IDE holding a TMainFrame.
#pragma once

#include <windows.h>

#include <string>

#include "ide/WelcomePage.h"
#include "package/wnoxcreator_api.h"

namespace ui {
class TFrame;
}

namespace WNOXCreator {

// Reference-counted: it lives as long as an interface reference to it is held (after
// PlugInStartup, the Welcome Page service's).
class WNOXCREATOR_API TWPDemoPlugInCreator final
    : public ToolsAPI::WelcomePage::INTAWelcomePageContentPluginCreator {
 public:
  TWPDemoPlugInCreator();  // icon index 2, no view yet
  virtual ~TWPDemoPlugInCreator();

  // Registers a new creator with the Welcome Page service.
  static void PlugInStartup();
  // Unregisters "WNOX", when the service is still there.
  static void PlugInFinish();

  std::u16string GetPluginID() override;
  std::u16string GetPluginName() override;
  bool GetPluginVisible() override;
  // Makes the caption frame on the first call; every call sets a new TMainFrame into it.
  ui::TFrame* CreateView() override;
  void DestroyView() override;
  ToolsAPI::WelcomePage::TGraphicArray GetIcon() override;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override;
  ULONG STDMETHODCALLTYPE Release() override;

 private:
  int GetIconIndex() override;
  void SetIconIndex(int index) override;
  ui::TFrame* GetView() override;

  ui::TFrame* FWPPluginView = nullptr;  // owned: freed by DestroyView
  int FIconIndex = 2;
  LONG refCount_ = 0;
};

// Called by the IDE once after loading the package.
WNOXCREATOR_API void Register();

WNOXCREATOR_API void Initialize();
WNOXCREATOR_API void Finalize();

}  // namespace WNOXCreator
