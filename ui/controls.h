// The framework's component and control model over real Win32 windows: ownership
// (an owner frees what it owns), parent and child controls, bounds, align layout with
// margins, and a window procedure per windowed control. Only the windows build
// compiles the Win32 side; the layout rule itself is pure (ui/align.h).
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

#include "rtl/classes.h"
#include "ui/align.h"

#ifdef _WIN32
#include <windows.h>
#else
using HWND = void*;
#endif

namespace ui {

using rtl::TObject;
using TColor = std::int32_t;
// System colours as the framework encodes them: 0xFF000000 | COLOR_xxx.
constexpr TColor clWindow = static_cast<TColor>(0xFF000005);
constexpr TColor clBtnFace = static_cast<TColor>(0xFF00000F);
constexpr TColor clWindowText = static_cast<TColor>(0xFF000008);
constexpr TColor clWhite = 0x00FFFFFF;
constexpr TColor clBlack = 0x00000000;
// A system colour resolved to 0x00BBGGRR; plain colours pass through.
TColor ColorToRGB(TColor c);

using TNotifyEvent = std::function<void(TObject* sender)>;

// Owns the components created with it as owner; frees them, newest first, when freed.
class TComponent : public TObject {
 public:
  explicit TComponent(TComponent* owner);
  ~TComponent() override;
  TComponent(const TComponent&) = delete;
  TComponent& operator=(const TComponent&) = delete;

  TComponent* Owner() const { return owner_; }
  int ComponentCount() const { return static_cast<int>(components_.size()); }
  TComponent* Components(int index) const { return components_[static_cast<size_t>(index)]; }

  std::u16string Name;
  std::intptr_t Tag = 0;

 private:
  TComponent* owner_ = nullptr;
  std::vector<TComponent*> components_;
};

class TWinControl;

struct TFont {
  std::u16string Name = u"Segoe UI";
  int Height = -12;  // negative: character height in pixels, as the framework stores it
  TColor Color = clWindowText;
};

// A control: bounds in its parent's client coordinates, alignment, visibility.
class TControl : public TComponent {
 public:
  explicit TControl(TComponent* owner);
  ~TControl() override;

  TWinControl* Parent() const { return parent_; }
  virtual void SetParent(TWinControl* parent);

  int Left() const { return bounds_.Left; }
  int Top() const { return bounds_.Top; }
  int Width() const { return bounds_.Width(); }
  int Height() const { return bounds_.Height(); }
  TRect BoundsRect() const { return bounds_; }
  virtual void SetBounds(int left, int top, int width, int height);
  void SetWidth(int w) { SetBounds(Left(), Top(), w, Height()); }
  void SetHeight(int h) { SetBounds(Left(), Top(), Width(), h); }

  TAlign Align() const { return align_; }
  void SetAlign(TAlign a);
  bool AlignWithMargins = false;
  TMargins Margins;

  bool Visible() const { return visible_; }
  virtual void SetVisible(bool v);
  bool Enabled() const { return enabled_; }
  virtual void SetEnabled(bool e);
  const std::u16string& Caption() const { return caption_; }
  virtual void SetCaption(const std::u16string& c);

  TColor Color = clBtnFace;
  TFont Font;
  TNotifyEvent OnClick;

 protected:
  TRect bounds_{0, 0, 0, 0};
  TWinControl* parent_ = nullptr;
  TAlign align_ = TAlign::alNone;
  bool visible_ = true;
  bool enabled_ = true;
  std::u16string caption_;
};

// A control with a window of its own. The window is made when Handle() is first asked
// for (the parent's first), and destroyed with the control.
class TWinControl : public TControl {
 public:
  explicit TWinControl(TComponent* owner);
  ~TWinControl() override;

  HWND Handle();
  bool HandleAllocated() const { return handle_ != nullptr; }
  int ControlCount() const { return static_cast<int>(controls_.size()); }
  TControl* Controls(int index) const { return controls_[static_cast<size_t>(index)]; }
  int ClientWidth() const { return Width(); }
  int ClientHeight() const { return Height(); }

  void SetBounds(int left, int top, int width, int height) override;
  void SetVisible(bool v) override;
  void SetEnabled(bool e) override;
  void SetCaption(const std::u16string& c) override;
  // Lays the aligned children out in the client area again.
  void Realign();

  bool ParentBackground = true;
  TNotifyEvent OnResize;

#ifdef _WIN32
  // Every message of the control's window passes here first; the default hands it on.
  virtual LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam);
#endif

 protected:
#ifdef _WIN32
  struct CreateParams {
    std::wstring className;      // a class of our own unless a system class is named
    DWORD style = WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
    DWORD exStyle = 0;
    bool systemClass = false;    // "BUTTON", "STATIC"...: subclassed, not registered
  };
  virtual void CreateParamsFor(CreateParams& params);
  LRESULT DefaultHandler(UINT msg, WPARAM wParam, LPARAM lParam);
  virtual void Resize();
  void CreateHandle();
  void DestroyHandle();
#endif
  friend class TControl;
  std::vector<TControl*> controls_;
  HWND handle_ = nullptr;
#ifdef _WIN32
  WNDPROC systemProc_ = nullptr;
#endif
};

}  // namespace ui
