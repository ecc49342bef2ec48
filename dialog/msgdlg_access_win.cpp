// What a screen reader learns of the message dialog: the dialog with its caption bar's
// text as name, the message as static text, and each button of the row as a push button
// named by its caption, with its accelerator key and "press" as default action. The
// marked button is the focused one. The elements are simple children of the form's
// object: 1 the message, 2 on the buttons in row order.
#include "dialog/msgdlg_access.h"

#include <oleacc.h>

#include "dialog/dialog_plan.h"
#include "dialog/msgdlg_form.h"
#include "rtl/wide.h"

namespace QMMessageDlgVCL {

namespace {

constexpr LONG kMessageChild = 1;
constexpr LONG kFirstButtonChild = 2;

HRESULT Text(const std::u16string& text, BSTR* out) {
  if (out == nullptr) return E_POINTER;
  *out = SysAllocStringLen(rtl::W(text), static_cast<UINT>(text.size()));
  return *out != nullptr ? S_OK : E_OUTOFMEMORY;
}

HRESULT NoText(BSTR* out) {
  if (out == nullptr) return E_POINTER;
  *out = nullptr;
  return S_FALSE;
}

void SetLong(VARIANT* v, LONG value) {
  VariantInit(v);
  v->vt = VT_I4;
  v->lVal = value;
}

class TMsgDlgAccessible final : public IAccessible {
 public:
  explicit TMsgDlgAccessible(TF_MsgDlg* form) : form_(form) {}

  void Detach() { form_ = nullptr; }

  // IUnknown
  HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
    if (object == nullptr) return E_POINTER;
    if (IsEqualIID(iid, IID_IUnknown) || IsEqualIID(iid, IID_IDispatch) ||
        IsEqualIID(iid, __uuidof(IAccessible))) {
      *object = static_cast<IAccessible*>(this);
      AddRef();
      return S_OK;
    }
    *object = nullptr;
    return E_NOINTERFACE;
  }
  ULONG STDMETHODCALLTYPE AddRef() override { return static_cast<ULONG>(InterlockedIncrement(&refs_)); }
  ULONG STDMETHODCALLTYPE Release() override {
    const LONG left = InterlockedDecrement(&refs_);
    if (left == 0) delete this;
    return static_cast<ULONG>(left);
  }

