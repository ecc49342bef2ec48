// The IDE's Welcome Page plug-in interfaces: what a content plug-in implements (its
// creator), the service it registers with, and the caption frame the service makes for
// it. Views are the framework's frames; the IDE parents and shows them, the creator owns
// and frees them.
#pragma once

#include <string>
#include <vector>

#include "ide/ToolsAPI.h"

namespace ui {
class TFrame;
class TGraphic;
}  // namespace ui

namespace ToolsAPI::WelcomePage {

using TGraphicArray = std::vector<ui::TGraphic*>;

// What the Welcome Page lists: a plug-in's identity and whether it is shown at all.
struct INTAWelcomePagePlugin : public IUnknown {
  virtual std::u16string GetPluginID() = 0;
  virtual std::u16string GetPluginName() = 0;
  virtual bool GetPluginVisible() = 0;
};

inline constexpr GUID IID_INTAWelcomePagePlugin = {
    0xF5AD5BE2, 0xDD18, 0x4802, {0xBE, 0xBA, 0x55, 0xB7, 0xA6, 0x96, 0xEB, 0xD7}};

// A plug-in with a page of its own. The IDE asks it for the view when the page is
// chosen and tells it to destroy the view when the page goes away.
struct INTAWelcomePageContentPluginCreator : public INTAWelcomePagePlugin {
  // The view made by CreateView, or null before that.
  virtual ui::TFrame* GetView() = 0;
  virtual ui::TFrame* CreateView() = 0;
  // Frees the view; harmless when there is none.
  virtual void DestroyView() = 0;
  virtual TGraphicArray GetIcon() = 0;
  virtual int GetIconIndex() = 0;
  virtual void SetIconIndex(int index) = 0;
};

inline constexpr GUID IID_INTAWelcomePageContentPluginCreator = {
    0x854E5918, 0x8AB6, 0x4D08, {0xBD, 0x32, 0x75, 0x88, 0x6F, 0xFA, 0x2C, 0xC1}};

// The IDE's frame with a caption bar above a client frame. The frame object that
// CreateCaptionFrame returns answers Supports for this interface.
struct INTAWelcomePageCaptionFrame : public IUnknown {
  // Shows `frame` below the caption, filling the rest; a previous client is hidden.
  // The frame keeps its owner; the caption frame only parents it.
  virtual void SetClientFrame(ui::TFrame* frame) = 0;
};

inline constexpr GUID IID_INTAWelcomePageCaptionFrame = {
    0x2E6BCE6D, 0x60BB, 0x42C5, {0xB2, 0x4A, 0x30, 0xC4, 0x09, 0x76, 0xF2, 0x02}};

struct INTAWelcomePagePluginService : public IUnknown {
  // Adds the plug-in to the Welcome Page; the service holds a reference to it until
  // UnRegisterPlugin.
  virtual void RegisterPluginCreator(INTAWelcomePageContentPluginCreator* creator) = 0;
  // Takes the plug-in off the page: its view is destroyed and the reference dropped.
  // An unknown ID is ignored.
  virtual void UnRegisterPlugin(const wchar_t* pluginID) = 0;
  // A new caption frame showing `caption`, with `clientFrame` (may be null) set as its
  // client. The caller owns the frame and frees it (DestroyView).
  virtual ui::TFrame* CreateCaptionFrame(const wchar_t* pluginID, const wchar_t* caption,
                                         ui::TFrame* clientFrame) = 0;
};

inline constexpr GUID IID_INTAWelcomePagePluginService = {
    0x30321689, 0x11A7, 0x491E, {0xA4, 0x0B, 0x9C, 0x5E, 0xD8, 0x1B, 0xE8, 0x32}};

// Set by the IDE before any package is loaded; null again once the Welcome Page is gone,
// so a package unloading after that has nothing to unregister from.
NOX_DESIGNIDE_API extern INTAWelcomePagePluginService* WelcomePagePluginService;

}  // namespace ToolsAPI::WelcomePage
