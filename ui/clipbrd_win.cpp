// The clipboard as text (ui/clipbrd.h).
#include "ui/clipbrd.h"

#include <cstring>
#include <iterator>
#include <string>

#include "rtl/ustring.h"
#include "ui/winclass.h"

namespace ui {

namespace {

constexpr int kOpenAttempts = 5;
constexpr DWORD kOpenRetryMs = 20;

[[noreturn]] void Fail(const char* what, DWORD error) {
  wchar_t text[256] = {};
  const DWORD length =
      FormatMessageW(FORMAT_MESSAGE_FROM_SYSTEM | FORMAT_MESSAGE_IGNORE_INSERTS, nullptr, error, 0,
                     text, static_cast<DWORD>(std::size(text)), nullptr);
  std::u16string reason(reinterpret_cast<const char16_t*>(text), length);
  while (!reason.empty() && (reason.back() == u'\r' || reason.back() == u'\n')) reason.pop_back();
  if (reason.empty()) reason = u"system error " + rtl::IntToStr(error);
  throw EClipboardException(std::string(what) + ": " + rtl::Utf16ToUtf8(reason));
}

// The clipboard open for one call; it is closed on every way out.
class OpenClipboardScope {
 public:
  explicit OpenClipboardScope(HWND owner) {
    DWORD error = 0;
    for (int attempt = 0; attempt < kOpenAttempts; ++attempt) {
      if (attempt > 0) Sleep(kOpenRetryMs);
      if (OpenClipboard(owner)) return;
      error = GetLastError();
    }
    Fail("Cannot open clipboard", error);
  }
  ~OpenClipboardScope() { CloseClipboard(); }
  OpenClipboardScope(const OpenClipboardScope&) = delete;
  OpenClipboardScope& operator=(const OpenClipboardScope&) = delete;
};

// GlobalLock for a scope.
class GlobalLockScope {
 public:
  explicit GlobalLockScope(HGLOBAL memory) : memory_(memory), data_(GlobalLock(memory)) {}
  ~GlobalLockScope() {
    if (data_ != nullptr) GlobalUnlock(memory_);
  }
  GlobalLockScope(const GlobalLockScope&) = delete;
  GlobalLockScope& operator=(const GlobalLockScope&) = delete;
  void* Data() const { return data_; }

 private:
  HGLOBAL memory_;
  void* data_;
};

}  // namespace

TClipboard::TClipboard() {
  // The window may live until the module's statics go: the classes must outlast it.
  HoldWindowClasses();
}

TClipboard::~TClipboard() = default;

HWND TClipboard::Window() {
  if (!window_) {
    window_ = AllocateHWnd(&DefWindowProcW, L"TClipboardWindow");
    if (!window_) Fail("No window for the clipboard", GetLastError());
  }
  return window_.get();
}

std::u16string TClipboard::AsText() {
  const OpenClipboardScope open(Window());
  const HANDLE data = GetClipboardData(CF_UNICODETEXT);
  if (data == nullptr) return {};
  const GlobalLockScope lock(data);
  if (lock.Data() == nullptr) return {};
  // Bounded by the block's size, in case the text lacks its null.
  const auto* text = static_cast<const char16_t*>(lock.Data());
  const size_t capacity = GlobalSize(data) / sizeof(char16_t);
  size_t length = 0;
  while (length < capacity && text[length] != u'\0') ++length;
  return std::u16string(text, length);
}

void TClipboard::SetAsText(const std::u16string& text) {
  const size_t length = std::char_traits<char16_t>::length(text.c_str());
  rtl::unique_hglobal memory(GlobalAlloc(GMEM_MOVEABLE, (length + 1) * sizeof(char16_t)));
  if (!memory) Fail("Cannot put text on the clipboard", GetLastError());
  {
    const GlobalLockScope lock(memory.get());
    if (lock.Data() == nullptr) Fail("Cannot put text on the clipboard", GetLastError());
    std::memcpy(lock.Data(), text.c_str(), (length + 1) * sizeof(char16_t));
  }
  const OpenClipboardScope open(Window());
  if (!EmptyClipboard()) Fail("Cannot empty the clipboard", GetLastError());
  if (SetClipboardData(CF_UNICODETEXT, memory.get()) == nullptr)
    Fail("Cannot put text on the clipboard", GetLastError());
  // The system owns the memory from here.
  (void)memory.release();
}

bool TClipboard::HasFormat(UINT format) const { return IsClipboardFormatAvailable(format) != 0; }

TClipboard& Clipboard() {
  static TClipboard clipboard;
  return clipboard;
}

}  // namespace ui
