// Timing a routine beside its baseline inside one benchmark, so that each line of the
// output carries its own ratio as a counter. Both are timed the same way, as the best of
// several rounds: on a shared machine another process's bursts then fall out of the
// quotient instead of into one side of it.
#pragma once

#include <algorithm>
#include <chrono>

namespace bench {

// Seconds per call of f, the best of five rounds of at least 20 ms each.
template <class F>
double SecondsPerCall(F&& f) {
  using Clock = std::chrono::steady_clock;
  double best = 1e300;
  for (int round = 0; round < 5; ++round) {
    long calls = 0;
    const auto start = Clock::now();
    double elapsed = 0;
    do {
      f();
      ++calls;
      elapsed = std::chrono::duration<double>(Clock::now() - start).count();
    } while (elapsed < 0.02);
    best = std::min(best, elapsed / static_cast<double>(calls));
  }
  return best;
}

}  // namespace bench
