// The host's log: one line per step, each written through at once so that a test reading
// the file after a crash still sees how far the host got. Lines start with the
// milliseconds since the host started.
#pragma once

#include <string>
#include <string_view>

namespace devhost {

// Opens (truncates) the log file; without it lines go nowhere.
bool OpenLog(const std::wstring& fileName);
void LogLine(std::wstring_view text);

}  // namespace devhost
