// The control model with real windows and messages: layout after resizes, timers,
// ownership, clicks, messages to overriding frames, application events and painting.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>

#include "ui/appevnts.h"
#include "ui/application.h"
#include "ui/buttons.h"
#include "ui/extctrls.h"
#include "ui/forms.h"
#include "ui/stdctrls.h"
#include "message_pump.h"

namespace {

using namespace ui;

void PumpFor(DWORD ms) {
  PumpUntil([] { return false; }, ms);
}

// Where the system has the window, in its parent's client coordinates.
TRect WindowRect(HWND window) {
  RECT r;
  GetWindowRect(window, &r);
  MapWindowPoints(HWND_DESKTOP, GetParent(window), reinterpret_cast<POINT*>(&r), 2);
  return {r.left, r.top, r.right, r.bottom};
}

// A form on the screen, shown without a caption and without activating it: Wine hands
// such windows to the window manager, and under Xvfb, where there is none, it waits two
// seconds for one whenever they are hidden or destroyed.
std::unique_ptr<TForm> ShownForm(int clientWidth, int clientHeight) {
  auto form = std::make_unique<TForm>(nullptr);
  form->BorderStyle = bsNone;
  form->Position = poDesigned;
  form->SetBounds(20, 20, 100, 100);
  form->SetClientSize(clientWidth, clientHeight);
  ShowWindow(form->Handle(), SW_SHOWNOACTIVATE);
  return form;
}

template <typename T>
T* Make(TComponent* owner, TWinControl* parent) {
  T* control = new T(owner);
  control->SetParent(parent);
  return control;
}

// A control that counts its destruction.
template <typename T>
class Counted : public T {
 public:
  Counted(TComponent* owner, int& freed) : T(owner), freed_(freed) {}
  ~Counted() override { ++freed_; }

