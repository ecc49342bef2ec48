// The IDE's side of the package interface as the development host plays it: the services
// object behind BorlandIDEServices (theming and actions), the Welcome Page plug-in
// service and the caption frame it makes. The window that shows the pages is
// mainform.h; what is logged here is what a package did to the IDE.
#pragma once

#include <functional>
#include <string>
#include <vector>

#include "ide/ToolsAPI.h"
#include "ide/WelcomePage.h"
#include "ui/extctrls.h"
#include "ui/forms.h"

namespace devhost {

using ToolsAPI::TColor;
using ToolsAPI::WelcomePage::INTAWelcomePageContentPluginCreator;

// The IDE style the host shows when theming is on.
constexpr TColor kStyleWindowColor = 0x00F4F0EE;
constexpr TColor kStyleBtnFaceColor = 0x00E8E2DE;

// Reference counting that frees nothing: the host's service objects live as long as the
// host, and the count only shows whether a package gave back what it took.
class TStaticUnknown {
 protected:
  ULONG AddRefImpl() { return static_cast<ULONG>(InterlockedIncrement(&references_)); }
  ULONG ReleaseImpl() { return static_cast<ULONG>(InterlockedDecrement(&references_)); }

 public:
  LONG References() const { return references_; }

 private:
  LONG references_ = 0;
};

// BorlandIDEServices: one object that answers for all the IDE's services, as the IDE's
// own does.
class TIDEServices final : public ToolsAPI::IBorlandIDEServices,
                           public ToolsAPI::IOTAIDEThemingServices,
                           public ToolsAPI::IOTAActionServices,
                           public ToolsAPI::TCustomStyleServices,
                           public TStaticUnknown {
 public:
  explicit TIDEServices(bool themingEnabled) : themingEnabled_(themingEnabled) {}

  // Tells the user what a package asked for (the host's status line).
  std::function<void(const std::wstring&)> OnStatus;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return AddRefImpl(); }
  ULONG STDMETHODCALLTYPE Release() override { return ReleaseImpl(); }

  bool IDEThemingEnabled() override { return themingEnabled_; }
  ToolsAPI::TCustomStyleServices* StyleServices() override { return this; }
  // The active style: with theming, the host's light style; without, the system's colours.
  TColor GetSystemColor(TColor color) override;

  bool CloseFile(const wchar_t* fileName) override;
  bool OpenFile(const wchar_t* fileName) override;
  // Logged and shown; the host has no projects to open, so it only reports the request.
  bool OpenProject(const wchar_t* projName, bool newProjGroup) override;
  bool ReloadFile(const wchar_t* fileName) override;
  bool SaveFile(const wchar_t* fileName) override;

 private:
  bool NotImplemented(const wchar_t* action, const wchar_t* fileName);
  bool themingEnabled_;
};

// The frame the service wraps a plug-in's page in: its caption on a bar at the top, the
// client frame filling the rest. Its lifetime is its owner's business (the creator frees
// it), so its interface is not reference counted, as the framework's components' are not.
class TCaptionFrame final : public ui::TFrame,
                            public ToolsAPI::WelcomePage::INTAWelcomePageCaptionFrame {
 public:
  TCaptionFrame(std::wstring pluginID, const std::wstring& caption, TColor color);

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return 1; }
  ULONG STDMETHODCALLTYPE Release() override { return 1; }
  void SetClientFrame(ui::TFrame* frame) override;

  ui::TFrame* ClientFrame() const { return client_; }

 protected:
  void CreateParamsFor(CreateParams& params) override;
  void RemoveControl(ui::TControl* control) override;

 private:
  std::wstring pluginID_;
  ui::TPanel* captionBar_;
  ui::TFrame* client_ = nullptr;
};

// WelcomePagePluginService: the registered content plug-ins, in order of registration.
class TWelcomePageService final : public ToolsAPI::WelcomePage::INTAWelcomePagePluginService,
                                  public TStaticUnknown {
 public:
  struct TPlugin {
    std::wstring id;
    std::wstring name;
    INTAWelcomePageContentPluginCreator* creator;  // one reference held
  };

  explicit TWelcomePageService(TColor pageColor) : pageColor_(pageColor) {}

  const std::vector<TPlugin>& Plugins() const { return plugins_; }
  // The plug-in of that ID, or null.
  const TPlugin* Find(const std::wstring& id) const;
  // Drops the plug-ins a package left registered, destroying their views first; called
  // before the package's code goes away.
  void ReleaseAll();

  // The list of plug-ins changed.
  std::function<void()> OnPluginsChanged;
  // The plug-in's view is about to be destroyed: whoever shows it must let go of it.
  std::function<void(const TPlugin&)> OnViewDestroying;

  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override;
  ULONG STDMETHODCALLTYPE AddRef() override { return AddRefImpl(); }
  ULONG STDMETHODCALLTYPE Release() override { return ReleaseImpl(); }

  void RegisterPluginCreator(INTAWelcomePageContentPluginCreator* creator) override;
  void UnRegisterPlugin(const wchar_t* pluginID) override;
  ui::TFrame* CreateCaptionFrame(const wchar_t* pluginID, const wchar_t* caption,
                                 ui::TFrame* clientFrame) override;

  // Destroys the plug-in's view, if it has one, after OnViewDestroying.
  void DestroyView(const TPlugin& plugin);

 private:
  // Destroys the view and gives the reference back; logs what the creator still counts.
  void Drop(const TPlugin& plugin, const wchar_t* how);
  std::vector<TPlugin> plugins_;
  TColor pageColor_;
};

}  // namespace devhost
