#include "devhost/options.h"

#include <cwchar>

namespace devhost {

namespace {

bool ToInt(const std::wstring& s, int& value) {
  if (s.empty()) return false;
  wchar_t* end = nullptr;
  const long v = std::wcstol(s.c_str(), &end, 10);
  if (*end != L'\0' || v < 0 || v > 0x7FFFFFFF) return false;
  value = static_cast<int>(v);
  return true;
}

}  // namespace

bool ParseOptions(const std::vector<std::wstring>& args, TOptions& options, std::wstring& error) {
  int screenshotAt = -1;
  for (size_t i = 0; i < args.size(); ++i) {
    const std::wstring& name = args[i];
    // The values that follow `name`: `count` of them, or the line is malformed.
    auto values = [&](size_t count) {
      if (i + count < args.size()) return true;
      error = name + L" needs " + std::to_wstring(count) + L" value(s)";
      return false;
    };
    auto number = [&](size_t at, int& value) {
      if (ToInt(args[at], value)) return true;
      error = name + L": not a number: " + args[at];
      return false;
    };
    int ms = 0;
    if (name == L"--package" || name == L"--log" || name == L"--open" ||
        name == L"--screenshot") {
      if (!values(1)) return false;
      std::wstring& target = name == L"--package" ? options.package
                             : name == L"--log"   ? options.logFile
                             : name == L"--open"  ? options.openPlugin
                                                  : options.screenshot;
      target = args[++i];
    } else if (name == L"--theming") {
      if (!values(1)) return false;
      const std::wstring& v = args[++i];
      if (v != L"on" && v != L"off") {
        error = L"--theming takes on or off";
        return false;
      }
      options.theming = v == L"on";
    } else if (name == L"--screenshot-at") {
      if (!values(1) || !number(i + 1, screenshotAt)) return false;
      ++i;
    } else if (name == L"--dump-tree-at" || name == L"--exit-after") {
      if (!values(1) || !number(i + 1, ms)) return false;
      ++i;
      options.schedule.push_back(
          {name == L"--exit-after" ? TScheduled::Kind::Exit : TScheduled::Kind::DumpTree, ms});
    } else if (name == L"--resize-at") {
      TScheduled resize{TScheduled::Kind::Resize, 0};
      if (!values(3) || !number(i + 1, resize.atMs) || !number(i + 2, resize.width) ||
          !number(i + 3, resize.height))
        return false;
      i += 3;
      options.schedule.push_back(resize);
    } else {
      error = L"unknown option " + name;
      return false;
    }
  }
  if (screenshotAt >= 0 && options.screenshot.empty()) {
    error = L"--screenshot-at without --screenshot";
    return false;
  }
  if (!options.screenshot.empty())
    options.schedule.push_back({TScheduled::Kind::Screenshot, screenshotAt < 0 ? 0 : screenshotAt});
  return true;
}

}  // namespace devhost
