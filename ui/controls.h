// The component and control model over real Win32 windows: ownership (an owner frees what
// it owns), parents and children (a parent frees its children), bounds kept in step with
// the windows, align layout, and one window procedure per windowed control. Controls
// without a window (TGraphicControl) are painted and clicked through their parent.
// Windows build only; the layout rule itself is pure (ui/align.h).
//
// Every module that links the library has its own copy of it, and objects of one copy own
// and parent objects of the other (the package's frame sits in the host's frame). So an
// object reaches its owner, parent and children through virtual functions only (plain
// fields of theirs are read directly: both copies are built from this header), and a
// window finds its object through GWLP_USERDATA, never through a table of the process.
#pragma once

#include <windows.h>

#include <cstdint>
#include <functional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "rtl/classes.h"
#include "rtl/filer.h"
#include "rtl/handles.h"
#include "ui/align.h"
#include "ui/graphics.h"
#include "ui/persist_rules.h"

namespace ui {

// Messages the library sends to its own windows, at the framework's numbers.
constexpr UINT CM_BASE = 0xB000;
constexpr UINT CM_RELEASE = CM_BASE + 33;
// A parent hands a child's notification (WM_COMMAND...) back to the child as CN_xxx.
constexpr UINT CN_BASE = 0xBC00;
constexpr UINT CN_COMMAND = CN_BASE + WM_COMMAND;

// Owns the components created with it as owner and frees them, newest first, when freed.
// Raised for a request the object cannot fulfil in its state.
class EInvalidOperation : public rtl::Exception {
 public:
  using rtl::Exception::Exception;
};

class TComponent : public TObject {
 public:
  explicit TComponent(TComponent* owner);
  ~TComponent() override;
  TComponent(const TComponent&) = delete;
  TComponent& operator=(const TComponent&) = delete;

  TComponent* Owner() const { return owner_; }
  int ComponentCount() const { return static_cast<int>(components_.size()); }
  TComponent* Components(int index) const { return components_[static_cast<size_t>(index)]; }
  // The owned component of that name (ASCII case ignored), or null.
  TComponent* FindComponent(std::u16string_view name) const;

  std::u16string Name;
  std::intptr_t Tag = 0;

  // Streaming in the framework's binary format (ui/persist.h). A class writes the
  // properties it stores after its base's, those at their default values left out, and
  // takes one that was read and checked (ui/persist_rules.h); false: it has no such
  // property.
  virtual void WriteProperties(rtl::TWriter& writer);
  virtual bool ReadProperty(const TPropertyValue& value);
  // The components written inside this one when `root` is streamed.
  virtual void GetChildren(const std::function<void(TComponent*)>& proc, TComponent* root);
  // Whether the component lives inside another one (a control in its parent), so that it
  // is written there rather than as one of its owner's loose components.
  virtual bool HasParent() const { return false; }
  // Puts a component just read into `parent`, where it belongs; null takes it out of the
  // one it is in. Raises EInvalidOperation where that would put it inside itself.
  virtual void SetParentComponent(TComponent* /*parent*/) {}
  // The component it lives inside, or null.
  virtual TComponent* GetParentComponent() const { return nullptr; }

 protected:
  // Bookkeeping of the owner, called by a component as it arrives and as it goes.
  virtual void InsertComponent(TComponent* component);
  virtual void RemoveComponent(TComponent* component);
  // True once destruction has begun: nothing is laid out or painted any more.
  bool Destroying() const { return destroying_; }
  bool destroying_ = false;