 private:
  int& freed_;
};

TEST(UiLayout, AlignedChildWindowsFollowTheirParentsSize) {
  auto form = ShownForm(400, 300);
  auto* frame = Make<TFrame>(form.get(), form.get());
  frame->SetAlign(alClient);
  auto* top = Make<TPanel>(form.get(), frame);  // raised bevel of 1
  top->SetAlign(alTop);
  top->SetHeight(28);
  auto* inTop = Make<TPanel>(form.get(), top);
  inTop->SetAlign(alClient);
  auto* left = Make<TPanel>(form.get(), frame);
  left->SetAlign(alLeft);
  left->SetWidth(97);
  auto* rest = Make<TPanel>(form.get(), frame);
  rest->SetAlign(alClient);
  int resizes = 0;
  frame->OnResize = [&](TObject* sender) {
    EXPECT_EQ(sender, frame);
    ++resizes;
  };

  struct Case {
    int width, height, resizes;
  };
  for (const Case& c : {Case{520, 260, 1}, Case{300, 410, 1}, Case{300, 410, 0}}) {
    SCOPED_TRACE(std::to_string(c.width) + "x" + std::to_string(c.height));
    resizes = 0;
    form->SetClientSize(c.width, c.height);
    const int w = c.width, h = c.height;
    const std::pair<TWinControl*, TRect> expected[] = {
        {frame, {0, 0, w, h}},  {top, {0, 0, w, 28}},   {inTop, {1, 1, w - 1, 27}},
        {left, {0, 28, 97, h}}, {rest, {97, 28, w, h}},
    };
    for (const auto& [control, rect] : expected) {
      EXPECT_EQ(WindowRect(control->Handle()), rect);
      EXPECT_EQ(control->BoundsRect(), rect);
    }
    EXPECT_EQ(resizes, c.resizes);
  }
  // A hidden child gives its space to the others, and so does one that is freed.
  top->SetVisible(false);
  EXPECT_FALSE(IsWindowVisible(top->Handle()));
  EXPECT_EQ(WindowRect(left->Handle()), (TRect{0, 0, 97, 410}));
  top->SetVisible(true);
  delete left;
  EXPECT_EQ(frame->ControlCount(), 2);
  EXPECT_EQ(WindowRect(rest->Handle()), (TRect{0, 28, 300, 410}));
}

TEST(UiTimer, FiresOncePerEnablingWhenItsHandlerTurnsItOff) {
  TTimer timer(nullptr);
  timer.SetEnabled(false);
  timer.SetInterval(20);
  int ticks = 0;
  timer.OnTimer = [&](TObject* sender) {
    EXPECT_EQ(sender, &timer);
    ++ticks;
    timer.SetEnabled(false);
  };
  PumpFor(100);
  EXPECT_EQ(ticks, 0) << "a disabled timer never fires";
  for (int round = 1; round <= 2; ++round) {
    timer.SetEnabled(true);
    EXPECT_TRUE(PumpUntil([&] { return ticks == round; }, 2000));
    PumpFor(100);  // five more intervals: nothing more comes
    EXPECT_EQ(ticks, round);
  }
}

TEST(UiOwnership, FreeingTheOwnerEndsEveryWindowAndChildBelowIt) {
  int freed = 0;
  auto form = ShownForm(300, 200);
  auto* frame = Make<TFrame>(form.get(), form.get());
  auto* panel = Make<TPanel>(frame, frame);
  // Owned by the form but inside the frame's panel; and one owned by nobody, which its
  // parent frees.
  auto* owned = new Counted<TSpeedButton>(form.get(), freed);
  owned->SetParent(panel);
  auto* unowned = new Counted<TPanel>(nullptr, freed);
  unowned->SetParent(panel);
  new Counted<TTimer>(frame, freed);
  const HWND windows[] = {form->Handle(), frame->Handle(), panel->Handle(), owned->Handle(),
                          unowned->Handle()};
  form.reset();
  for (HWND w : windows) EXPECT_FALSE(IsWindow(w));
  EXPECT_EQ(freed, 3);
}

TEST(UiSpeedButton, AClickOnTheButtonReachesOnClick) {
  auto form = ShownForm(300, 200);
  auto* button = Make<TSpeedButton>(form.get(), form.get());
  button->SetBounds(0, 0, 97, 26);
  button->SetCaption(u"Show PlugIn");
  int clicks = 0;
  button->OnClick = [&](TObject* sender) {
    EXPECT_EQ(sender, button);
    ++clicks;
  };
  wchar_t text[32] = {};
  GetWindowTextW(button->Handle(), text, 32);
  EXPECT_EQ(std::wstring(text), L"Show PlugIn");
  SendMessageW(button->Handle(), BM_CLICK, 0, 0);
  PumpFor(20);
  EXPECT_EQ(clicks, 1) << "BM_CLICK";
  PostMessageW(button->Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
  PostMessageW(button->Handle(), WM_LBUTTONUP, 0, MAKELPARAM(10, 10));
  PumpFor(20);
  EXPECT_EQ(clicks, 2) << "mouse press and release";
  PostMessageW(button->Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
  PostMessageW(button->Handle(), WM_LBUTTONUP, 0, MAKELPARAM(200, 10));
  PumpFor(20);
  EXPECT_EQ(clicks, 2) << "released outside the button";
}

// A frame that takes WM_COPYDATA itself, as a view receiving requests does, and records the
// WM_APP messages dispatched to it.
class OverridingFrame : public TFrame {
 public:
  using TFrame::TFrame;
  std::u16string received;
  std::string arrived;

 protected:
  LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam) override {
    if (msg == WM_APP) arrived += std::to_string(wParam);
    if (msg != WM_COPYDATA) return TFrame::WndProc(msg, wParam, lParam);
    const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    received.assign(static_cast<const char16_t*>(data->lpData), data->cbData / 2);
    return static_cast<LRESULT>(data->dwData);
  }
};

TEST(UiFrame, AnOverridingWndProcReceivesCopyDataAndLeavesTheRest) {
  auto form = ShownForm(300, 200);
  auto* frame = Make<OverridingFrame>(form.get(), form.get());
  int resizes = 0;
  frame->OnResize = [&](TObject*) { ++resizes; };
  std::u16string path = u"C:\\Projects\\Demo.dproj";
  COPYDATASTRUCT data{10023, static_cast<DWORD>(path.size() * 2), path.data()};
  EXPECT_EQ(SendMessageW(frame->Handle(), WM_COPYDATA, reinterpret_cast<WPARAM>(form->Handle()),
                         reinterpret_cast<LPARAM>(&data)),
            10023);
  EXPECT_EQ(frame->received, path);
  frame->SetWidth(150);
  EXPECT_EQ(resizes, 1);
}

TEST(UiApplicationEvents, OnMessageSeesQueuedMessagesOfAnyLoopAndMaySwallowThem) {
  auto form = ShownForm(100, 100);
  auto* frame = Make<OverridingFrame>(form.get(), form.get());
  std::string seenFirst, seenLast;
  auto* first = new TApplicationEvents(form.get());
  first->OnMessage = [&](MSG& msg, bool&) {
    if (msg.message == WM_APP) seenFirst += std::to_string(msg.wParam);
  };
  auto* last = new TApplicationEvents(form.get());
  last->OnMessage = [&](MSG& msg, bool& handled) {
    if (msg.message != WM_APP) return;
    seenLast += std::to_string(msg.wParam);
    handled = msg.wParam == 2;  // heard by the older one too, but kept from the window
  };
  const std::pair<const char*, std::function<void()>> loops[] = {
      {"the Application's", [] { Application->ProcessMessages(); }},
      {"a plain loop, as another module runs it",
       [] {
         MSG msg;
         while (PeekMessageW(&msg, nullptr, 0, 0, PM_REMOVE)) DispatchMessageW(&msg);
       }},
  };
  for (const auto& [name, pump] : loops) {
    SCOPED_TRACE(name);
    seenFirst = seenLast = frame->arrived = "";
    for (WPARAM w : {1, 2, 3}) PostMessageW(frame->Handle(), WM_APP, w, 0);
    pump();
    EXPECT_EQ(seenLast, "123");
    EXPECT_EQ(seenFirst, "123");
    EXPECT_EQ(frame->arrived, "13");
  }
  delete last;
  delete first;
  PostMessageW(frame->Handle(), WM_APP, 4, 0);
  Application->ProcessMessages();
  EXPECT_EQ(frame->arrived, "134") << "no listener left, nothing swallowed";
}

TEST(UiPaint, ControlsShowTheirColourThePickedBackgroundAndTheirPicture) {
  auto form = ShownForm(300, 200);
  auto* frame = Make<TFrame>(form.get(), form.get());
  frame->SetAlign(alClient);
  frame->Color = clWindow;
  frame->ParentColor = false;
  frame->ParentBackground = false;
  auto* own = Make<TPanel>(form.get(), frame);
  own->SetBounds(0, 0, 100, 100);
  own->BevelOuter = bvNone;
  own->Color = clRed;
  own->ParentBackground = false;
  auto* through = Make<TPanel>(form.get(), frame);  // its clBtnFace does not show
  through->SetBounds(100, 0, 100, 100);
  through->BevelOuter = bvNone;
  auto* image = Make<TImage>(form.get(), own);
  image->SetBounds(10, 10, 49, 49);
  image->Stretch = true;
  image->Picture.Assign(CreateDib24(48, 48, [](int x, int) { return x < 24 ? clBlue : clLime; }));
  auto* hidden = Make<TImage>(form.get(), own);
  hidden->SetBounds(60, 60, 30, 30);
  hidden->Picture.Assign(CreateDib24(4, 4, [](int, int) { return clBlack; }));
  hidden->SetVisible(false);
  RedrawWindow(form->Handle(), nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);

  struct Case {
    const char* what;
    TWinControl* control;
    int x, y;
    TColor expected;
  };
  const Case cases[] = {
      {"own colour", own, 95, 5, clRed},
      {"parent's background", through, 50, 50, ColorToRGB(clWindow)},
      {"stretched picture, left half", own, 15, 30, clBlue},
      {"stretched picture, right edge", own, 58, 30, clLime},
      {"invisible picture", own, 70, 70, clRed},
  };
  for (const Case& c : cases) {
    HDC dc = GetDC(c.control->Handle());
    EXPECT_EQ(GetPixel(dc, c.x, c.y), static_cast<COLORREF>(c.expected)) << c.what;
    ReleaseDC(c.control->Handle(), dc);
  }
}

TEST(UiLabel, AutoSizeFollowsTheTextWrappedOrNot) {
  auto form = ShownForm(300, 200);
  auto* label = Make<TLabel>(form.get(), form.get());
  label->SetBounds(10, 10, 120, 17);
  label->SetCaption(u"one two three four five six seven eight nine ten");
  const int oneLine = label->Height();
  EXPECT_GT(label->Width(), 120) << "unwrapped text takes its own width";
  label->SetWordWrap(true);
  label->SetWidth(120);
  label->AdjustBounds();
  EXPECT_LE(label->Width(), 120);
  EXPECT_GE(label->Height(), 3 * oneLine) << "wrapped at the width";
  EXPECT_EQ(label->Left(), 10);
  // Prefixes: "&&" is one character shown; without the rule it is two.
  label->SetWordWrap(false);
  label->SetCaption(u"&&&&&&&&");
  const int shown = label->Width();
  label->SetShowAccelChar(false);
  EXPECT_GT(label->Width(), shown);
  label->SetCaption(u"");
  EXPECT_EQ(label->Height(), oneLine) << "an empty label keeps one line";
}

TEST(UiScrollBox, ScrollsItsChildrenWithinTheirExtent) {
  auto form = ShownForm(200, 100);
  auto* box = Make<TScrollBox>(form.get(), form.get());
  box->BorderStyle = bsNone;
  box->SetAlign(alClient);
  auto* child = new TPanel(form.get());
  child->Margins.Bottom = 20;
  child->SetParent(box);
  child->SetBounds(10, 10, 50, 300);
  EXPECT_EQ(box->VertRange(), 330) << "the child's bottom and its margin";
  EXPECT_EQ(box->HorzRange(), 0);
  EXPECT_TRUE(GetWindowLongW(box->Handle(), GWL_STYLE) & WS_VSCROLL);
  const int page = box->ClientHeight();
  SendMessageW(box->Handle(), WM_VSCROLL, SB_LINEDOWN, 0);
  EXPECT_EQ(child->Top(), 10 - box->VertScrollPos());
  SendMessageW(box->Handle(), WM_VSCROLL, SB_BOTTOM, 0);
  EXPECT_EQ(box->VertScrollPos(), 330 - page) << "no further than the extent";
  EXPECT_EQ(child->BoundsRect().Bottom + 20, page);
  // A smaller child scrolls back into view.
  child->SetHeight(40);
  EXPECT_EQ(box->VertScrollPos(), 0);
  EXPECT_EQ(child->Top(), 10);
  EXPECT_EQ(box->VertRange(), 0);
}

TEST(UiForm, ModalFormSeesItsControlsKeysAndEndsWithItsResult) {
  auto form = std::make_unique<TForm>(nullptr);
  form->BorderStyle = bsNone;
  form->Position = poScreenCenter;
  form->KeyPreview = true;
  auto* panel = Make<TPanel>(form.get(), form.get());
  panel->SetAlign(alClient);
  std::string keys;
  int shown = 0;
  form->OnShow = [&](TObject*) { ++shown; };
  form->OnKeyDown = [&](TObject*, WORD& key, TShiftState) {
    keys += "form:" + std::to_string(key) + " ";
    if (key == VK_ESCAPE) key = 0;  // swallowed: the panel does not hear it
  };
  panel->OnKeyDown = [&](TObject*, WORD& key, TShiftState) {
    keys += "panel:" + std::to_string(key) + " ";
  };
  panel->OnClick = [&](TObject*) { form->ModalResult = 42; };
  UINT_PTR timer = SetTimer(nullptr, 0, 20, [](HWND, UINT, UINT_PTR id, DWORD) {
    KillTimer(nullptr, id);
    HWND active = GetActiveWindow();
    HWND panelWindow = GetWindow(active, GW_CHILD);
    SendMessageW(panelWindow, WM_KEYDOWN, 'A', 0);
    SendMessageW(panelWindow, WM_KEYDOWN, VK_ESCAPE, 0);
    PostMessageW(panelWindow, WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(5, 5));
    PostMessageW(panelWindow, WM_LBUTTONUP, 0, MAKELPARAM(5, 5));
  });
  EXPECT_EQ(form->ShowModal(), 42);
  KillTimer(nullptr, timer);
  EXPECT_EQ(keys, "form:65 panel:65 form:27 ");
  EXPECT_EQ(shown, 1);
  EXPECT_FALSE(form->Visible());
  EXPECT_FALSE(IsWindowVisible(form->Handle()));
  form->ModalResult = 0;
  EXPECT_THROW(
      {
        form->Show();
        form->ShowModal();
      },
      EInvalidOperation);
}

}  // namespace
