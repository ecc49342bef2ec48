// Inter-application messages and window searches against real windows of this thread.
#include "tools/interapp.h"

#include <gtest/gtest.h>

#include <functional>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include "rtl/handles.h"
#include "tests/message_pump.h"
#include "win_support.h"

using namespace Qm_tools;
using std::u16string;

namespace {

using nox_test::W;

struct Posted { HWND wnd; WPARAM wParam; LPARAM lParam; };
std::vector<Posted> posted;
UINT probeMsg = 0;

LRESULT CALLBACK Record(HWND w, UINT m, WPARAM wp, LPARAM lp) {
  if (m == probeMsg) posted.push_back({w, wp, lp});
  return DefWindowProcW(w, m, wp, lp);
}

u16string AtomName(LPARAM atom) {
  wchar_t buffer[256];
  const UINT n = GlobalGetAtomNameW(static_cast<ATOM>(atom), buffer, 256);
  return u16string(reinterpret_cast<const char16_t*>(buffer), n);
}

class InterappWin : public testing::Test {
 protected:
  void SetUp() override { probeMsg = RegisterWindowMessageW(L"NoxInterappProbeMessage"); }
  void TearDown() override { DropPosted(); }

  // The receiver deletes the atoms, each once: a broadcast brings one to several windows.
  static void DropPosted() {
    std::set<LPARAM> atoms;
    for (const Posted& p : posted) atoms.insert(p.lParam);
    for (LPARAM a : atoms) rtl::unique_global_atom drop(static_cast<ATOM>(a));
    posted.clear();
  }

  HWND Make(const u16string& cls, const u16string& title, bool visible) {
    WNDCLASSW wc{};
    wc.lpfnWndProc = Record;
    wc.hInstance = GetModuleHandleW(nullptr);
    wc.lpszClassName = W(cls);
    RegisterClassW(&wc);
    windows_.emplace_back(CreateWindowExW(0, W(cls), W(title),
                                          WS_POPUP | (visible ? WS_VISIBLE : 0), 0, 0, 100, 50,
                                          nullptr, nullptr, wc.hInstance, nullptr));
    return windows_.back().get();
  }

  std::vector<rtl::unique_hwnd> windows_;
};

TEST_F(InterappWin, SearchesFindByClassAndTitlePart) {
  const u16string probe = u"NoxInterappProbe";
  HWND visible = Make(probe, u"Nox Visible Alpha", true);
  HWND hidden = Make(probe, u"Nox Hidden Beta", false);
  // Hidden: without a window manager Wine takes seconds to take a visible window down.
  HWND longOne = Make(probe, u"Nox long " + u16string(69, u'-') + u" Gamma", false);
  struct Case { const char* what; std::u16string_view cls, part; HWND inVisible, inAll; };
  const Case cases[] = {
      {"class and part", u"NoxInterappProbe", u"visible alpha", visible, visible},
      {"class in other case", u"NOXINTERAPPPROBE", u"VISIBLE ALPHA", visible, visible},
      {"hidden only in all", u"NoxInterappProbe", u"hidden beta", nullptr, hidden},
      {"no class: title only", u"", u"Hidden Beta", nullptr, hidden},
      {"other class", u"Button", u"visible alpha", nullptr, nullptr},
      {"start of a long title", u"NoxInterappProbe", u"nox long ---", nullptr, longOne},
      {"past the 78th character", u"NoxInterappProbe", u"Gamma", nullptr, nullptr},
      {"empty part", u"NoxInterappProbe", u"", nullptr, nullptr},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(InWindowTitle(c.cls, c.part), c.inVisible) << c.what;
    EXPECT_EQ(InAllWindowTitle(c.cls, c.part), c.inAll) << c.what;
  }
}

TEST_F(InterappWin, PostsCarryTheirTextInAnAtom) {
  HWND plain = Make(u"NoxInterappProbe", u"Nox Target", false);
  // Found only through the byte-pair reading of "NoxWideProbe" and "Nox Target".
  HWND wide = Make(WideReadingOf("NoxWideProbe"), WideReadingOf("Nox Target"), false);
  const auto m = static_cast<std::uint16_t>(probeMsg);
  // reached: the windows of this test that get the post (2 for a broadcast); text none: lParam 0.
  struct Case { const char* what; bool result; HWND to; std::size_t reached; WPARAM param;
                std::optional<u16string> text; std::function<bool()> send; } cases[] = {
      {"to a window", true, plain, 1, 0xFFFF, u"Grüße, C:\\",
       [&] { return SendWndInterAppMessage(plain, m, 0xFFFF, u"Grüße, C:\\"); }},
      {"no text", true, plain, 1, 7, {}, [&] { return SendWndInterAppMessage(plain, m, 7, u""); }},
      {"to no window", false, plain, 2, 3, u"b",
       [&] { return SendWndInterAppMessage(nullptr, m, 3, u"b"); }},
      // "Hi!" and its zero make the two units 'iH' and '!'.
      {"no class name", true, plain, 2, 1, u"\u6948!",
       [&] { return SendInterAppMessage("", "Nox Target", m, 1, "Hi!"); }},
      {"no window name", true, plain, 2, 1, u"\u6948!",
       [&] { return SendInterAppMessage("NoxWideProbe", "", m, 1, "Hi!"); }},
      {"names read as wide", true, wide, 1, 2, {},
       [&] { return SendInterAppMessage("NoxWideProbe", "Nox Target", m, 2, ""); }},
      {"names not converted", false, plain, 0, 0, {},
       [&] { return SendInterAppMessage("NoxInterappProbe", "Nox Target", m, 2, "x"); }},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(c.send(), c.result) << c.what;
    PumpUntil([&] { return posted.size() >= c.reached && c.reached > 0; }, 1000);
    ASSERT_EQ(posted.size(), c.reached) << c.what;
    int atTarget = 0;
    for (const Posted& p : posted) {
      if (p.wnd != c.to) continue;
      ++atTarget;
      EXPECT_EQ(p.wParam, c.param) << c.what;
      if (c.text)
        EXPECT_EQ(AtomName(p.lParam), *c.text) << c.what;
      else
        EXPECT_EQ(p.lParam, 0) << c.what;
    }
    EXPECT_EQ(atTarget, c.reached ? 1 : 0) << c.what;
    DropPosted();
  }
}

}  // namespace
