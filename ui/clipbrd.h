// The system clipboard as text. Windows build only.
#pragma once

#include <windows.h>

#include <stdexcept>
#include <string>

#include "rtl/handles.h"
#include "rtl/sysutils.h"

namespace ui {

// Raised when the clipboard cannot be opened or written.
class EClipboardException : public rtl::Exception {
 public:
  using rtl::Exception::Exception;
};

// Each call opens the clipboard and closes it again before returning. Another program may
// hold the clipboard open for a moment: opening is tried a few times over about 80 ms
// before EClipboardException is raised.
class TClipboard {
 public:
  TClipboard();
  ~TClipboard();
  TClipboard(const TClipboard&) = delete;
  TClipboard& operator=(const TClipboard&) = delete;

  // The clipboard's text (CF_UNICODETEXT, which the system also makes from CF_TEXT), up to
  // its first null character; "" when it holds none.
  std::u16string AsText();
  // Empties the clipboard and puts `text` on it as CF_UNICODETEXT, owned by this module.
  // Text after a null character is lost, as the format ends there.
  void SetAsText(const std::u16string& text);
  // True when the clipboard holds data of `format` or can make it.
  bool HasFormat(UINT format) const;

 private:
  // The window that opens and owns the clipboard, made on first use.
  HWND Window();

  rtl::unique_hwnd window_;
};

// This module's clipboard object, made on first use.
TClipboard& Clipboard();

}  // namespace ui