 private:
  TComponent* owner_ = nullptr;
  std::vector<TComponent*> components_;
};

class TWinControl;
class TCustomForm;
class TPopupMenu;

enum class TMouseButton { mbLeft, mbRight, mbMiddle };
using enum TMouseButton;

// Keys and mouse buttons held while an input event happened.
enum class TShiftStateItem { ssShift, ssAlt, ssCtrl, ssLeft, ssRight, ssMiddle };
using enum TShiftStateItem;
using TShiftState = std::set<TShiftStateItem>;
// The state of the keyboard and of the mouse buttons now.
TShiftState KeyboardShiftState();

// X and Y are in the client coordinates of the control that raises the event.
using TMouseEvent = std::function<void(TObject* sender, TMouseButton button, TShiftState shift,
                                       int x, int y)>;
using TMouseMoveEvent = std::function<void(TObject* sender, TShiftState shift, int x, int y)>;
// A handler may set Key to 0 to swallow it.
using TKeyEvent = std::function<void(TObject* sender, WORD& key, TShiftState shift)>;
using TKeyPressEvent = std::function<void(TObject* sender, char16_t& key)>;

// The mouse pointer shown over a control, at the framework's numbers; a number of a
// cursor the framework registers itself (crDrag...) or of a program's own shows the arrow.
enum class TCursor : std::int16_t {
  crDefault = 0, crNone = -1, crArrow = -2, crCross = -3, crIBeam = -4, crSizeNESW = -6,
  crSizeNS = -7, crSizeNWSE = -8, crSizeWE = -9, crUpArrow = -10, crHourGlass = -11,
  crNo = -18, crAppStart = -19, crHelp = -20, crHandPoint = -21, crSizeAll = -22
};
using enum TCursor;

// The edges of its parent a control keeps its distance to. The layout here keeps every
// control where it is placed whatever its anchors, and keeps them for the code and the
// files that state them.
enum class TAnchorKind { akLeft, akTop, akRight, akBottom };
using enum TAnchorKind;
using TAnchors = std::set<TAnchorKind>;

// Parts of a control that a style may draw; this system draws no styles and keeps the set
// for the code that states it.
enum class TStyleElement { seFont, seClient, seBorder };
using enum TStyleElement;
using TStyleElements = std::set<TStyleElement>;

// The smallest and largest size a control should take; 0 means no limit. The window
// routines of the tool library read them when they restore a saved size.
struct TSizeConstraints {
  int MinWidth = 0, MinHeight = 0, MaxWidth = 0, MaxHeight = 0;
};

// A control: bounds in its parent's client coordinates, alignment, visibility, colour and
// font. The plain fields (Color, Font, Margins...) are read at each paint and layout;
// after changing them on a control already shown, call Invalidate() or the parent's
// Realign().
class TControl : public TComponent {
 public:
  explicit TControl(TComponent* owner);
  ~TControl() override;

  TWinControl* Parent() const { return parent_; }
  // Moves the control into `parent` (null: out of any), creating its window there when
  // the parent has one already.
  virtual void SetParent(TWinControl* parent);

  int Left() const { return bounds_.Left; }
  int Top() const { return bounds_.Top; }
  int Width() const { return bounds_.Width(); }
  int Height() const { return bounds_.Height(); }
  TRect BoundsRect() const { return bounds_; }
  virtual void SetBounds(int left, int top, int width, int height);
  void SetLeft(int left) { SetBounds(left, Top(), Width(), Height()); }
  void SetTop(int top) { SetBounds(Left(), top, Width(), Height()); }
  void SetWidth(int width) { SetBounds(Left(), Top(), width, Height()); }
  void SetHeight(int height) { SetBounds(Left(), Top(), Width(), height); }

  TAlign Align() const { return align_; }
  void SetAlign(TAlign align);
  TAnchors Anchors{akLeft, akTop};
  bool AlignWithMargins = false;
  TMargins Margins;
  TSizeConstraints Constraints;

  bool Visible() const { return visible_; }
  virtual void SetVisible(bool visible);
  void Show() { SetVisible(true); }
  void Hide() { SetVisible(false); }
  bool Enabled() const { return enabled_; }
  virtual void SetEnabled(bool enabled);
  const std::u16string& Caption() const { return caption_; }
  virtual void SetCaption(const std::u16string& caption);

  TColor Color = clBtnFace;
  bool ParentColor = true;  // true: the parent's colour is shown instead of Color
  TFont Font;
  bool ParentFont = true;  // true: the parent's font is used instead of Font
  TStyleElements StyleElements{seFont, seClient, seBorder};
  TCursor Cursor = crDefault;
  // The text a tooltip or status line shows for the control; the control does not show it,
  // and no tooltip shows it yet: ShowHint and ParentShowHint are kept for the code that
  // states them.
  std::u16string Hint;
  bool ShowHint = false;
  bool ParentShowHint = true;
  // Shown on a right click (or the context-menu key) over the control.
  TPopupMenu* PopupMenu = nullptr;
  TNotifyEvent OnClick;
  TMouseEvent OnMouseDown;
  TMouseEvent OnMouseUp;
  TMouseMoveEvent OnMouseMove;
  TNotifyEvent OnMouseEnter;
  TNotifyEvent OnMouseLeave;

