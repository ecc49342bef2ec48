// Test output reaches ctest as it is written: a Win32 test that brings its process down
// would otherwise take its buffered lines with it and leave nothing to read.
#include <cstdio>

namespace {
const int kUnbuffered = [] {
  std::setvbuf(stdout, nullptr, _IONBF, 0);
  return 0;
}();
}  // namespace
