// Streaming on the system, under Wine: a form's components to a file and back, raw
// resources of the test program, and printers that are not there.
#include <windows.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "rtl/filer.h"
#include "rtl/netencoding.h"
#include "rtl/streams.h"
#include "rtl/sysutils.h"
#include "tools/streaming.h"
#include "ui/extctrls.h"
#include "ui/forms.h"
#include "ui/menus.h"
#include "ui/persist.h"
#include "ui/stdctrls.h"
#include "win_support.h"

namespace {

using namespace Qm_tools;

// A form with a panel that holds a label, and a timer.
std::unique_ptr<ui::TForm> Designed() {
  auto form = std::make_unique<ui::TForm>(nullptr);
  form->Name = u"Designed";
  form->SetCaption(u"Einstellungen");
  form->SetBounds(10, 20, 400, 300);
  form->KeyPreview = true;
  auto* panel = new ui::TPanel(form.get());
  panel->Name = u"Panel1";
  panel->SetParent(form.get());
  panel->SetAlign(ui::alTop);
  panel->Color = ui::clWhite;
  panel->ParentColor = false;
  panel->BevelOuter = ui::bvNone;
  auto* label = new ui::TLabel(form.get());
  label->Name = u"Label1";
  label->SetParent(panel);
  label->SetAutoSize(false);
  label->SetBounds(8, 4, 150, 20);
  label->SetCaption(u"Größe: 0x7FFF €");
  label->Tag = 70000;
  auto* timer = new ui::TTimer(form.get());
  timer->Name = u"Timer1";
  return form;
}

// The colour of a picture's pixel, alpha dropped.
std::uint32_t Pixel(ui::TPicture& picture, int x, int y) {
  const std::vector<std::uint32_t> pixels = ui::ReadPixels32(picture.Bitmap().Handle());
  return pixels.at(static_cast<std::size_t>(y * picture.Width() + x)) & 0xFFFFFF;
}

TEST(StreamingWinComponents, AFormComesBackWithItsTree) {
  const std::u16string file = nox_test::TempFolder() + u"nox_streaming_form.bin";
  {
    auto form = Designed();
    SaveCompToFile(*form, file);
  }
  const std::vector<std::uint8_t> bytes = rtl::ReadFileBytes(file);
  ASSERT_GE(bytes.size(), 4u);
  EXPECT_EQ(std::string(bytes.begin(), bytes.begin() + 4), "TPF0");

  ui::TForm copy(nullptr);
  copy.Name = u"Copy";
  LoadCompFromFile(copy, file);
  EXPECT_EQ(copy.Name, u"Copy") << "the root keeps its name";
  EXPECT_EQ(copy.Caption(), u"Einstellungen");
  EXPECT_EQ(copy.Left(), 10);
  EXPECT_EQ(copy.Width(), 400);
  EXPECT_TRUE(copy.KeyPreview);
  auto* panel = dynamic_cast<ui::TPanel*>(copy.FindComponent(u"Panel1"));
  auto* label = dynamic_cast<ui::TLabel*>(copy.FindComponent(u"Label1"));
  ASSERT_NE(panel, nullptr);
  ASSERT_NE(label, nullptr);
  ASSERT_NE(dynamic_cast<ui::TTimer*>(copy.FindComponent(u"Timer1")), nullptr);
  EXPECT_EQ(panel->Parent(), &copy);
  EXPECT_EQ(panel->Align(), ui::alTop);
  EXPECT_EQ(panel->Color, ui::clWhite);
  EXPECT_FALSE(panel->ParentColor);
  EXPECT_EQ(panel->BevelOuter, ui::bvNone);
  EXPECT_EQ(label->Parent(), panel);
  EXPECT_EQ(label->Caption(), u"Größe: 0x7FFF €");
  EXPECT_EQ(label->Tag, 70000);
  EXPECT_FALSE(label->AutoSize());
  EXPECT_EQ(label->BoundsRect(), (ui::TRect{8, 4, 158, 24}));

  // Loaded again into the same form: the components are found by name, none is added.
  const int count = copy.ComponentCount();
  label->SetCaption(u"changed");
  LoadCompFromFile(copy, file);
  EXPECT_EQ(copy.ComponentCount(), count);
  EXPECT_EQ(label->Caption(), u"Größe: 0x7FFF €");
  DeleteFileW(nox_test::W(file));
}

TEST(StreamingWinComponents, ListsMemosAndCheckBoxesKeepTheirContent) {
  const std::u16string file = nox_test::TempFolder() + u"nox_streaming_lists.bin";
  {
    ui::TForm form(nullptr);
    auto* list = new ui::TListBox(&form);
    list->Name = u"List1";
    list->SetParent(&form);
    list->Items().Add(u"eins");
    list->Items().Add(u"zwei é");
    auto* memo = new ui::TMemo(&form);
    memo->Name = u"Memo1";
    memo->SetParent(&form);
    memo->SetText(u"erste Zeile\r\nzweite");
    auto* check = new ui::TCheckBox(&form);
    check->Name = u"Check1";
    check->SetParent(&form);
    check->SetChecked(true);
    SaveCompToFile(form, file);
  }
  ui::TForm copy(nullptr);
  LoadCompFromFile(copy, file);
  auto* list = dynamic_cast<ui::TListBox*>(copy.FindComponent(u"List1"));
  auto* memo = dynamic_cast<ui::TMemo*>(copy.FindComponent(u"Memo1"));
  auto* check = dynamic_cast<ui::TCheckBox*>(copy.FindComponent(u"Check1"));
  ASSERT_TRUE(list && memo && check);
  EXPECT_EQ(list->Items().CommaText(), u"eins,\"zwei é\"");
  EXPECT_EQ(memo->Text(), u"erste Zeile\r\nzweite");
  EXPECT_TRUE(check->Checked());
  DeleteFileW(nox_test::W(file));
}

// A stream holding a TForm "F" whose properties and children `rest` writes, read from the
// start.
template <class Rest>
std::unique_ptr<rtl::TMemoryStream> FormStream(Rest rest) {
  auto stream = std::make_unique<rtl::TMemoryStream>();
  {
    rtl::TWriter w(*stream);
    w.WriteSignature();
    w.WriteStr(u"TForm");
    w.WriteStr(u"F");
    rest(w);
  }
  stream->SetPosition(0);
  return stream;
}

TEST(StreamingWinComponents, ImagesKeepTheirPictureInItsFormat) {
  rtl::TMemoryStream stream;
  {
    ui::TForm form(nullptr);
    auto* png = new ui::TImage(&form);
    png->Name = u"Png";
    png->SetParent(&form);
    png->Picture.Assign(ui::CreateDib24(5, 4, [](int, int) { return ui::clRed; }));
    ConvertImgToPngSize(*png, 8);
    png->Stretch = true;
    auto* bmp = new ui::TImage(&form);
    bmp->Name = u"Bmp";
    bmp->SetParent(&form);
    bmp->Picture.Assign(ui::CreateDib24(3, 2, [](int, int) { return ui::clLime; }));
    ui::WriteComponent(stream, form);
  }
  ui::TForm copy(nullptr);
  stream.SetPosition(0);
  ui::ReadComponent(stream, copy);
  auto* png = dynamic_cast<ui::TImage*>(copy.FindComponent(u"Png"));
  auto* bmp = dynamic_cast<ui::TImage*>(copy.FindComponent(u"Bmp"));
  ASSERT_TRUE(png && bmp);
  EXPECT_EQ(png->Picture.Format(), ui::pfPng);
  EXPECT_EQ(png->Picture.Width(), 8);
  EXPECT_TRUE(png->Stretch);
  EXPECT_EQ(bmp->Picture.Format(), ui::pfBmp);
  EXPECT_EQ(Pixel(bmp->Picture, 2, 1), 0x00FF00u);
}

TEST(StreamingWinComponents, PopupMenusKeepTheirItemTree) {
  rtl::TMemoryStream stream;
  {
    ui::TForm form(nullptr);
    auto* menu = new ui::TPopupMenu(&form);
    menu->Name = u"Menu1";
    int n = 0;
    for (const char16_t* caption : {u"&Öffnen", u"-", u"Mehr"}) {
      auto* item = new ui::TMenuItem(&form);
      item->Name = u"Item" + rtl::IntToStr(++n);
      item->Caption = caption;
      menu->Items()->Add(item);
    }
    auto* sub = new ui::TMenuItem(&form);
    sub->Name = u"Sub";
    sub->Caption = u"Unterpunkt";
    sub->Checked = true;
    sub->Enabled = false;
    menu->Items()->Items(2)->Add(sub);
    ui::WriteComponent(stream, form);
  }
  ui::TForm copy(nullptr);
  stream.SetPosition(0);
  ui::ReadComponent(stream, copy);
  auto* menu = dynamic_cast<ui::TPopupMenu*>(copy.FindComponent(u"Menu1"));
  ASSERT_NE(menu, nullptr);
  ASSERT_EQ(menu->Items()->Count(), 3);
  EXPECT_EQ(menu->Items()->Items(0)->Caption, u"&Öffnen");
  EXPECT_EQ(menu->Items()->Items(1)->Caption, u"-");
  ASSERT_EQ(menu->Items()->Items(2)->Count(), 1);
  const ui::TMenuItem* sub = menu->Items()->Items(2)->Items(0);
  EXPECT_EQ(sub->Caption, u"Unterpunkt");
  EXPECT_TRUE(sub->Checked);
  EXPECT_FALSE(sub->Enabled);
  // Read again: the items stay in their places, none is added.
  stream.SetPosition(0);
  ui::ReadComponent(stream, copy);
  EXPECT_EQ(menu->Items()->Count(), 3);
  EXPECT_EQ(menu->Items()->Items(2)->Count(), 1);
}

TEST(StreamingWinComponents, FramesKeepTheirTimersToo) {
  rtl::TMemoryStream stream;
  {
    ui::TFrame frame(nullptr);
    auto* timer = new ui::TTimer(&frame);
    timer->Name = u"Tick";
    timer->Tag = 7;
    ui::WriteComponent(stream, frame);
  }
  ui::TFrame copy(nullptr);
  stream.SetPosition(0);
  ui::ReadComponent(stream, copy);
  ASSERT_NE(copy.FindComponent(u"Tick"), nullptr);
  EXPECT_EQ(copy.FindComponent(u"Tick")->Tag, 7);
}

TEST(StreamingWinComponents, UnknownClassesAndPropertiesReachTheCaller) {
  const auto unknownClass = FormStream([](rtl::TWriter& w) {
    w.WriteListEnd();
    w.WriteStr(u"TNoSuchControl");
    w.WriteStr(u"X1");
    for (int i = 0; i < 3; ++i) w.WriteListEnd();
  });
  const auto unknownProperty = FormStream([](rtl::TWriter& w) {
    w.WriteStr(u"Frobnicate");
    w.WriteInteger(1);
    w.WriteListEnd();
    w.WriteListEnd();
  });
  ui::TForm form(nullptr);
  EXPECT_THROW(ui::ReadComponent(*unknownClass, form), rtl::EClassNotFound);
  EXPECT_THROW(ui::ReadComponent(*unknownProperty, form), rtl::EFilerError);
}

TEST(StreamingWinComponents, DeepNestingIsReadWithoutRecursion) {
  const int depth = 20000;
  const auto deep = FormStream([](rtl::TWriter& w) {
    w.WriteListEnd();
    for (int i = 0; i < depth; ++i) {
      w.WriteStr(u"TShape");
      w.WriteStr(u"");
      w.WriteListEnd();
    }
    for (int i = 0; i <= depth; ++i) w.WriteListEnd();
  });
  ui::TForm form(nullptr);
  ui::ReadComponent(*deep, form);
  EXPECT_EQ(form.ComponentCount(), depth);
}

TEST(StreamingWinPictures, ASquareThumbnailIsStretchedAndTravelsAsBase64) {
  ui::TImage image(nullptr);
  // 200 x 100: red on the left, blue on the right.
  image.Picture.Assign(ui::CreateDib24(200, 100, [](int x, int) { return x < 100 ? ui::clRed : ui::clBlue; }));
  EXPECT_EQ(image.Picture.Format(), ui::pfBmp);
  ConvertImgToPngSize(image, 64);
  ASSERT_EQ(image.Picture.Format(), ui::pfPng);
  EXPECT_EQ(image.Picture.Width(), 64);
  EXPECT_EQ(image.Picture.Height(), 64);

  std::u16string text;
  ASSERT_TRUE(SaveImgToBase64Str(image, text));
  const std::vector<std::uint8_t> png = rtl::Base64Decode(text);
  ASSERT_GE(png.size(), 8u);
  EXPECT_EQ(std::string(png.begin() + 1, png.begin() + 4), "PNG");
  for (std::size_t line = 0, at = 0; at < text.size(); ++line) {
    const std::size_t end = std::min(text.find(u"\r\n", at), text.size());
    EXPECT_LE(end - at, 76u) << "line " << line;
    at = end + 2;
  }

  ui::TImage copy(nullptr);
  ASSERT_TRUE(LoadImgFromBase64Str(copy, text));
  EXPECT_EQ(copy.Picture.Format(), ui::pfPng);
  std::u16string again;
  SaveImgToBase64Str(copy, again);
  EXPECT_EQ(again, text) << "a loaded PNG is saved with the bytes it came in";
  // Stretched over the whole square, not letter-boxed: the top row is coloured.
  EXPECT_EQ(Pixel(copy.Picture, 10, 0), 0xFF0000u);
  EXPECT_EQ(Pixel(copy.Picture, 54, 63), 0x0000FFu);
}

TEST(StreamingWinPictures, BitmapsBlankTextsAndBadBytes) {
  ui::TImage image(nullptr);
  image.Picture.Assign(ui::CreateDib24(3, 2, [](int, int) { return ui::clLime; }));
  std::u16string text;
  ASSERT_TRUE(SaveImgToBase64Str(image, text));
  const std::vector<std::uint8_t> bmp = rtl::Base64Decode(text);
  EXPECT_EQ(std::string(bmp.begin(), bmp.begin() + 2), "BM") << "a bitmap stays a bitmap";

  ui::TImage copy(nullptr);
  ASSERT_TRUE(LoadImgFromBase64Str(copy, text));
  EXPECT_EQ(copy.Picture.Format(), ui::pfBmp);
  EXPECT_EQ(Pixel(copy.Picture, 2, 1), 0x00FF00u);

  EXPECT_FALSE(LoadImgFromBase64Str(copy, u" \r\n "));
  EXPECT_EQ(copy.Picture.Width(), 3) << "a blank text leaves the picture";
  EXPECT_THROW(LoadImgFromBase64Str(copy, rtl::Base64Encode({'n', 'o', 'p', 'e'})),
               ui::EInvalidGraphic);
  EXPECT_THROW(LoadImgFromBase64Str(copy, u"###"), rtl::EEncodingError);
  ui::TImage empty(nullptr);
  EXPECT_FALSE(SaveImgToBase64Str(empty, text));
}

TEST(StreamingWinResources, RawDataIsAppendedWhereTheStreamStands) {
  rtl::TMemoryStream stream(std::vector<std::uint8_t>{'>', ' '});
  stream.Seek(0, rtl::TSeekOrigin::soEnd);
  CreateStreamFromResource(u"NOXTESTDATA", stream);
  EXPECT_EQ(std::string(stream.Bytes().begin(), stream.Bytes().end()), "> Noxdesk raw data");
  EXPECT_THROW(CreateStreamFromResource(u"NOXMISSING", stream), rtl::EResNotFound);
}

TEST(StreamingWinPrinter, AMissingPrinterChangesNothing) {
  rtl::TMemoryStream stream(std::vector<std::uint8_t>{1, 2, 3});
  SavePrinterInfo(L"Nox Printer That Is Not There", stream);
  EXPECT_EQ(stream.Size(), 3);
  stream.SetPosition(0);
  LoadPrinterInfo(L"Nox Printer That Is Not There", stream);
  EXPECT_EQ(stream.Position(), 0);
}

}  // namespace
