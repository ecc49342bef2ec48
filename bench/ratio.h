// Timing a routine beside its baseline inside one benchmark, so that each line of the
// output carries its own ratio as a counter. The two are timed in turns, round for round,
// and each by its best round: on a shared machine another process's bursts then fall on
// both sides alike, or out of the quotient, instead of into one side of it.
#pragma once

#include <algorithm>
#include <chrono>

namespace bench {

// Seconds per call of f over one round of at least 20 ms.
template <class F>
double RoundSeconds(F& f) {
  using Clock = std::chrono::steady_clock;
  long calls = 0;
  const auto start = Clock::now();
  double elapsed = 0;
  do {
    f();
    ++calls;
    elapsed = std::chrono::duration<double>(Clock::now() - start).count();
  } while (elapsed < 0.02);
  return elapsed / static_cast<double>(calls);
}

// Time per call of f over time per call of g, each the best of seven rounds taken in turns.
template <class F, class G>
double Ratio(F&& f, G&& g) {
  double bestF = 1e300, bestG = 1e300;
  for (int round = 0; round < 7; ++round) {
    bestF = std::min(bestF, RoundSeconds(f));
    bestG = std::min(bestG, RoundSeconds(g));
  }
  return bestF / bestG;
}

}  // namespace bench
