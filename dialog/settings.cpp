// The unit's globals and their start and stop work. No system calls.
#include "dialog/QMMessageDlgVCL.h"

#include <utility>

#include "rtl/unitinit.h"

namespace QMMessageDlgVCL {

TDlgSettings StartDlgSettings() {
  return TDlgSettings{
      .lang = 1,
      .btnColor = 0x004B4E4F,
      .btnTextColor = 0x00FFFFFF,
      .btnStrokeColor = 0x00FFAC56,
      .btnClickColor = 0x0060A4F4,
      .recColor = 0x00000000,
      .HeadBack = 0x004B4E4F,
      .HeadText = 0x00FFFFFF,
      .AddMaxHeight = 400,
      .MsgTextColor = 0x00000000,
      .HelpButtonNoReturn = true,
      .UseFixedFont = false,
      .AutoResetFixedFont = true,
      .StyleName = {},
      .DialogCaptionColor = 0x003A3A3A,
      .DialogCaptionText = {},
  };
}

// Holds the start values from load on, so a caller that reads it before the unit's start
// work sees the same record.
TDlgSettings StdDlgSettings = StartDlgSettings();

namespace {
rtl::TUnitCounter Counter;
TDlgPresenter Presenter;
}  // namespace

TDlgPresenter SetDlgPresenter(TDlgPresenter presenter) {
  std::swap(Presenter, presenter);
  return presenter;
}

const TDlgPresenter& CurrentDlgPresenter() { return Presenter; }

void Initialize() {
  if (Counter.Start()) StdDlgSettings = StartDlgSettings();
}

void Finalize() {
  if (!Counter.Stop()) return;
  // Only the managed strings go; the plain fields keep their last values, as they would in
  // a record whose strings the runtime finalises.
  std::u16string().swap(StdDlgSettings.StyleName);
  std::u16string().swap(StdDlgSettings.DialogCaptionText);
}

}  // namespace QMMessageDlgVCL