  // IDispatch: screen readers use the vtable; there is no type information.
  HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
    if (count == nullptr) return E_POINTER;
    *count = 0;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR*, UINT, LCID, DISPID*) override {
    return E_NOTIMPL;
  }
  HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                   UINT*) override {
    return E_NOTIMPL;
  }

  // IAccessible
  HRESULT STDMETHODCALLTYPE get_accParent(IDispatch** parent) override {
    if (parent == nullptr) return E_POINTER;
    *parent = nullptr;
    if (form_ == nullptr) return CO_E_OBJNOTCONNECTED;
    return AccessibleObjectFromWindow(form_->Handle(), static_cast<DWORD>(OBJID_WINDOW),
                                      IID_IDispatch, reinterpret_cast<void**>(parent));
  }
  HRESULT STDMETHODCALLTYPE get_accChildCount(LONG* count) override {
    if (count == nullptr) return E_POINTER;
    *count = form_ == nullptr ? 0 : kFirstButtonChild - 1 + ButtonCount();
    return form_ == nullptr ? CO_E_OBJNOTCONNECTED : S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accChild(VARIANT child, IDispatch** object) override {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    const LONG id = ChildId(child);
    return id > CHILDID_SELF ? S_FALSE : E_INVALIDARG;  // simple elements, no objects of their own
  }
  HRESULT STDMETHODCALLTYPE get_accName(VARIANT child, BSTR* name) override {
    const LONG id = ChildId(child);
    if (id == CHILDID_SELF) return Text(form_->lblCaption->Caption(), name);
    if (id == kMessageChild) return Text(form_->Message(), name);
    if (id > 0) return Text(PlainCaption(Caption(id)), name);
    return Invalid(name);
  }
  HRESULT STDMETHODCALLTYPE get_accValue(VARIANT child, BSTR* value) override {
    const LONG id = ChildId(child);
    if (id == kMessageChild) return Text(form_->Message(), value);
    return id >= 0 ? NoText(value) : Invalid(value);
  }
  HRESULT STDMETHODCALLTYPE get_accDescription(VARIANT child, BSTR* text) override {
    return ChildId(child) >= 0 ? NoText(text) : Invalid(text);
  }
  HRESULT STDMETHODCALLTYPE get_accRole(VARIANT child, VARIANT* role) override {
    if (role == nullptr) return E_POINTER;
    const LONG id = ChildId(child);
    if (id < 0) return VariantInit(role), E_INVALIDARG;
    SetLong(role, id == CHILDID_SELF    ? ROLE_SYSTEM_DIALOG
                  : id == kMessageChild ? ROLE_SYSTEM_STATICTEXT
                                        : ROLE_SYSTEM_PUSHBUTTON);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accState(VARIANT child, VARIANT* state) override {
    if (state == nullptr) return E_POINTER;
    const LONG id = ChildId(child);
    if (id < 0) return VariantInit(state), E_INVALIDARG;
    LONG bits = 0;
    if (id == CHILDID_SELF) bits = STATE_SYSTEM_FOCUSABLE;
    if (id == kMessageChild) bits = STATE_SYSTEM_READONLY;
    if (id >= kFirstButtonChild) {
      bits = STATE_SYSTEM_FOCUSABLE;
      if (id - kFirstButtonChild == form_->CurrentButton()) bits |= STATE_SYSTEM_FOCUSED;
    }
    SetLong(state, bits);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accHelp(VARIANT child, BSTR* help) override {
    return ChildId(child) >= 0 ? NoText(help) : Invalid(help);
  }
  HRESULT STDMETHODCALLTYPE get_accHelpTopic(BSTR* file, VARIANT, LONG* topic) override {
    if (topic != nullptr) *topic = 0;
    return NoText(file);
  }
  HRESULT STDMETHODCALLTYPE get_accKeyboardShortcut(VARIANT child, BSTR* shortcut) override {
    const LONG id = ChildId(child);
    if (id < 0) return Invalid(shortcut);
    const char16_t key = id >= kFirstButtonChild ? AcceleratorKey(Caption(id)) : 0;
    return key != 0 ? Text(std::u16string(1, key), shortcut) : NoText(shortcut);
  }
  HRESULT STDMETHODCALLTYPE get_accFocus(VARIANT* focus) override {
    if (focus == nullptr) return E_POINTER;
    VariantInit(focus);
    if (form_ == nullptr) return CO_E_OBJNOTCONNECTED;
    if (form_->CurrentButton() < ButtonCount())
      SetLong(focus, kFirstButtonChild + form_->CurrentButton());
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accSelection(VARIANT* selection) override {
    if (selection == nullptr) return E_POINTER;
    VariantInit(selection);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE get_accDefaultAction(VARIANT child, BSTR* action) override {
    const LONG id = ChildId(child);
    if (id < 0) return Invalid(action);
    return id >= kFirstButtonChild ? Text(u"press", action) : NoText(action);
  }
  HRESULT STDMETHODCALLTYPE accSelect(LONG, VARIANT child) override {
    return ChildId(child) >= 0 ? DISP_E_MEMBERNOTFOUND : E_INVALIDARG;
  }
  HRESULT STDMETHODCALLTYPE accLocation(LONG* left, LONG* top, LONG* width, LONG* height,
                                        VARIANT child) override {
    if (left == nullptr || top == nullptr || width == nullptr || height == nullptr) return E_POINTER;
    *left = *top = *width = *height = 0;
    ui::TWinControl* control = Control(ChildId(child));
    if (control == nullptr) return E_INVALIDARG;
    RECT r;
    GetWindowRect(control->Handle(), &r);
    *left = r.left, *top = r.top, *width = r.right - r.left, *height = r.bottom - r.top;
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accNavigate(LONG direction, VARIANT start, VARIANT* end) override {
    if (end == nullptr) return E_POINTER;
    VariantInit(end);
    const LONG id = ChildId(start);
    if (id < 0) return E_INVALIDARG;
    const LONG last = kFirstButtonChild - 1 + ButtonCount();
    LONG to = 0;
    if (id == CHILDID_SELF && direction == NAVDIR_FIRSTCHILD) to = kMessageChild;
    if (id == CHILDID_SELF && direction == NAVDIR_LASTCHILD) to = last;
    if (id != CHILDID_SELF && (direction == NAVDIR_NEXT || direction == NAVDIR_RIGHT)) to = id + 1;
    if (id != CHILDID_SELF && (direction == NAVDIR_PREVIOUS || direction == NAVDIR_LEFT)) to = id - 1;
    if (to < kMessageChild || to > last) return S_FALSE;
    SetLong(end, to);
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE accHitTest(LONG x, LONG y, VARIANT* child) override {
    if (child == nullptr) return E_POINTER;
    VariantInit(child);
    if (form_ == nullptr) return CO_E_OBJNOTCONNECTED;
    const POINT p{x, y};
    for (LONG id = kFirstButtonChild - 1 + ButtonCount(); id >= CHILDID_SELF; --id) {
      RECT r;
      if (GetWindowRect(Control(id)->Handle(), &r) && PtInRect(&r, p)) {
        SetLong(child, id);
        return S_OK;
      }
    }
    return S_FALSE;
  }
  HRESULT STDMETHODCALLTYPE accDoDefaultAction(VARIANT child) override {
    const LONG id = ChildId(child);
    if (id < kFirstButtonChild) return id < 0 ? E_INVALIDARG : DISP_E_MEMBERNOTFOUND;
    // As a click: the dialog closes with the button's result.
    form_->bnOKClick(form_->ButtonAt(id - kFirstButtonChild));
    return S_OK;
  }
  HRESULT STDMETHODCALLTYPE put_accName(VARIANT, BSTR) override { return E_NOTIMPL; }
  HRESULT STDMETHODCALLTYPE put_accValue(VARIANT, BSTR) override { return E_NOTIMPL; }

 private:
  int ButtonCount() const {
    return form_ != nullptr && form_->ButtonList() != nullptr ? form_->ButtonList()->Count() : 0;
  }
  // The element a VARIANT names, or -1 when it names none (or the form is gone).
  LONG ChildId(const VARIANT& child) const {
    if (form_ == nullptr || child.vt != VT_I4) return -1;
    return child.lVal >= CHILDID_SELF && child.lVal < kFirstButtonChild + ButtonCount() ? child.lVal
                                                                                         : -1;
  }
  std::u16string Caption(LONG id) const {
    return (*form_->ButtonList())[static_cast<int>(id - kFirstButtonChild)];
  }
  ui::TWinControl* Control(LONG id) const {
    if (id < 0) return nullptr;
    if (id == CHILDID_SELF) return form_;
    if (id == kMessageChild) return form_->VertScrollBox1;
    return form_->ButtonAt(static_cast<int>(id - kFirstButtonChild));
  }
  HRESULT Invalid(BSTR* out) const {
    if (out != nullptr) *out = nullptr;
    return form_ == nullptr ? CO_E_OBJNOTCONNECTED : E_INVALIDARG;
  }

  LONG refs_ = 1;
  TF_MsgDlg* form_;
};

}  // namespace

TMsgDlgAccess::TMsgDlgAccess(TF_MsgDlg* form) : object_(new TMsgDlgAccessible(form)) {}

TMsgDlgAccess::~TMsgDlgAccess() {
  // A screen reader may hold the object longer than the form lives.
  static_cast<TMsgDlgAccessible*>(object_)->Detach();
  object_->Release();
}

LRESULT TMsgDlgAccess::Answer(WPARAM wParam, LPARAM lParam) const {
  if (static_cast<LONG>(lParam) != OBJID_CLIENT) return 0;
  return LresultFromObject(__uuidof(IAccessible), wParam, object_);
}

void TMsgDlgAccess::FocusMoved(HWND form, int buttonIndex) {
  NotifyWinEvent(EVENT_OBJECT_FOCUS, form, OBJID_CLIENT, kFirstButtonChild + buttonIndex);
}

}  // namespace QMMessageDlgVCL
