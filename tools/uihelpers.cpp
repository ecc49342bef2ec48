// The interface helpers' rules, decided without the window system: measuring loops over a
// text-width function, colours, rectangles, picture sizes, popup points and list counts.
#include "tools/uihelpers.h"

#include <algorithm>
#include <cmath>

#include "tools/qm_globals.h"

namespace Qm_tools {

namespace {

// The framework's Round: halves go to the even neighbour, whatever the rounding mode.
double RoundHalfEven(double x) {
  const double down = std::floor(x);
  const double rest = x - down;
  if (rest > 0.5) return down + 1;
  if (rest < 0.5) return down;
  return std::fmod(down, 2.0) == 0 ? down : down + 1;
}

}  // namespace

std::u16string WrapTextForLabel(int Width, const TTextWidth& TextWidth,
                                const std::u16string& Text) {
  if (Text.empty() || Text.find(u' ') != std::u16string::npos) return Text;
  std::u16string result;
  size_t start = 0;  // the characters before it are placed
  // The companion program wraps its labels by the same steps, so their two oddities stay:
  // a last character that overflows is dropped with the line it would open, and a
  // character wider than the label is preceded by an empty line.
  for (size_t i = 1; i <= Text.size(); ++i) {
    if (TextWidth(Text.substr(start, i - start)) > Width) {
      result.append(Text, start, i - 1 - start).append(u"\r\n");
      start = i - 1;
    } else if (i == Text.size()) {
      result.append(Text, start);
    }
  }
  return result;
}

std::u16string FitStrLen(int MaxWidth, const TTextWidth& TextWidth, const std::u16string& Text) {
  std::u16string result = Text;
  if (TextWidth(result) <= MaxWidth) return result;
  // Two pixels of air between the dots and whatever follows the text (counted wide: a
  // width near the lowest integer has no room for them either).
  const std::int64_t room = std::int64_t{MaxWidth} - 2;
  // Down to nothing when not even the dots fit, an empty text included: "..." is left.
  while (!result.empty() && TextWidth(result + u"...") > room) result.pop_back();
  return result + u"...";
}

TColor ChangeColor(TColor Color, bool Lighter, double Amount) {
  const auto bits = static_cast<std::uint32_t>(Color);
  std::uint32_t out = 0;
  for (int shift = 0; shift <= 16; shift += 8) {
    const double c = (bits >> shift) & 0xFF;
    // Proportional to the channel itself: a dark channel moves little, zero not at all.
    const double d = c / 255 * Amount;
    double moved = std::max(std::min(Lighter ? c + d : c - d, 255.0), 0.0);
    if (std::isnan(moved)) moved = c;  // an amount that is no number changes nothing
    out |= static_cast<std::uint32_t>(RoundHalfEven(moved)) << shift;
  }
  return static_cast<TColor>(out);
}

std::u16string RgbToHtml(TColor Rgb) {
  static constexpr char16_t kHex[] = u"0123456789ABCDEF";
  const auto bits = static_cast<std::uint32_t>(Rgb);
  std::u16string html = u"#";
  for (int shift = 0; shift <= 16; shift += 8) {
    html += kHex[(bits >> (shift + 4)) & 0xF];
    html += kHex[(bits >> shift) & 0xF];
  }
  return html;
}

TColor GetSysSelColor(TColor Default) {
  TColor color = Default;
  if (curOS.find(u"ubuntu") != std::u16string::npos) color = 0x4677F0;
  if (curOS.find(u"mint") != std::u16string::npos) color = 0x72B392;
  return color;
}

TRect DecRect(const TRect& Rect, int N) {
  return {Rect.Left + N, Rect.Top + N, Rect.Right - N, Rect.Bottom - N};
}

void FitPictureToContainer(double CW, double CH, double& W, double& H) {
  if (W == 0 || H == 0) return;
  const double r = std::max(W / CW, H / CH);
  W = RoundHalfEven(W / r);
  H = RoundHalfEven(H / r);
}

void FitPictureToContainerInt(int CW, int CH, int& W, int& H) {
  const double r = std::max(static_cast<double>(W) / CW, static_cast<double>(H) / CH);
  // Converting a quotient that is not finite to an integer is undefined: keep the side.
  const auto fit = [r](int& side) {
    const double q = side / r;
    if (std::isfinite(q) && std::fabs(q) < 2147483647.0) side = static_cast<int>(RoundHalfEven(q));
  };
  fit(W);
  fit(H);
}

int GetSectionLeftPos(const std::vector<int>& Widths, int Index) {
  int left = 0;
  const int end = std::min(Index, static_cast<int>(Widths.size()));
  for (int i = 0; i < end; ++i) left += Widths[static_cast<size_t>(i)];
  return left;
}

bool IsListBoxValid(int Count, int ItemIndex) { return Count >= 1 && ItemIndex != -1; }

bool NoItemsAndNoSelection(int Count, int ItemIndex) { return Count == 0 || ItemIndex == -1; }

int ListItemAtPoint(TPoint P, int ClientWidth, int ClientHeight, int TopIndex, int ItemHeight,
                    int Count) {
  if (P.X < 0 || P.Y < 0 || P.X >= ClientWidth || P.Y >= ClientHeight) return -1;
  if (TopIndex < 0 || ItemHeight <= 0) return -1;
  const std::int64_t index = std::int64_t{TopIndex} + P.Y / ItemHeight;
  return index < Count ? static_cast<int>(index) : -1;
}

TPoint PopupPoint(int Left, int Top, int Height, int Flag) {
  return {Left, Flag != 0 ? Top - 1 : Top + Height + 1};
}

std::uint32_t SysMenuLParam(TPoint Screen) {
  return (static_cast<std::uint32_t>(Screen.X) & 0xFFFF) |
         (static_cast<std::uint32_t>(Screen.Y) & 0xFFFF) << 16;
}

std::u16string ControlHierarchyText(
    const std::vector<std::pair<std::u16string, std::u16string>>& Controls) {
  std::u16string text = u"Steuerelemente unter der Maus:";
  std::u16string indent;
  for (const auto& [className, name] : Controls) {
    text += u"\r\n" + indent + className + u" \"" + name + u"\"";
    indent += u"  ";
  }
  return text;
}

std::u16string NoControlText(const std::u16string& ScreenClassName) {
  return u"Kein Steuerelement unter der Maus (" + ScreenClassName + u")";
}

}  // namespace Qm_tools
