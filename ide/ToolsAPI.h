// The IDE's open tools interfaces that a package reaches through BorlandIDEServices: the
// theming and action services, plus Supports and an interface reference that releases
// itself. The welcome-page interfaces are in ide/WelcomePage.h. Implementations are the
// IDE's (here: devhost); a package only calls them.
//
// The interfaces are COM-shaped (IUnknown first, one GUID each) so that QueryInterface
// finds them across the module boundary. Strings go in as `const wchar_t*` and come out
// as std::u16string: both sides are built by the same compiler and share one C runtime.
#pragma once

#include <windows.h>
#include <unknwn.h>

#include <cstdint>
#include <utility>

#include "ide/designide.h"
#include "rtl/classes.h"

namespace ToolsAPI {

// A colour as the framework encodes it (0x00BBGGRR, or 0xFF000000 | COLOR_xxx for a
// system colour); the same encoding as ui::TColor.
using TColor = std::int32_t;

// The colours of the IDE's active style. Owned by the theming services.
class TCustomStyleServices {
 public:
  // The style's colour for a system colour (clWindow...); other colours come back as given.
  virtual TColor GetSystemColor(TColor color) = 0;

 protected:
  ~TCustomStyleServices() = default;
};

// The IDE itself; QueryInterface hands out its services (theming, actions, ...).
struct IBorlandIDEServices : public IUnknown {};

inline constexpr GUID IID_IBorlandIDEServices = {
    0x72407D15, 0x6BC5, 0x4E92, {0x8B, 0x96, 0x0E, 0xFD, 0x6F, 0x4C, 0xFF, 0x7D}};

struct IOTAIDEThemingServices : public IUnknown {
  // True when the IDE paints itself and its plug-ins in its own style.
  virtual bool IDEThemingEnabled() = 0;
  // The active style, valid as long as the IDE runs; never null.
  virtual TCustomStyleServices* StyleServices() = 0;
};

inline constexpr GUID IID_IOTAIDEThemingServices = {
    0xDEAD2647, 0x9B2C, 0x4084, {0xA6, 0x1E, 0x1E, 0x69, 0xA9, 0x17, 0x96, 0x37}};

// File and project actions of the IDE. Each returns whether the IDE did it.
struct IOTAActionServices : public IUnknown {
  virtual bool CloseFile(const wchar_t* fileName) = 0;
  virtual bool OpenFile(const wchar_t* fileName) = 0;
  // Opens a project; with newProjGroup the current project group is closed first.
  virtual bool OpenProject(const wchar_t* projName, bool newProjGroup) = 0;
  virtual bool ReloadFile(const wchar_t* fileName) = 0;
  virtual bool SaveFile(const wchar_t* fileName) = 0;
};

inline constexpr GUID IID_IOTAActionServices = {
    0xF17A7BC9, 0xE07D, 0x11D1, {0xAB, 0x0B, 0x00, 0xC0, 0x4F, 0xB1, 0x6F, 0xB3}};

// Set by the IDE before any package is loaded and left alone until the last is unloaded.
NOX_DESIGNIDE_API extern IBorlandIDEServices* BorlandIDEServices;

// An interface reference that holds one reference count and gives it back when it goes.
// `&ref` releases what it held and yields the slot an out-parameter fills:
//   InterfacePtr<IOTAActionServices> actions;
//   if (Supports(BorlandIDEServices, IID_IOTAActionServices, &actions)) actions->...
template <class T>
class InterfacePtr {
 public:
  InterfacePtr() = default;
  // Takes a reference of its own.
  explicit InterfacePtr(T* p) : p_(p) {
    if (p_) p_->AddRef();
  }
  InterfacePtr(const InterfacePtr& other) : InterfacePtr(other.p_) {}
  InterfacePtr(InterfacePtr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
  InterfacePtr& operator=(InterfacePtr other) noexcept {
    std::swap(p_, other.p_);
    return *this;
  }
  ~InterfacePtr() { Reset(); }

  void Reset() {
    if (T* p = std::exchange(p_, nullptr)) p->Release();
  }
  T** operator&() {
    Reset();
    return &p_;
  }
  T* Get() const { return p_; }
  T* operator->() const { return p_; }
  explicit operator bool() const { return p_ != nullptr; }

 private:
  T* p_ = nullptr;
};

// Asks `instance` for the interface `iid`; on success *intf holds it (with a reference
// the caller owns), otherwise *intf is null. A null instance supports nothing.
template <class T>
bool Supports(IUnknown* instance, REFIID iid, T** intf) {
  *intf = nullptr;
  if (instance == nullptr) return false;
  void* p = nullptr;
  if (FAILED(instance->QueryInterface(iid, &p)) || p == nullptr) return false;
  *intf = static_cast<T*>(p);
  return true;
}

// The same for an object (a frame, a component): it supports what it implements through
// IUnknown, as the framework's objects answer for the interfaces they declare.
template <class T>
bool Supports(rtl::TObject* instance, REFIID iid, T** intf) {
  return Supports(dynamic_cast<IUnknown*>(instance), iid, intf);
}

}  // namespace ToolsAPI
