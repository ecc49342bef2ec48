// Reading a 1 MB field string: the one-pass reader and the counter beside baselines that
// walk the same buffer with a plain 16-bit character search. Compare
//   Fields_GetFieldStrAtStart_All  with  Baseline_FindAndCopy_All  (both copy each field)
//   Fields_GetFieldsCount          with  Baseline_CountDelimiters
// and Baseline_FindAndTouch_All as the floor without copies.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <string>

#include "tools/fields.h"

namespace {

constexpr char16_t kDelimiter = u';';

// 100k fields of 0..10 characters, with umlauts mixed in: about 1.2 MB of UTF-16.
const std::u16string& Buffer() {
  static const std::u16string buffer = [] {
    std::mt19937 random(42);
    std::uniform_int_distribution<int> length(0, 10), letter(0, 25);
    std::u16string s;
    for (int k = 0; k < 100000; ++k) {
      for (int n = length(random); n > 0; --n)
        s += letter(random) == 0 ? u'\u00E4' : static_cast<char16_t>(u'a' + letter(random));
      s += kDelimiter;
    }
    return s;
  }();
  return buffer;
}

void SetRate(benchmark::State& state) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                          static_cast<int64_t>(Buffer().size() * sizeof(char16_t)));
}

void Fields_GetFieldStrAtStart_All(benchmark::State& state) {
  const std::u16string& s = Buffer();
  const int fields = Qm_tools::GetFieldsCount(kDelimiter, s);
  for (auto _ : state) {
    int start = 1, count = 0;
    for (int k = 0; k < fields; ++k) {
      std::u16string field =
          Qm_tools::GetFieldStrAtStart(kDelimiter, s, count + 1, start, count);
      benchmark::DoNotOptimize(field.data());
    }
  }
  SetRate(state);
}

void Baseline_FindAndCopy_All(benchmark::State& state) {
  const std::u16string& s = Buffer();
  for (auto _ : state) {
    const char16_t* at = s.data();
    const char16_t* const end = at + s.size();
    while (at < end) {
      const char16_t* next =
          std::char_traits<char16_t>::find(at, static_cast<size_t>(end - at), kDelimiter);
      if (next == nullptr) next = end;
      std::u16string field(at, next);
      benchmark::DoNotOptimize(field.data());
      at = next + 1;
    }
  }
  SetRate(state);
}

void Baseline_FindAndTouch_All(benchmark::State& state) {
  const std::u16string& s = Buffer();
  for (auto _ : state) {
    const char16_t* at = s.data();
    const char16_t* const end = at + s.size();
    while (at < end) {
      const char16_t* next =
          std::char_traits<char16_t>::find(at, static_cast<size_t>(end - at), kDelimiter);
      if (next == nullptr) next = end;
      benchmark::DoNotOptimize(*at);
      at = next + 1;
    }
  }
  SetRate(state);
}

void Fields_GetFieldsCount(benchmark::State& state) {
  const std::u16string& s = Buffer();
  for (auto _ : state) benchmark::DoNotOptimize(Qm_tools::GetFieldsCount(kDelimiter, s));
  SetRate(state);
}

void Baseline_CountDelimiters(benchmark::State& state) {
  const std::u16string& s = Buffer();
  for (auto _ : state) {
    int n = 0;
    const char16_t* at = s.data();
    const char16_t* const end = at + s.size();
    while ((at = std::char_traits<char16_t>::find(at, static_cast<size_t>(end - at),
                                                  kDelimiter))) {
      ++n;
      ++at;
    }
    benchmark::DoNotOptimize(n);
  }
  SetRate(state);
}

}  // namespace

BENCHMARK(Fields_GetFieldStrAtStart_All);
BENCHMARK(Baseline_FindAndCopy_All);
BENCHMARK(Baseline_FindAndTouch_All);
BENCHMARK(Fields_GetFieldsCount);
BENCHMARK(Baseline_CountDelimiters);

BENCHMARK_MAIN();
