// The control model with real windows and messages: layout after resizes, timers,
// ownership, clicks, overriding frames, application events, painting, scrolling, modal forms,
// list boxes, check boxes, string grids and colours.
#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "ui/appevnts.h"
#include "ui/application.h"
#include "ui/buttons.h"
#include "ui/extctrls.h"
#include "ui/forms.h"
#include "ui/graphics.h"
#include "ui/grids.h"
#include "ui/stdctrls.h"
#include "message_pump.h"

namespace {

using namespace ui;

// Where the system has the window, in its parent's client coordinates.
TRect WindowRect(HWND window) {
  RECT r;
  GetWindowRect(window, &r);
  MapWindowPoints(HWND_DESKTOP, GetParent(window), reinterpret_cast<POINT*>(&r), 2);
  return {r.left, r.top, r.right, r.bottom};
}

// A form shown without a caption and without activating it: otherwise Wine under Xvfb waits
// two seconds for a window manager whenever the form is hidden or destroyed.
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
T* Make(TComponent* owner, TWinControl* parent, TAlign align = alNone) {
  T* control = new T(owner);
  control->SetParent(parent);
  if (align != alNone) control->SetAlign(align);
  return control;
}

// A control that counts its destruction.
template <typename T>
struct Counted : T {
  Counted(TComponent* owner, int& freed) : T(owner), freed(freed) {}
  ~Counted() override { ++freed; }
  int& freed;
};

TEST(UiLayout, AlignedChildWindowsFollowTheirParentsSize) {
  auto form = ShownForm(400, 300);
  auto* frame = Make<TFrame>(form.get(), form.get(), alClient);
  auto* top = Make<TPanel>(form.get(), frame, alTop);  // raised bevel of 1
  top->SetHeight(28);
  auto* inTop = Make<TPanel>(form.get(), top, alClient);
  auto* left = Make<TPanel>(form.get(), frame, alLeft);
  left->SetWidth(97);
  auto* rest = Make<TPanel>(form.get(), frame, alClient);
  int resizes = 0;
  frame->OnResize = [&](TObject* sender) { EXPECT_EQ(sender, frame); ++resizes; };

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
  Pause(100);
  EXPECT_EQ(ticks, 0) << "a disabled timer never fires";
  for (int round = 1; round <= 2; ++round) {
    timer.SetEnabled(true);
    EXPECT_TRUE(PumpUntil([&] { return ticks == round; }, 2000));
    Pause(100);  // five more intervals: nothing more comes
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
  button->OnClick = [&](TObject* sender) { EXPECT_EQ(sender, button); ++clicks; };
  wchar_t text[32] = {};
  GetWindowTextW(button->Handle(), text, 32);
  EXPECT_EQ(std::wstring(text), L"Show PlugIn");
  SendMessageW(button->Handle(), BM_CLICK, 0, 0);
  Pause(20);
  EXPECT_EQ(clicks, 1) << "BM_CLICK";
  // Pressed and released by the mouse: a click only when released over the button.
  for (const auto& [releaseX, total] : {std::pair{10, 2}, {200, 2}}) {
    PostMessageW(button->Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(10, 10));
    PostMessageW(button->Handle(), WM_LBUTTONUP, 0, MAKELPARAM(releaseX, 10));
    Pause(20);
    EXPECT_EQ(clicks, total) << "released at " << releaseX;
  }
}

// A frame that takes WM_COPYDATA itself, as a view receiving requests does, and records the
// WM_APP messages dispatched to it.
class OverridingFrame : public TFrame {
 public:
  using TFrame::TFrame;
  std::u16string received;
  std::string arrived;
  bool mouseModeCancelled = false;

 protected:
  LRESULT WndProc(UINT msg, WPARAM wParam, LPARAM lParam) override {
    if (msg == WM_APP) arrived += std::to_string(wParam);
    if (msg == WM_CANCELMODE) mouseModeCancelled = true;
    if (msg != WM_COPYDATA) return TFrame::WndProc(msg, wParam, lParam);
    const auto* data = reinterpret_cast<const COPYDATASTRUCT*>(lParam);
    received.assign(static_cast<const char16_t*>(data->lpData), data->cbData / 2);
    return static_cast<LRESULT>(data->dwData);
  }
};

TEST(UiFrame, AnOverridingWndProcGetsItsMessagesAfterTheApplicationEvents) {
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
  EXPECT_EQ(resizes, 1) << "the rest goes on to the frame";

  // Application events see the queued messages of any loop and may swallow them.
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
  auto* frame = Make<TFrame>(form.get(), form.get(), alClient);
  frame->Color = clWindow;
  frame->ParentColor = false;
  frame->ParentBackground = false;
  auto panel = [&](int left) {
    auto* p = Make<TPanel>(form.get(), frame);
    p->SetBounds(left, 0, 100, 100);
    p->BevelOuter = bvNone;
    return p;
  };
  auto* own = panel(0);
  own->Color = clRed;
  own->ParentBackground = false;
  auto* through = panel(100);  // its clBtnFace does not show
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

  const struct {
    const char* what;
    TWinControl* control;
    int x, y;
    TColor expected;
  } cases[] = {
      {"own colour", own, 95, 5, clRed},
      {"parent's background", through, 50, 50, ColorToRGB(clWindow)},
      {"stretched picture, left half", own, 15, 30, clBlue},
      {"stretched picture, right edge", own, 58, 30, clLime},
      {"invisible picture", own, 70, 70, clRed},
  };
  for (const auto& c : cases) {
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
  auto* box = Make<TScrollBox>(form.get(), form.get(), alClient);
  box->BorderStyle = bsNone;
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

// A form moved to a monitor of another density scales what it holds from the density it
// was at, and takes the place the system suggests; controls placed in it later come at its
// density, and those with the parent's font keep sharing it.
TEST(UiForm, ANewDensityScalesTheFormAndWhatItHolds) {
  TForm form(nullptr);
  form.Position = poDesigned;
  form.BorderStyle = bsNone;
  form.SetBounds(10, 10, 400, 300);
  form.Font.Height = -12;
  auto* bar = new TPanel(&form);
  bar->SetParent(&form);
  bar->SetHeight(34);
  bar->SetAlign(alTop);
  bar->AlignWithMargins = true;
  bar->Margins = {1, 1, 1, 0};
  auto* label = new TLabel(&form);
  label->SetParent(bar);
  label->SetCaption(u"Bestätigung");
  const int labelHeight = label->Height();
  auto* shape = new TShape(bar);
  shape->SetParent(bar);
  shape->SetBounds(0, 0, 4, 4);
  shape->Pen.Width = 2;
  form.Show();
  ASSERT_EQ(form.CurrentPPI(), 96);  // this test program is not aware of densities

  RECT suggested{20, 30, 620, 480};
  SendMessageW(form.Handle(), WM_DPICHANGED, MAKEWPARAM(144, 144), reinterpret_cast<LPARAM>(&suggested));
  EXPECT_EQ(form.CurrentPPI(), 144);
  EXPECT_EQ((std::vector{form.Left(), form.Top(), form.Width(), form.Height()}),
            (std::vector{20, 30, 600, 450}));
  EXPECT_EQ(form.Font.Height, -18);
  EXPECT_EQ(bar->Height(), 51);
  EXPECT_EQ(bar->Margins, (TMargins{2, 2, 2, 0}));
  EXPECT_EQ((std::vector{bar->Left(), bar->Top(), bar->Width()}), (std::vector{2, 2, 596}));
  EXPECT_EQ((std::vector{shape->Width(), shape->Pen.Width}), (std::vector{6, 3}));
  EXPECT_GT(label->Height(), labelHeight);  // measured again in the form's larger font
  EXPECT_TRUE(label->ParentFont);
  auto* later = new TPanel(&form);
  later->SetBounds(0, 0, 100, 40);
  later->SetParent(&form);
  EXPECT_EQ((std::vector{later->Width(), later->Height(), later->CurrentPPI()}),
            (std::vector{150, 60, 144}));
}

TEST(UiForm, ModalFormSeesItsControlsKeysAndEndsWithItsResult) {
  auto form = std::make_unique<TForm>(nullptr);
  form->BorderStyle = bsNone;
  form->Position = poScreenCenter;
  form->KeyPreview = true;
  auto* panel = Make<TPanel>(form.get(), form.get(), alClient);
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
    HWND panelWindow = GetWindow(GetActiveWindow(), GW_CHILD);
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
  form->Show();
  EXPECT_THROW(form->ShowModal(), EInvalidOperation);
}

// The lines a list box window shows.
std::vector<std::wstring> WindowLines(HWND box) {
  std::vector<std::wstring> lines;
  const auto count = static_cast<int>(SendMessageW(box, LB_GETCOUNT, 0, 0));
  for (int i = 0; i < count; ++i) {
    std::wstring line(static_cast<size_t>(SendMessageW(box, LB_GETTEXTLEN, i, 0)), L'\0');
    SendMessageW(box, LB_GETTEXT, i, reinterpret_cast<LPARAM>(line.data()));
    lines.push_back(line);
  }
  return lines;
}

TEST(UiListBox, DeletedAndClearedLinesLeaveTheWindowMadeBeforeOrAfter) {
  const struct {
    const char* what;
    std::function<void(rtl::TStrings&)> change;
    std::vector<std::wstring> expected;
  } cases[] = {
      {"a line deleted", [](rtl::TStrings& s) { s.Delete(1); }, {L"Alpha", L"Gamma"}},
      {"all cleared", [](rtl::TStrings& s) { s.Clear(); }, {}},
  };
  auto form = ShownForm(200, 200);
  for (const bool windowFirst : {true, false}) {
    for (const auto& c : cases) {
      SCOPED_TRACE(std::string(c.what) + (windowFirst ? ", window made first" : ", window made after"));
      auto* box = new TListBox(form.get());
      if (windowFirst) box->SetParent(form.get());
      for (const char16_t* line : {u"Alpha", u"Beta", u"Gamma"}) box->Items().Add(line);
      c.change(box->Items());
      box->SetParent(form.get());
      EXPECT_EQ(box->Count(), static_cast<int>(c.expected.size()));
      EXPECT_EQ(WindowLines(box->Handle()), c.expected);
      delete box;
    }
  }
}

TEST(UiCheckBox, TheWindowShowsTheCheckSetBeforeOrAfterItIsMade) {
  auto form = ShownForm(200, 100);
  auto* box = new TCheckBox(form.get());
  box->SetChecked(true);
  box->SetParent(form.get());
  EXPECT_EQ(SendMessageW(box->Handle(), BM_GETCHECK, 0, 0), BST_CHECKED);
  box->SetChecked(false);
  EXPECT_EQ(SendMessageW(box->Handle(), BM_GETCHECK, 0, 0), BST_UNCHECKED);
  SendMessageW(box->Handle(), BM_CLICK, 0, 0);
  EXPECT_TRUE(box->Checked()) << "a click checks it";
}

// The protected row deletion, opened as the tools' grid helpers open it.
struct RowGrid : TStringGrid {
  using TStringGrid::DeleteRow;
  using TStringGrid::TStringGrid;
};

TEST(UiStringGrid, TheCurrentRowFollowsItsLineAndStaysWithinTheRows) {
  struct Case {
    const char* what;
    int row;
    std::function<void(RowGrid&)> change;
    int expected;
  } cases[] = {
      {"a row above it deleted", 3, [](RowGrid& g) { g.DeleteRow(1); }, 2},
      {"a row below it deleted", 2, [](RowGrid& g) { g.DeleteRow(3); }, 2},
      {"its own row deleted", 2, [](RowGrid& g) { g.DeleteRow(2); }, 2},
      {"the last row, deleted", 4, [](RowGrid& g) { g.DeleteRow(4); }, 3},
      {"rows below it cut off", 4, [](RowGrid& g) { g.SetRowCount(3); }, 2},
  };
  for (const Case& c : cases) {
    RowGrid grid(nullptr);  // five rows
    grid.SetRow(c.row);
    c.change(grid);
    EXPECT_EQ(grid.Row(), c.expected) << c.what;
  }
}

TEST(UiStringGrid, AClickPicksTheRowUnderThePointerButNeverAHeading) {
  auto form = ShownForm(400, 200);
  auto* grid = Make<TStringGrid>(form.get(), form.get());
  for (const auto& [y, row] : {std::pair{3 * 24 + 5, 3}, {5, 3}, {24 + 1, 1}}) {
    PostMessageW(grid->Handle(), WM_LBUTTONDOWN, MK_LBUTTON, MAKELPARAM(100, y));
    PostMessageW(grid->Handle(), WM_LBUTTONUP, 0, MAKELPARAM(100, y));
    Pause(20);
    EXPECT_EQ(grid->Row(), row) << "clicked at y " << y;
  }
}

TEST(UiStringGrid, PaintsEachCellInItsPlaceAndAgainAfterAChange) {
  auto form = ShownForm(400, 200);
  auto* grid = Make<TStringGrid>(form.get(), form.get());
  grid->SetBounds(0, 0, 400, 150);
  grid->ParentBackground = false;  // its own white shows where there are no cells
  grid->SetColCount(3);
  grid->SetRowCount(3);
  grid->SetRow(2);
  RedrawWindow(form->Handle(), nullptr, nullptr,
               RDW_INVALIDATE | RDW_ERASE | RDW_ALLCHILDREN | RDW_UPDATENOW);
  const COLORREF heading = GetSysColor(COLOR_BTNFACE), current = GetSysColor(COLOR_HIGHLIGHT),
                 empty = static_cast<COLORREF>(ColorToRGB(clWindow));
  auto pixel = [&](int x, int y) {
    HDC dc = GetDC(grid->Handle());
    const COLORREF p = GetPixel(dc, x, y);
    ReleaseDC(grid->Handle(), dc);
    return p;
  };
  struct {
    const char* what;
    int x, y;
    COLORREF expected;
  } cases[] = {
      {"heading row", 100, 5, heading},
      {"heading column", 5, 30, heading},
      {"a cell", 100, 30, empty},
      {"the current row", 100, 2 * 24 + 5, current},
      {"the current row's last cell", 3 * 64 - 5, 2 * 24 + 5, current},
      {"below the last row, heading column", 5, 3 * 24 + 5, empty},
      {"below the last row", 100, 3 * 24 + 5, empty},
      {"right of the last column", 3 * 64 + 5, 5, empty},
  };
  for (const auto& c : cases) EXPECT_EQ(pixel(c.x, c.y), c.expected) << c.what;
  grid->SetColCount(4);
  UpdateWindow(grid->Handle());
  EXPECT_EQ(pixel(3 * 64 + 5, 5), heading) << "a new column is drawn";
}

TEST(UiTimer, ANewIntervalTakesEffectAtOnce) {
  TTimer timer(nullptr);  // enabled, every second
  int ticks = 0;
  timer.OnTimer = [&](TObject*) { ++ticks; };
  timer.SetInterval(20);
  EXPECT_TRUE(PumpUntil([&] { return ticks >= 3; }, 600)) << ticks << " ticks";
  timer.SetInterval(0);
  const int stopped = ticks;
  Pause(100);
  EXPECT_EQ(ticks, stopped) << "an interval of 0 stops it";
}

TEST(UiApplicationEvents, AFreedListenerHearsNothingAndTheOthersGoOnHearing) {
  auto form = ShownForm(100, 100);
  int heardByFreed = 0, heardByKept = 0;
  auto* freed = new TApplicationEvents(nullptr);
  freed->OnMessage = [&](MSG& msg, bool&) { heardByFreed += msg.message == WM_APP; };
  TApplicationEvents kept(nullptr);
  kept.OnMessage = [&](MSG& msg, bool&) { heardByKept += msg.message == WM_APP; };
  delete freed;
  PostMessageW(form->Handle(), WM_APP, 0, 0);
  Application->ProcessMessages();
  EXPECT_EQ(heardByFreed, 0);
  EXPECT_EQ(heardByKept, 1);
}

TEST(UiForm, APopupAskingForTheSystemsPlaceIsCentredOnTheWorkArea) {
  RECT work;
  SystemParametersInfoW(SPI_GETWORKAREA, 0, &work, 0);
  const int left = work.left + (work.right - work.left - 300) / 2;
  const int top = work.top + (work.bottom - work.top - 200) / 2;
  for (const TPosition position : {poDefault, poDefaultPosOnly}) {
    TForm form(nullptr);
    form.BorderStyle = bsNone;
    form.Position = position;
    form.SetBounds(0, 0, 300, 200);
    RECT r;
    GetWindowRect(form.Handle(), &r);
    EXPECT_EQ((TRect{r.left, r.top, r.right, r.bottom}), (TRect{left, top, left + 300, top + 200}))
        << "position " << static_cast<int>(position);
  }
}

TEST(UiForm, ClosingTheMainFormEndsTheLoopAndClosingAnotherHidesIt) {
  for (const bool main : {true, false}) {
    SCOPED_TRACE(main ? "main form" : "another form");
    TForm form(nullptr);
    form.BorderStyle = bsNone;
    form.Position = poDesigned;
    form.SetBounds(20, 20, 100, 100);
    form.Show();
    if (main) Application->SetMainForm(&form);
    SendMessageW(form.Handle(), WM_CLOSE, 0, 0);
    Application->SetMainForm(nullptr);
    // Taken here, before the Application's loop sees it.
    MSG quit;
    EXPECT_EQ(PeekMessageW(&quit, nullptr, WM_QUIT, WM_QUIT, PM_REMOVE) != FALSE, main);
    EXPECT_EQ(IsWindowVisible(form.Handle()) != FALSE, main);
    EXPECT_EQ(form.Visible(), main);
  }
}

// A drag in progress (a splitter, a scroll bar's thumb) must not go on under a dialog.
TEST(UiForm, AModalFormCancelsTheMouseModeOfTheWindowHoldingTheMouse) {
  auto owner = ShownForm(200, 100);
  auto* frame = Make<OverridingFrame>(owner.get(), owner.get());
  SetCapture(frame->Handle());
  TForm dialog(nullptr);
  dialog.BorderStyle = bsNone;
  dialog.Position = poDesigned;
  TTimer answer(nullptr);
  answer.SetInterval(20);
  answer.OnTimer = [&](TObject*) { dialog.ModalResult = mrOk; };
  EXPECT_EQ(dialog.ShowModal(), mrOk);
  EXPECT_TRUE(frame->mouseModeCancelled);
  EXPECT_EQ(GetCapture(), nullptr);
}

TEST(UiForm, AMaximisedFormGivenNewBoundsStaysMaximisedAndRestoresToThem) {
  TForm form(nullptr);
  form.BorderStyle = bsNone;
  form.Position = poDesigned;
  form.SetBounds(20, 20, 200, 100);
  form.SetWindowState(wsMaximized);
  form.Show();
  const TRect maximised = WindowRect(form.Handle());
  ASSERT_NE(maximised, (TRect{20, 20, 220, 120}));
  form.SetBounds(50, 60, 300, 200);
  EXPECT_EQ(WindowRect(form.Handle()), maximised);
  ShowWindow(form.Handle(), SW_RESTORE);
  EXPECT_EQ(WindowRect(form.Handle()), (TRect{50, 60, 350, 260}));
}

TEST(UiScrollBox, ScrollsSidewaysAndMeasuresItsExtentFromTheUnscrolledPlace) {
  auto form = ShownForm(300, 200);
  auto* box = Make<TScrollBox>(form.get(), form.get());
  EXPECT_EQ(WindowRect(box->Handle()), (TRect{0, 0, 185, 41})) << "its own size";
  box->SetBounds(0, 0, 200, 100);
  auto* child = Make<TPanel>(form.get(), box);
  child->Margins = {0, 0, 0, 0};
  child->SetBounds(10, 10, 300, 300);
  SendMessageW(box->Handle(), WM_HSCROLL, SB_LINEDOWN, 0);
  EXPECT_EQ(box->HorzScrollPos(), 8);
  EXPECT_EQ(WindowRect(child->Handle()), (TRect{2, 10, 302, 310}));
  SendMessageW(box->Handle(), WM_VSCROLL, SB_BOTTOM, 0);
  RECT client;
  GetClientRect(box->Handle(), &client);
  const int page = client.bottom;
  EXPECT_EQ(box->VertScrollPos(), 310 - page);
  // Shorter but still beyond the page: the extent counts from where it would be unscrolled.
  child->SetHeight(250);
  EXPECT_EQ(box->VertRange(), 260);
  EXPECT_EQ(box->VertScrollPos(), 260 - page);
  EXPECT_EQ(WindowRect(child->Handle()).Bottom, page);
}

TEST(UiControl, AWindowedControlKeepsItsWindowAcrossParentsAndLosesItWithout) {
  auto form = ShownForm(300, 200);
  auto* frame = Make<TFrame>(form.get(), form.get());
  auto* panel = Make<TPanel>(form.get(), form.get());
  const HWND window = panel->Handle();
  panel->SetParent(frame);
  EXPECT_EQ(panel->Handle(), window) << "moved to another parent";
  EXPECT_EQ(GetParent(window), frame->Handle());
  panel->SetParent(nullptr);
  EXPECT_FALSE(IsWindow(window)) << "taken out of any parent";
  panel->SetParent(form.get());
  EXPECT_EQ(GetParent(panel->Handle()), form->Handle()) << "a new window in its new parent";
}

TEST(UiControl, APlainWindowedControlHasItsClassAndTheSizeAskedFor) {
  auto form = ShownForm(300, 200);
  auto* control = new TWinControl(form.get());
  control->SetBounds(5, 6, 40, 0);
  control->SetParent(form.get());
  wchar_t name[32] = {};
  GetClassNameW(control->Handle(), name, 32);
  EXPECT_EQ(std::wstring(name), L"TWinControl") << "other programs look for it by this name";
  EXPECT_EQ(WindowRect(control->Handle()), (TRect{5, 6, 45, 6})) << "no height at all";
}

TEST(UiGraphics, ArgbKeepsEachChannelInItsOwnByte) {
  EXPECT_EQ(Argb(TColor(0x563413), 0x80), 0x80133456u);  // red 13, green 34, blue 56
  EXPECT_EQ(Argb(TColor(0x0000FF), 0), 0x00FF0000u);
  EXPECT_EQ(Argb(clWhite, 255), 0xFFFFFFFFu);
}

}  // namespace
