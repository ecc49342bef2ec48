// Fuzz target for window-position records and where the restoring routines put a form.
// The record text is what the INI file holds, so anybody may have written it; the screen
// facts are hostile too (empty, inverted and enormous work areas), and so are the form's
// size and minimum. Everything runs through the rules the Win32 routines call, under
// UBSan: no overflow on the way, and the form inside a work area that is one.
#include <fuzzer/FuzzedDataProvider.h>

#include <algorithm>
#include <climits>
#include <cstdint>
#include <iterator>
#include <string>

#include "fuzz/fuzz_input.h"
#include "rtl/sysutils.h"
#include "tools/fields.h"
#include "tools/inisettings.h"

using namespace Qm_tools;

namespace {

using fuzz::Check;
using Wide = std::int64_t;

// Mostly the numbers where the rules turn or the integers end, sometimes any.
int PickInt(FuzzedDataProvider& in) {
  static constexpr int kEdges[] = {INT_MIN, INT_MIN + 1, -32768, -1000, -16, -8, -1, 0, 1, 8,
                                   15,      16,          40,     60,    100, 640, 1024, 1280,
                                   32767,   INT_MAX - 1, INT_MAX};
  if (in.ConsumeBool()) return kEdges[in.ConsumeIntegralInRange<size_t>(0, std::size(kEdges) - 1)];
  return in.ConsumeIntegral<int>();
}

ui::TRect PickRect(FuzzedDataProvider& in) {
  ui::TRect r;
  r.Left = PickInt(in);
  r.Top = PickInt(in);
  // Often an ordinary rectangle beside the corner, so that the clamping gets its turn.
  if (in.ConsumeBool()) {
    const auto beside = [&](int from) {
      const Wide to = Wide{from} + in.ConsumeIntegralInRange(0, 4000);
      return static_cast<int>(std::min<Wide>(to, INT_MAX));
    };
    r.Right = beside(r.Left);
    r.Bottom = beside(r.Top);
  } else {
    r.Right = PickInt(in);
    r.Bottom = PickInt(in);
  }
  return r;
}

TRestoreScreen PickScreen(FuzzedDataProvider& in) {
  TRestoreScreen s;
  s.MonitorFound = in.ConsumeBool();
  s.MonitorWidth = PickInt(in);
  s.MonitorHeight = PickInt(in);
  s.MonitorWorkArea = PickRect(in);
  s.PrimaryWorkArea = in.ConsumeBool() ? s.MonitorWorkArea : PickRect(in);
  s.DesktopLeft = PickInt(in);
  s.DesktopWidth = PickInt(in);
  s.VirtualScreen = PickRect(in);
  s.PrimaryWidth = PickInt(in);
  return s;
}

std::u16string RecordLikeText(FuzzedDataProvider& in, size_t most) {
  const std::string bytes = in.ConsumeRandomLengthString(most);
  return fuzz::DecodeText(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(), false,
                          u"0123456789-+ ^^^x\u0661\uFF11");
}

// The value as the INI file holds it: five numbers written by the program, a text made of
// what records are made of, or any UTF-16 units.
std::u16string PickRecordText(FuzzedDataProvider& in) {
  switch (in.ConsumeIntegralInRange(0, 2)) {
    case 0: {
      const TWindowPosRecord rec{PickInt(in), PickInt(in), PickInt(in), PickInt(in), PickInt(in)};
      // Sometimes with something after it, a sixth field or a digit more.
      return WindowPosValue(rec) + RecordLikeText(in, 4);
    }
    case 1:
      return RecordLikeText(in, 200);
    default: {
      const std::string bytes = in.ConsumeRandomLengthString(200);
      return fuzz::DecodeText(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size(),
                              true, u"");
    }
  }
}

void CheckBounds(const TRestoredBounds& b, const TRestoreScreen& s, int MinWidth, int MinHeight) {
  // SetBounds adds the size to the corner.
  Check(Wide{b.Left} + b.Width >= INT_MIN && Wide{b.Left} + b.Width <= INT_MAX, "right edge");
  Check(Wide{b.Top} + b.Height >= INT_MIN && Wide{b.Top} + b.Height <= INT_MAX, "bottom edge");
  const ui::TRect a = s.MonitorFound ? s.MonitorWorkArea : s.VirtualScreen;
  const Wide aw = Wide{a.Right} - a.Left, ah = Wide{a.Bottom} - a.Top;
  if (aw <= 0 || ah <= 0) return;
  Check(b.Left >= a.Left && Wide{b.Left} + b.Width <= a.Right, "inside horizontally");
  Check(b.Top >= a.Top && Wide{b.Top} + b.Height <= a.Bottom, "inside vertically");
  // As large as the form's minimum, the work area permitting.
  const Wide minW = std::max(MinWidth, 100), minH = std::max(MinHeight, 60);
  Check(b.Width >= std::min({minW, aw, Wide{INT_MAX}}) && b.Width <= aw, "width");
  Check(b.Height >= std::min({minH, ah, Wide{INT_MAX}}) && b.Height <= ah, "height");
  Check(b.Top <= std::max(Wide{a.Bottom} - 40, Wide{a.Top}), "caption reachable");
}

void CheckCorner(const ui::TRect& r, int Width, int Height, const TRestoreScreen& s) {
  Check(Wide{r.Right} - r.Left == Width && Wide{r.Bottom} - r.Top == Height, "size kept");
  // Below a top task bar, unless the integers end before there is room for the form.
  const ui::TRect& wa = s.PrimaryWorkArea;
  if (Wide{wa.Top} + 1 <= Wide{INT_MAX} - std::max(Height, 0))
    Check(Wide{r.Top} >= Wide{wa.Top} - 15, "below the task bar");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, size_t size) {
  FuzzedDataProvider in(data, size);
  const TRestoreScreen screen = PickScreen(in);
  const int minWidth = PickInt(in), minHeight = PickInt(in);
  const int formWidth = PickInt(in), formHeight = PickInt(in);

  // What RecordOf saves from a placement and the form's corner.
  const ui::TRect normal = PickRect(in);
  const int formLeft = PickInt(in), formTop = PickInt(in);
  const bool correct = in.ConsumeBool();
  const TWindowPosRecord saved = SavedWindowPos(normal, 1, formLeft, formTop, correct);
  Check(!correct || formLeft == normal.Left || saved.Left == formLeft, "corrected left");
  Check(!correct || formTop == normal.Top || saved.Top == formTop, "corrected top");
  Check(correct || (saved.Left == normal.Left && saved.Right == normal.Right &&
                    saved.Top == normal.Top && saved.Bottom == normal.Bottom),
        "uncorrected as placed");
  TWindowPosRecord back;
  Check(ReadWindowPosValue(WindowPosValue(saved), back) &&
            WindowPosValue(back) == WindowPosValue(saved),
        "a saved record reads back");
  Check(WindowPosSection(screen.MonitorWidth, screen.MonitorHeight, u"PC").ends_with(u":PC:WinPos"),
        "section");

  // What the restoring routines read.
  const std::u16string text = PickRecordText(in);
  TWindowPosRecord rec{1, 2, 3, 4, 5};
  bool present = false;
  try {
    present = ReadWindowPosValue(text, rec);
  } catch (const rtl::EConvertError&) {
    Check(WindowPosValue(rec) == u"1^2^3^4^5^", "untouched when refused");
    return 0;
  }
  if (!present) {
    Check(GetFieldsCount(u'^', text) <= 0, "absent only without fields");
    Check(WindowPosValue(rec) == u"1^2^3^4^5^", "untouched when absent");
    return 0;
  }
  TWindowPosRecord again;
  Check(ReadWindowPosValue(WindowPosValue(rec), again) &&
            WindowPosValue(again) == WindowPosValue(rec),
        "round trip");

  for (const bool notMin : {false, true})
    CheckBounds(RestoreWindowBounds(rec, screen, minWidth, minHeight, notMin), screen, minWidth,
                minHeight);
  CheckCorner(RestoreWindowCorner(rec, screen, formWidth, formHeight), formWidth, formHeight,
              screen);
  CheckCorner(RestoreWindowCornerIni(rec, screen, formWidth, formHeight), formWidth, formHeight,
              screen);
  for (const bool cornerOnly : {false, true}) {
    const TRestoreState state = RestoredWindowState(rec.ShowCmd, cornerOnly);
    Check(state == TRestoreState::rsKeep || (rec.ShowCmd >= 1 && rec.ShowCmd <= 3), "state");
  }
  return 0;
}