  // The colour and font the control shows: its own, or its parent's.
  virtual TColor ResolvedColor() const;
  virtual TFont ResolvedFont() const;
  // A GDI font for ResolvedFont(), kept by the control until the font changes.
  HFONT FontHandle();
  // Asks for the control to be painted again.
  virtual void Invalidate();
  // What a click does: OnClick.
  virtual void Click();
  // What the mouse does over the control; x and y in its client coordinates.
  virtual void MouseDown(TMouseButton button, TShiftState shift, int x, int y);
  virtual void MouseUp(TMouseButton button, TShiftState shift, int x, int y);
  virtual void MouseMove(TShiftState shift, int x, int y);
  virtual void MouseEnter();
  virtual void MouseLeave();
  // Converts between the control's client coordinates and the screen's.
  POINT ClientToScreen(POINT p) const;
  POINT ScreenToClient(POINT p) const;

  // The control as a windowed one, or null for a control its parent paints.
  virtual TWinControl* AsWinControl() { return nullptr; }

  // The pixel density, in dots per inch, that the control's sizes are in: 96, as designed,
  // until its form is shown on a monitor of another density in a process that is aware of
  // densities, or it is placed in a control that is at another.
  int CurrentPPI() const { return ppi_; }
  // Brings the control's pixel sizes (bounds, margins, constraints, its own font) from
  // CurrentPPI() to `ppi`; a windowed control brings its children along.
  virtual void ScaleForPPI(int ppi);

  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;
  bool HasParent() const override { return true; }
  // The two parts of WriteProperties, for a class that stores something between them
  // (a label's AutoSize must be read before its Caption).
  void WriteBoundsProperties(rtl::TWriter& writer);
  void WriteOtherProperties(rtl::TWriter& writer);
  void SetParentComponent(TComponent* parent) override;
  TComponent* GetParentComponent() const override;

 protected:
  friend class TWinControl;
  // Paints a control without a window, with the origin at its top left corner.
  virtual void Paint(HDC /*dc*/) {}
  // Has the parent lay its children out again when this one's place there changed.
  void RequestAlign();
  // Takes the colour, font and visibility settings the control has now as those its class
  // starts with, so that only a change from them is stored. A constructor that changes
  // them calls it.
  virtual void KeepDefaults();
  struct TDefaults {
    TColor Color = clBtnFace;
    bool ParentColor = true;
    bool ParentFont = true;
    bool Visible = true;
  };
  TDefaults defaults_;

  // Scales what the class holds in pixels from `from` to `to` dots per inch; a class with
  // pixel sizes of its own adds them.
  virtual void ChangeScale(int to, int from);

  TRect bounds_{0, 0, 0, 0};
  int ppi_ = 96;
  TWinControl* parent_ = nullptr;
  TAlign align_ = alNone;
  bool visible_ = true;
  bool enabled_ = true;
  std::u16string caption_;

 private:
  rtl::unique_hfont fontHandle_;
  TFont fontOfHandle_;
};

// The density a window of this process is drawn at: the window's monitor's in a process
// that is aware of densities, else 96 (the system stretches the window).
int WindowPPI(HWND window);

// A control drawn by its parent, in the parent's window (images, labels, shapes).
class TGraphicControl : public TControl {
 public:
  explicit TGraphicControl(TComponent* owner);
  void SetBounds(int left, int top, int width, int height) override;
  void SetVisible(bool visible) override;
  void Invalidate() override;
};

// A control with a window of its own. The window is made when Handle() is first asked
// for (the parent's window first), with the windows of all windowed children, and is
// destroyed with the control. Freeing a windowed control frees its children too.
class TWinControl : public TControl {
 public:
  explicit TWinControl(TComponent* owner);
  ~TWinControl() override;

  virtual HWND Handle();
  virtual bool HandleAllocated() const { return static_cast<bool>(handle_); }
  // A window not made by the library to live in (the parent must then be null).
  HWND ParentWindow() const { return parentWindow_; }
  void SetParentWindow(HWND parent);

  int ControlCount() const { return static_cast<int>(controls_.size()); }
  TControl* Controls(int index) const { return controls_[static_cast<size_t>(index)]; }
  // The client area: the window's when there is one, else the bounds' size.
  virtual TRect ClientRect() const;
  int ClientWidth() const { return ClientRect().Width(); }
  int ClientHeight() const { return ClientRect().Height(); }

