// Driving the message dialog in tests: scripts of steps played while its modal loop runs,
// keys and characters posted to it, and what its windows show on the screen.
#pragma once

#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "dialog/QMMessageDlgVCL.h"
#include "dialog/msgdlg_form.h"

namespace nox_dialog_test {

using namespace QMMessageDlgVCL;
using Strs = std::vector<std::u16string>;

// One step of a script; false asks for the step again at the next tick.
using TStep = std::function<bool()>;

// Plays one step a tick from a thread timer, which the dialog's modal loop dispatches. A
// script not done within 15 s closes the dialog (as cancelled) and fails the test.
struct TScript {
  explicit TScript(std::vector<TStep> s) : steps(std::move(s)) { current = this; }
  ~TScript() { KillTimer(nullptr, timer), current = nullptr; }
  static void CALLBACK Tick(HWND, UINT, UINT_PTR, DWORD) {
    TScript* s = current;
    if (s == nullptr || s->busy) return;
    s->busy = true;
    if (GetTickCount64() - s->start > 15000) {
      ADD_FAILURE() << "script stopped at step " << s->next;
      s->next = s->steps.size();
      if (F_MsgDlg != nullptr && F_MsgDlg->HandleAllocated())
        PostMessageW(F_MsgDlg->Handle(), WM_CLOSE, 0, 0);
    }
    if (s->next < s->steps.size() && s->steps[s->next]()) ++s->next;
    s->busy = false;
  }

  static inline TScript* current = nullptr;
  std::vector<TStep> steps;
  size_t next = 0;
  bool busy = false;
  ULONGLONG start = GetTickCount64();
  UINT_PTR timer = SetTimer(nullptr, 0, 15, &Tick);
};

inline TF_MsgDlg* Dialog() { return F_MsgDlg; }
inline HWND FormWindow() { return F_MsgDlg->Handle(); }
// Keys reach the dialog through the focused control; the message area stands for any.
inline HWND MessageArea() { return F_MsgDlg->VertScrollBox1->Handle(); }

inline TStep Post(std::function<HWND()> window, UINT msg, WPARAM wParam = 0, LPARAM lParam = 0) {
  return [=] { return PostMessageW(window(), msg, wParam, lParam), true; };
}
inline TStep Check(std::function<void()> check) {
  return [=] { return check(), true; };
}
inline TStep Key(WORD key) { return Post(MessageArea, WM_KEYDOWN, key); }
inline TStep KeyUp(WORD key) { return Post(MessageArea, WM_KEYUP, key, 0xC0000001); }
inline TStep Char(char16_t c) { return Post(MessageArea, WM_CHAR, c); }
// Holds a key down or lets it go for the keys that follow, as this thread sees the keyboard.
inline TStep Held(BYTE key, bool down) {
  return [=] {
    BYTE state[256];
    GetKeyboardState(state);
    state[key] = down ? 0x80 : 0;
    return SetKeyboardState(state), true;
  };
}

// What a window of the dialog shows on the screen, once the dialog's pending painting is done.
class TOnScreen {
 public:
  explicit TOnScreen(HWND window) : window_(window) {
    RedrawWindow(GetAncestor(window, GA_ROOT), nullptr, nullptr, RDW_UPDATENOW | RDW_ALLCHILDREN);
    GetClientRect(window, &client_);
  }
  ~TOnScreen() { ReleaseDC(window_, dc_); }

  int Width() const { return client_.right; }
  int Height() const { return client_.bottom; }
  TColor At(int x, int y) const { return static_cast<TColor>(GetPixel(dc_, x, y)); }
  std::vector<TColor> Area(int left, int top, int width, int height) const {
    std::vector<TColor> pixels;
    for (int y = top; y < top + height; ++y)
      for (int x = left; x < left + width; ++x) pixels.push_back(At(x, y));
    return pixels;
  }
  int Count(TColor colour) const {
    const std::vector<TColor> all = Area(0, 0, Width(), Height());
    return static_cast<int>(std::count(all.begin(), all.end(), colour));
  }
  // The width of each line of writing on the white ground (a run of rows with ink), top down.
  std::vector<int> LineLengths() const {
    std::vector<int> lengths;
    int first = Width(), last = -1;
    for (int y = 0; y < Height(); ++y) {
      bool ink = false;
      for (int x = 0; x < Width(); ++x)
        if (At(x, y) != 0x00FFFFFF)
          ink = true, first = std::min(first, x), last = std::max(last, x);
      if (!ink && last >= 0) lengths.push_back(last - first + 1), first = Width(), last = -1;
    }
    return lengths;
  }

 private:
  HWND window_;
  RECT client_{};
  HDC dc_ = GetDC(window_);
};

// Which buttons of the row show their marking frame: each edge in the stroke colour.
inline std::vector<bool> Marked() {
  std::vector<bool> marked;
  for (int i = 0; i < DlgButtons->Count(); ++i) {
    const TOnScreen button(F_MsgDlg->ButtonAt(i)->Handle());
    const int w = button.Width(), h = button.Height();
    int edges = 0;
    for (const POINT p : {POINT{1, h / 2}, {w - 2, h / 2}, {w / 2, 1}, {w / 2, h - 2}})
      edges += button.At(p.x, p.y) == StdDlgSettings.btnStrokeColor;
    EXPECT_TRUE(edges == 0 || edges == 4) << "a marking frame shown in part";
    marked.push_back(edges == 4);
  }
  return marked;
}
inline TStep MarkedAre(std::vector<bool> expected) {
  return Check([=] { EXPECT_EQ(Marked(), expected); });
}

inline Strs Captions() {
  Strs captions;
  for (int i = 0; i < DlgButtons->Count(); ++i) captions.push_back((*DlgButtons)[i]);
  return captions;
}
// The texts the buttons' windows hold, in the list's order.
inline Strs ShownCaptions() {
  Strs shown;
  for (int i = 0; i < DlgButtons->Count(); ++i) {
    wchar_t text[64] = {};
    GetWindowTextW(static_cast<ui::TPanel*>(DlgButtons->Objects(i))->Handle(), text, 64);
    shown.emplace_back(reinterpret_cast<const char16_t*>(text));
  }
  return shown;
}

class DialogTest : public ::testing::Test {
 protected:
  void SetUp() override {
    Initialize();
    StdDlgSettings = StartDlgSettings();
  }
  void TearDown() override { Finalize(); }

  // Shows the dialog with `show` and plays the steps once it is on the screen; its result.
  int Run(const std::function<int()>& show, std::vector<TStep> steps) {
    steps.insert(steps.begin(), [] {
      return F_MsgDlg != nullptr && F_MsgDlg->HandleAllocated() &&
             IsWindowVisible(F_MsgDlg->Handle());
    });
    TScript script(std::move(steps));
    const int result = show();
    EXPECT_EQ(script.next, script.steps.size());
    return result;
  }
  int Run(TMsgDlgType type, TMsgDlgButtons buttons, std::vector<TStep> steps,
          const std::u16string& msg = u"Eine Meldung") {
    return Run([&] { return MessageDlgEx(msg, type, buttons, 0); }, std::move(steps));
  }
  // Runs `check` while the dialog is up, then closes it with Enter.
  int Inspect(TMsgDlgType type, TMsgDlgButtons buttons, std::function<void()> check,
              const std::u16string& msg = u"Eine Meldung") {
    return Run(type, buttons, {Check(std::move(check)), Key(VK_RETURN)}, msg);
  }
};

}  // namespace nox_dialog_test
