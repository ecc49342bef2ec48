#include "devhost/log.h"

#include <windows.h>

#include <cstdio>
#include <memory>

namespace devhost {

namespace {

struct FileCloser {
  void operator()(std::FILE* f) const { std::fclose(f); }
};

std::unique_ptr<std::FILE, FileCloser> logFile;
const ULONGLONG startTicks = GetTickCount64();

std::string ToUtf8(std::wstring_view text) {
  const int n = WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()),
                                    nullptr, 0, nullptr, nullptr);
  std::string out(static_cast<size_t>(n), '\0');
  WideCharToMultiByte(CP_UTF8, 0, text.data(), static_cast<int>(text.size()), out.data(), n,
                      nullptr, nullptr);
  return out;
}

}  // namespace

bool OpenLog(const std::wstring& fileName) {
  logFile.reset(_wfopen(fileName.c_str(), L"wb"));
  return logFile != nullptr;
}

void LogLine(std::wstring_view text) {
  if (!logFile) return;
  std::fprintf(logFile.get(), "%6llu %s\n", GetTickCount64() - startTicks, ToUtf8(text).c_str());
  std::fflush(logFile.get());
}

}  // namespace devhost