  void SetParent(TWinControl* parent) override;
  void ScaleForPPI(int ppi) override;
  void SetBounds(int left, int top, int width, int height) override;
  void SetVisible(bool visible) override;
  void SetEnabled(bool enabled) override;
  void SetCaption(const std::u16string& caption) override;
  void Invalidate() override;
  TWinControl* AsWinControl() override { return this; }
  void GetChildren(const std::function<void(TComponent*)>& proc, TComponent* root) override;
  // The control as a form, or null.
  virtual TCustomForm* AsForm() { return nullptr; }
  void WriteProperties(rtl::TWriter& writer) override;
  bool ReadProperty(const TPropertyValue& value) override;

  // Lays the aligned children out in the client area again.
  virtual void Realign();
  // Holds layout back while many children change; the last EnableAlign lays them out.
  void DisableAlign() { ++alignDisabled_; }
  void EnableAlign();
  // Repaints part of the client area (a child without a window asks for its own).
  virtual void InvalidateArea(const TRect& area);
  // The colour that shows behind the children: the parent's when ParentBackground.
  virtual TColor BackgroundColor() const;

  bool ParentBackground = true;
  // The place in the tab order that the designer numbered; the keyboard here moves between
  // the windows in the order they were made, and the number is kept for the code and the
  // files that state it.
  int TabOrder = -1;
  TNotifyEvent OnResize;
  // Keys reach the focused control; its form sees them first when it has KeyPreview.
  TKeyEvent OnKeyDown;
  TKeyEvent OnKeyUp;
  TKeyPressEvent OnKeyPress;

  // Every message of the control's window passes here first; what is not handled goes on
  // to DefaultHandler. Overrides call the base for what they leave.
  virtual LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam);

 protected:
  friend class TControl;
  struct CreateParams {
    std::wstring className;  // registered for this module, unless systemClass
    DWORD style = WS_CHILD | WS_CLIPCHILDREN | WS_CLIPSIBLINGS;
    DWORD exStyle = 0;
    UINT classStyle = CS_DBLCLKS;
    bool systemClass = false;  // "BUTTON", "STATIC"...: made as is, then subclassed
    HWND wndParent = nullptr;  // the owner of a top-level window
    int x = 0, y = 0, width = 0, height = 0;
  };
  // The window to make; overrides set their class name and styles on top of the base's.
  virtual void CreateParamsFor(CreateParams& params);
  // Makes the window itself (children are made by Handle afterwards).
  virtual void CreateWnd();
  void DestroyHandle();
  // The window's default procedure: DefWindowProc, or the system class's.
  LRESULT DefaultHandler(UINT msg, WPARAM wParam, LPARAM lParam);
  // The size of the window changed: OnResize.
  virtual void Resize();
  // Takes off the client area what the control draws at its edges (a bevel).
  virtual void AdjustClientRect(TRect& /*rect*/) const {}
  // Paints the window's own content before the children without a window are painted.
  virtual void PaintWindow(HDC /*dc*/) {}
  virtual void InsertControl(TControl* control);
  virtual void RemoveControl(TControl* control);
  // A child moved, resized, appeared or went; a container that depends on where its
  // children are (a scroll box) overrides this.
  virtual void ControlBoundsChanged(TControl* /*control*/) {}
  // What the key events do: OnKeyDown, OnKeyUp, OnKeyPress. The window procedure shows a
  // key to the control's form first when that previews keys.
  virtual void KeyDown(WORD& key, TShiftState shift);
  virtual void KeyUp(WORD& key, TShiftState shift);
  virtual void KeyPress(char16_t& key);
  void KeepDefaults() override;

  std::vector<TControl*> controls_;
  bool parentBackgroundDefault_ = true;

 private:
  static LRESULT CALLBACK MainWndProc(HWND window, UINT msg, WPARAM wParam, LPARAM lParam);
  // The window ended by itself (its parent window went): forget it without destroying.
  void WindowGone(HWND window);
  void UpdateBounds();
  void PaintHandler();
  void EraseBackground(HDC dc);
  TControl* GraphicControlAt(int x, int y) const;
  // The mouse messages: routed to the windowless child under the pointer or holding the
  // capture, else to this control.
  void MouseMessage(UINT msg, WPARAM wParam, LPARAM lParam);
  bool ContextMenu(LPARAM lParam);
  bool SetCursorFor(LPARAM lParam);

  rtl::unique_hwnd handle_;
  HWND parentWindow_ = nullptr;
  WNDPROC systemProc_ = nullptr;
  TControl* pressed_ = nullptr;
  TControl* captured_ = nullptr;  // the windowless child the mouse is captured for
  bool clicked_ = false;          // the left button went down on this control itself
  bool mouseInside_ = false;
  int alignDisabled_ = 0;
  bool aligning_ = false;
};

}  // namespace ui
