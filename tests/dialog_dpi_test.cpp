// The message dialog on a screen of 144 DPI. The system's density is read by a process
// when it starts, so the measuring runs in a second process of this program, started once
// at 96 and once at 144 DPI by the test that sets the density; nothing else may run then.
#include <windows.h>

#include <gtest/gtest.h>

#include <string>

#include "dialog/dialog_plan.h"
#include "tests/dialog_script.h"
#include "tests/message_pump.h"
#include "win_support.h"

namespace {

using namespace nox_dialog_test;

TEST(DialogDpi, SizesFollowTheSystemDensity) {
  nox_test::ExpectPassesAtEachDensity("DialogDpiMeasure.*");
}

class DialogDpiMeasure : public DialogTest {};

// Run by SizesFollowTheSystemDensity in a process of its own, aware of densities as the
// IDE is: every pixel size of the dialog is its 96-DPI size times dpi/96, within a pixel.
TEST_F(DialogDpiMeasure, DISABLED_InAProcessAwareOfDensities) {
  const int dpi = nox_test::AwareOfDensities();
  ASSERT_GT(dpi, 0);
  const auto scaled = [dpi](int pixels) { return pixels * dpi / 96.0; };
  StdDlgSettings.AddMaxHeight = 200;
  std::u16string tall;
  for (int i = 0; i < 60; ++i) tall += u"Zeile\r\n";
  Inspect(mtConfirmation, {mbOK, mbYes, mbYesToAll}, [&] {
    EXPECT_EQ(static_cast<int>(GetDpiForWindow(FormWindow())), dpi);
    EXPECT_EQ(Dialog()->CurrentPPI(), dpi);
    const int widths[] = {106, 130, 130}, height = 35;
    for (int i = 0; i < DlgButtons->Count(); ++i) {
      ui::TPanel* button = Dialog()->ButtonAt(i);
      RECT r;
      GetWindowRect(button->Handle(), &r);
      SCOPED_TRACE(i);
      EXPECT_NEAR(r.right - r.left, scaled(widths[i]), 1);
      EXPECT_NEAR(r.bottom - r.top, scaled(height), 1);
      // Its caption fits, in the font it is drawn in.
      const std::u16string caption = QMMessageDlgVCL::PlainCaption(button->Caption());
      const HDC dc = GetDC(button->Handle());
      const HGDIOBJ old = SelectObject(dc, button->FontHandle());
      SIZE text{};
      GetTextExtentPoint32W(dc, nox_test::W(caption), static_cast<int>(caption.size()), &text);
      SelectObject(dc, old);
      ReleaseDC(button->Handle(), dc);
      EXPECT_LT(text.cx, r.right - r.left);
      EXPECT_LT(text.cy, r.bottom - r.top);
      EXPECT_GT(text.cy, scaled(15) * 0.8);  // the 15-pixel bold font, scaled
    }
    // The caption bar and the marking frame.
    EXPECT_NEAR(Dialog()->RecCaption->Height(), scaled(34), 1);
    EXPECT_NEAR(Dialog()->ButtonAt(0)->Controls(0)->Width(), scaled(4), 1);
    // The form grew by the scaled allowance: it was designed 415 high.
    RECT form;
    GetWindowRect(FormWindow(), &form);
    EXPECT_NEAR(form.bottom - form.top, scaled(415) + scaled(200), 2);
  }, tall);
}

}  // namespace
