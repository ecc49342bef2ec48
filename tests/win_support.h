// Small helpers the Win32 test sources share: paths of the build as Wine sees them, files
// in the temporary folder, the messages the library shows, and the popup menu on screen.
#pragma once

#include <windows.h>

#include <string>
#include <string_view>
#include <vector>

#include "dialog/QMMessageDlgVCL.h"
#include "rtl/handles.h"

namespace nox_test {

inline const wchar_t* W(const std::u16string& s) {
  return reinterpret_cast<const wchar_t*>(s.c_str());
}

// Build paths come in Unix form; Wine's drive Z: is the Unix root.
inline std::u16string WinPath(std::string_view unixPath) {
  std::u16string r = u"Z:";
  for (const char c : unixPath) r += c == '/' ? u'\\' : static_cast<char16_t>(c);
  return r;
}

// With its final backslash.
inline std::u16string TempFolder() {
  wchar_t path[MAX_PATH] = {};
  const DWORD n = GetTempPathW(MAX_PATH, path);
  return std::u16string(reinterpret_cast<const char16_t*>(path), n);
}

inline bool WriteBytes(const std::u16string& name, const std::string& bytes) {
  const rtl::unique_hfile f(
      CreateFileW(W(name), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
  DWORD written = 0;
  return f && WriteFile(f.get(), bytes.data(), static_cast<DWORD>(bytes.size()), &written,
                        nullptr) &&
         written == bytes.size();
}

// "<missing>" for a file that cannot be opened.
inline std::string ReadBytes(const std::u16string& name) {
  const rtl::unique_hfile f(CreateFileW(W(name), GENERIC_READ, FILE_SHARE_READ, nullptr,
                                        OPEN_EXISTING, 0, nullptr));
  if (!f) return "<missing>";
  std::string text;
  char buffer[4096];
  DWORD got = 0;
  while (ReadFile(f.get(), buffer, sizeof buffer, &got, nullptr) && got > 0) text.append(buffer, got);
  return text;
}

// Collects what the library shows while it lives, answering OK, then puts the previous
// presenter back.
class ShownMessages {
 public:
  ShownMessages()
      : previous_(QMMessageDlgVCL::SetDlgPresenter(
            [this](const std::u16string& msg, QMMessageDlgVCL::TMsgDlgType,
                   QMMessageDlgVCL::TMsgDlgButtons, int) {
              shown.push_back(msg);
              return QMMessageDlgVCL::mrOk;
            })) {}
  ~ShownMessages() { QMMessageDlgVCL::SetDlgPresenter(previous_); }
  ShownMessages(const ShownMessages&) = delete;
  ShownMessages& operator=(const ShownMessages&) = delete;
  std::vector<std::u16string> shown;

 private:
  QMMessageDlgVCL::TDlgPresenter previous_;
};

// The visible popup menu of this thread (window class "#32768"), or null.
inline HWND VisibleMenuWindow() {
  HWND found = nullptr;
  EnumThreadWindows(
      GetCurrentThreadId(),
      [](HWND window, LPARAM found) -> BOOL {
        wchar_t name[16] = {};
        GetClassNameW(window, name, 16);
        if (std::wstring(name) != L"#32768" || !IsWindowVisible(window)) return TRUE;
        *reinterpret_cast<HWND*>(found) = window;
        return FALSE;
      },
      reinterpret_cast<LPARAM>(&found));
  return found;
}

}  // namespace nox_test
