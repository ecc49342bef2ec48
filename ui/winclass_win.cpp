// Window classes of this module and its hidden message windows (ui/winclass.h).
#include <memory>
#include <vector>

#include "rtl/sysutils.h"
#include "ui/winclass.h"

namespace ui {

namespace {

// Names registered by this module; unregistered when the module's statics are torn down.
class ClassRegistry {
 public:
  ~ClassRegistry() {
    for (const std::wstring& name : names_) UnregisterClassW(name.c_str(), ModuleInstance());
  }
  bool Has(const std::wstring& name) const {
    for (const std::wstring& n : names_)
      if (n == name) return true;
    return false;
  }
  void Add(std::wstring name) { names_.push_back(std::move(name)); }

 private:
  std::vector<std::wstring> names_;
};

ClassRegistry& Registry() {
  static ClassRegistry registry;
  return registry;
}

LRESULT CALLBACK UtilWindowProc(HWND window, UINT msg, WPARAM wParam, LPARAM lParam) {
  auto* method = reinterpret_cast<TWndMethod*>(GetWindowLongPtrW(window, GWLP_USERDATA));
  if (method == nullptr) {
    if (msg != WM_NCCREATE) return DefWindowProcW(window, msg, wParam, lParam);
    // Ownership of the method passes to the window here and ends at WM_NCDESTROY.
    auto* pending = static_cast<std::unique_ptr<TWndMethod>*>(
        reinterpret_cast<CREATESTRUCTW*>(lParam)->lpCreateParams);
    method = pending->release();
    SetWindowLongPtrW(window, GWLP_USERDATA, reinterpret_cast<LONG_PTR>(method));
  }
  if (msg == WM_NCDESTROY) {
    SetWindowLongPtrW(window, GWLP_USERDATA, 0);
    const std::unique_ptr<TWndMethod> owned(method);
    return (*owned)(window, msg, wParam, lParam);
  }
  return (*method)(window, msg, wParam, lParam);
}

}  // namespace

HINSTANCE ModuleInstance() { return rtl::HInstance(); }

void RegisterWindowClass(const std::wstring& name, WNDPROC proc, UINT style) {
  ClassRegistry& registry = Registry();
  if (registry.Has(name)) return;
  WNDCLASSEXW wc{};
  wc.cbSize = sizeof(wc);
  wc.style = style;
  wc.lpfnWndProc = proc;
  wc.hInstance = ModuleInstance();
  wc.hCursor = LoadCursorW(nullptr, IDC_ARROW);
  wc.lpszClassName = name.c_str();
  // A class left behind by an earlier load of this module at the same address is the
  // same code: it is used as it is.
  if (RegisterClassExW(&wc) != 0 || GetLastError() == ERROR_CLASS_ALREADY_EXISTS)
    registry.Add(name);
}

void HoldWindowClasses() { Registry(); }

rtl::unique_hwnd AllocateHWnd(TWndMethod method, const wchar_t* className, bool topLevel) {
  RegisterWindowClass(className, &UtilWindowProc, 0);
  auto pending = std::make_unique<TWndMethod>(std::move(method));
  // If creation fails before WM_NCCREATE, `pending` still owns the method and frees it.
  return rtl::unique_hwnd(CreateWindowExW(
      topLevel ? WS_EX_TOOLWINDOW : 0, className, L"", topLevel ? WS_POPUP : 0, 0, 0, 0, 0,
      topLevel ? nullptr : HWND_MESSAGE, nullptr, ModuleInstance(), &pending));
}

}  // namespace ui
