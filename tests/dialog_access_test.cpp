// The message dialog as a screen reader sees it: the tree of its accessible object, read
// through the system's accessibility calls while the dialog is up.
#include <windows.h>

#include <oleacc.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "rtl/com.h"
#include "tests/dialog_script.h"

namespace {

using namespace nox_dialog_test;

struct TElement {
  std::u16string name, value, shortcut, action;
  LONG role = 0, state = 0;
};

std::u16string Take(BSTR text) {
  std::u16string s = text != nullptr ? std::u16string(reinterpret_cast<const char16_t*>(text),
                                                      SysStringLen(text))
                                     : std::u16string();
  SysFreeString(text);
  return s;
}

VARIANT Child(LONG id) {
  VARIANT v;
  VariantInit(&v);
  v.vt = VT_I4;
  v.lVal = id;
  return v;
}

TElement Read(IAccessible* object, LONG id) {
  TElement e;
  const VARIANT child = Child(id);
  BSTR text = nullptr;
  object->get_accName(child, &text), e.name = Take(text), text = nullptr;
  object->get_accValue(child, &text), e.value = Take(text), text = nullptr;
  object->get_accKeyboardShortcut(child, &text), e.shortcut = Take(text), text = nullptr;
  object->get_accDefaultAction(child, &text), e.action = Take(text);
  VARIANT v;
  if (SUCCEEDED(object->get_accRole(child, &v)) && v.vt == VT_I4) e.role = v.lVal;
  if (SUCCEEDED(object->get_accState(child, &v)) && v.vt == VT_I4) e.state = v.lVal;
  return e;
}

// The dialog's object as a screen reader gets it from the form's window.
rtl::TComPtr<IAccessible> DialogObject() {
  rtl::TComPtr<IAccessible> object;
  EXPECT_EQ(AccessibleObjectFromWindow(FormWindow(), static_cast<DWORD>(OBJID_CLIENT),
                                       __uuidof(IAccessible), object.put_void()),
            S_OK);
  return object;
}

std::vector<LONG> focusEvents;
void CALLBACK OnFocus(HWINEVENTHOOK, DWORD, HWND window, LONG object, LONG child, DWORD, DWORD) {
  if (F_MsgDlg != nullptr && window == FormWindow() && object == OBJID_CLIENT)
    focusEvents.push_back(child);
}

class DialogAccessTest : public DialogTest {
 protected:
  rtl::TComScope com_;
};

TEST_F(DialogAccessTest, TheTreeNamesTheDialogTheMessageAndTheButtons) {
  StdDlgSettings.DialogCaptionText = u"Kopfzeile";
  Inspect(mtConfirmation, {mbYes, mbNo, mbYesToAll}, [] {
    const rtl::TComPtr<IAccessible> dialog = DialogObject();
    ASSERT_TRUE(dialog);
    LONG count = 0;
    dialog->get_accChildCount(&count);
    ASSERT_EQ(count, 4);
    const TElement self = Read(dialog.get(), CHILDID_SELF);
    EXPECT_EQ(self.role, ROLE_SYSTEM_DIALOG);
    EXPECT_EQ(self.name, u"Kopfzeile");
    const TElement message = Read(dialog.get(), 1);
    EXPECT_EQ(message.role, ROLE_SYSTEM_STATICTEXT);
    EXPECT_EQ(message.value, u"Zeile 1\r\nZeile 2");

    const struct { const char16_t* name; const char16_t* shortcut; bool focused; } buttons[] = {
        {u"Ja", u"j", true}, {u"Ja Alle", u"l", false}, {u"Nein", u"n", false}};
    for (LONG i = 0; i < 3; ++i) {
      const TElement b = Read(dialog.get(), 2 + i);
      SCOPED_TRACE(std::string(b.name.begin(), b.name.end()));
      EXPECT_EQ(b.role, ROLE_SYSTEM_PUSHBUTTON);
      EXPECT_EQ(b.name, buttons[i].name);
      EXPECT_EQ(b.shortcut, buttons[i].shortcut);
      EXPECT_EQ(b.action, u"press");
      EXPECT_EQ((b.state & STATE_SYSTEM_FOCUSED) != 0, buttons[i].focused);
    }
    VARIANT focus;
    ASSERT_EQ(dialog->get_accFocus(&focus), S_OK);
    EXPECT_EQ(focus.vt == VT_I4 ? focus.lVal : -1, 2);
    // Children past the last button, and other kinds of VARIANT, name nothing.
    VARIANT role;
    EXPECT_EQ(dialog->get_accRole(Child(5), &role), E_INVALIDARG);
  }, u"Zeile 1\r\nZeile 2");
}

// Tab moves the focus that readers are told of; "press" on "&Nein" closes the dialog with 7.
TEST_F(DialogAccessTest, TabRaisesFocusEventsAndPressClosesWithTheResult) {
  focusEvents.clear();
  const HWINEVENTHOOK hook = SetWinEventHook(EVENT_OBJECT_FOCUS, EVENT_OBJECT_FOCUS, nullptr,
                                             &OnFocus, GetCurrentProcessId(), 0,
                                             WINEVENT_OUTOFCONTEXT);
  LONG focusedAfterTab = 0;
  const int result = Run(mtConfirmation, {mbYes, mbNo, mbCancel},
      {KeyUp(VK_TAB), [] { return !focusEvents.empty(); },
       Check([&] {
         const rtl::TComPtr<IAccessible> dialog = DialogObject();
         VARIANT focus;
         dialog->get_accFocus(&focus);
         focusedAfterTab = focus.lVal;
         EXPECT_NE(Read(dialog.get(), 3).state & STATE_SYSTEM_FOCUSED, 0);
         EXPECT_EQ(Read(dialog.get(), 2).state & STATE_SYSTEM_FOCUSED, 0);
       }),
       Check([] { DialogObject()->accDoDefaultAction(Child(3)); })});
  UnhookWinEvent(hook);
  EXPECT_EQ(result, mrNo);
  EXPECT_EQ(focusEvents, std::vector<LONG>{3});
  EXPECT_EQ(focusedAfterTab, 3);
}

}  // namespace
