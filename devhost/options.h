// The development host's command line: which package to load and what to do when, so
// that a test can drive it without a user. Parsing only; acting on it is main_win.cpp.
#pragma once

#include <string>
#include <vector>

namespace devhost {

// Something to do once, `atMs` milliseconds after the host is up.
struct TScheduled {
  enum class Kind { Screenshot, DumpTree, Resize, Exit };
  Kind kind;
  int atMs;
  int width = 0, height = 0;  // Resize: the main window's new outer size
};

struct TOptions {
  std::wstring package;     // --package <dll>
  std::wstring logFile;     // --log <file>
  std::wstring openPlugin;  // --open <pluginID>
  std::wstring screenshot;  // --screenshot <file.bmp>, taken at --screenshot-at <ms>
  bool theming = true;      // --theming on|off
  std::vector<TScheduled> schedule;
};

// Reads the arguments after the program name; repeated --dump-tree-at and --resize-at
// each add one action. On a malformed line returns false with `error` set; what was read
// before the fault is kept (a --log given first still names the log).
//   {L"--resize-at", L"2000", L"900", L"700"}  ->  Resize at 2000 ms to 900 x 700
bool ParseOptions(const std::vector<std::wstring>& args, TOptions& options, std::wstring& error);

}  // namespace devhost
