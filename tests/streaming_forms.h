// Forms for the streaming tests under Wine: one designed as a program would design it, and
// component streams written by hand.
#pragma once

#include <memory>

#include "rtl/filer.h"
#include "rtl/streams.h"
#include "rtl/sysutils.h"
#include "tools/streaming.h"
#include "ui/extctrls.h"
#include "ui/forms.h"
#include "ui/menus.h"
#include "ui/stdctrls.h"

namespace nox_test {

// A control named `name` on `parent`, owned by `parent`'s form `owner`.
template <class T>
T* Place(ui::TComponent& owner, ui::TWinControl& parent, const char16_t* name) {
  auto* control = new T(&owner);
  control->Name = name;
  control->SetParent(&parent);
  return control;
}

// A panel holding a label, a timer, a list, a memo, a check box, a PNG and a bitmap image,
// and a popup menu whose third item has a checked, disabled sub-item.
inline std::unique_ptr<ui::TForm> DesignedForm() {
  auto form = std::make_unique<ui::TForm>(nullptr);
  ui::TForm& f = *form;
  f.Name = u"Designed";
  f.SetCaption(u"Einstellungen");
  f.SetBounds(10, 20, 400, 300);
  f.KeyPreview = true;
  auto* panel = Place<ui::TPanel>(f, f, u"Panel1");
  panel->SetAlign(ui::alTop);
  panel->Color = ui::clWhite;
  panel->ParentColor = false;
  panel->BevelOuter = ui::bvNone;
  auto* label = Place<ui::TLabel>(f, *panel, u"Label1");
  label->SetAutoSize(false);
  label->SetBounds(8, 4, 150, 20);
  label->SetCaption(u"Größe: 0x7FFF €");
  label->Tag = 70000;
  (new ui::TTimer(&f))->Name = u"Timer1";
  auto* list = Place<ui::TListBox>(f, f, u"List1");
  list->Items().Add(u"eins");
  list->Items().Add(u"zwei é");
  Place<ui::TMemo>(f, f, u"Memo1")->SetText(u"erste Zeile\r\nzweite");
  Place<ui::TCheckBox>(f, f, u"Check1")->SetChecked(true);
  auto* png = Place<ui::TImage>(f, f, u"Png");
  png->Picture.Assign(ui::CreateDib24(5, 4, [](int x, int) { return x < 3 ? ui::clRed : ui::clBlue; }));
  Qm_tools::ConvertImgToPngSize(*png, 8);
  png->Stretch = true;
  Place<ui::TImage>(f, f, u"Bmp")->Picture.Assign(ui::CreateDib24(3, 2, [](int, int) { return ui::clLime; }));
  auto* menu = new ui::TPopupMenu(&f);
  menu->Name = u"Menu1";
  int n = 0;
  for (const char16_t* caption : {u"&Öffnen", u"-", u"Mehr"}) {
    auto* item = new ui::TMenuItem(&f);
    item->Name = u"Item" + rtl::IntToStr(++n);
    item->Caption = caption;
    menu->Items()->Add(item);
  }
  auto* sub = new ui::TMenuItem(&f);
  sub->Name = u"Sub";
  sub->Caption = u"Unterpunkt";
  sub->Checked = true;
  sub->Enabled = false;
  menu->Items()->Items(2)->Add(sub);
  return form;
}

// The start of a component: its class and name.
inline void Open(rtl::TWriter& w, const char16_t* cls, const char16_t* name) {
  w.WriteStr(cls);
  w.WriteStr(name);
}

// A stream holding a TForm "F" without properties whose children `children` writes, read
// from the start.
template <class Children>
std::unique_ptr<rtl::TMemoryStream> FormStream(Children children) {
  auto stream = std::make_unique<rtl::TMemoryStream>();
  {
    rtl::TWriter w(*stream);
    w.WriteSignature();
    Open(w, u"TForm", u"F");
    w.WriteListEnd();
    children(w);
    w.WriteListEnd();
  }
  stream->SetPosition(0);
  return stream;
}

}  // namespace nox_test
