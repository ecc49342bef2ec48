// Word and position search on hostile input, each case beside a baseline over the same
// buffer in the same run, so the output reads as a ratio. The baseline is one plain
// 16-bit pass (std::char_traits<char16_t>::find for a character that is not there).
#include <benchmark/benchmark.h>

#include <string>
#include <string_view>

#include "rtl/locale.h"
#include "tools/search.h"

using std::u16string;
using std::u16string_view;

namespace {

constexpr size_t kRepeats = 1 << 18;  // four-character units: a text of 1 Mi characters

u16string Repeat(u16string_view unit, size_t times) {
  u16string s;
  s.reserve(unit.size() * times + 2);
  for (size_t i = 0; i < times; ++i) s += unit;
  return s;
}

// Rejected matches all the way; the only lower-case occurrence, a whole word, ends it.
const u16string& UpperCaseRejects() {
  static const u16string s = Repeat(u"xAB ", kRepeats) + u"ab";
  return s;
}
// A rejected lower-case match every four characters and no word at all.
const u16string& LowerCaseRejects() {
  static const u16string s = Repeat(u"xab ", kRepeats);
  return s;
}
// The needle only at the very start, so a reverse search crosses everything.
const u16string& NeedleFirst() {
  static const u16string s = u"na" + Repeat(u"bxyz", kRepeats);
  return s;
}
const u16string& AllA() {
  static const u16string s(100000, u'a');
  return s;
}

void Bytes(benchmark::State& state, const u16string& text) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                          static_cast<int64_t>(text.size() * sizeof(char16_t)));
}

void Baseline(benchmark::State& state, const u16string& text) {
  for (auto _ : state)
    benchmark::DoNotOptimize(std::char_traits<char16_t>::find(text.data(), text.size(), u'\uffff'));
  Bytes(state, text);
}

void BM_Baseline_1Mi(benchmark::State& state) { Baseline(state, UpperCaseRejects()); }
void BM_Baseline_100k(benchmark::State& state) { Baseline(state, AllA()); }

// Not a search: the one lowering pass every case-insensitive search makes first, to show
// how much of WordPos's time is the locale's rather than the search's.
void BM_AnsiLowerCase_1Mi(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(rtl::AnsiLowerCase(UpperCaseRejects()));
  Bytes(state, UpperCaseRejects());
}

void BM_WordPos_UpperCaseRejects(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(Qm_tools::WordPos(u"ab", UpperCaseRejects(), false));
  Bytes(state, UpperCaseRejects());
}

void BM_WordPos_LowerCaseRejects(benchmark::State& state) {
  for (auto _ : state)
    benchmark::DoNotOptimize(Qm_tools::WordPos(u"ab", LowerCaseRejects(), false));
  Bytes(state, LowerCaseRejects());
}

void BM_WordPos2_LowerCaseRejects(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(Qm_tools::WordPos2(u"ab", LowerCaseRejects()));
  Bytes(state, LowerCaseRejects());
}

void BM_RPos_NeedleFirst(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(Qm_tools::RPos(u"na", NeedleFirst()));
  Bytes(state, NeedleFirst());
}

void BM_OccurNr_EveryFourth(benchmark::State& state) {
  for (auto _ : state) benchmark::DoNotOptimize(Qm_tools::OccurNr(u"ab", LowerCaseRejects(), -1));
  Bytes(state, LowerCaseRejects());
}

// "*a" a thousand times and then "*b": every literal is found at once until the last.
void BM_Like_ManyStars(benchmark::State& state) {
  const u16string pattern = Repeat(u"*a", 1000) + u"*b";
  for (auto _ : state) benchmark::DoNotOptimize(Qm_tools::qm_Like(AllA(), pattern));
  Bytes(state, AllA());
}

// "*a*a*...a" then "b": the 'b' fails at the end of the text, each star resumes once.
void BM_Like_ManyStarsThenLiteral(benchmark::State& state) {
  const u16string pattern = Repeat(u"*a", 1000) + u"b";
  for (auto _ : state) benchmark::DoNotOptimize(Qm_tools::qm_Like(AllA(), pattern));
  Bytes(state, AllA());
}

// One star before a long stretch that almost matches everywhere: the O(n*m) worst case,
// m = state.range(0).
void BM_Like_LongStretchAfterStar(benchmark::State& state) {
  const u16string pattern = u"*" + u16string(static_cast<size_t>(state.range(0)), u'a') + u"b";
  for (auto _ : state) benchmark::DoNotOptimize(Qm_tools::qm_Like(AllA(), pattern));
  Bytes(state, AllA());
}

}  // namespace

BENCHMARK(BM_Baseline_1Mi);
BENCHMARK(BM_AnsiLowerCase_1Mi);
BENCHMARK(BM_WordPos_UpperCaseRejects);
BENCHMARK(BM_WordPos_LowerCaseRejects);
BENCHMARK(BM_WordPos2_LowerCaseRejects);
BENCHMARK(BM_RPos_NeedleFirst);
BENCHMARK(BM_OccurNr_EveryFourth);
BENCHMARK(BM_Baseline_100k);
BENCHMARK(BM_Like_ManyStars);
BENCHMARK(BM_Like_ManyStarsThenLiteral);
BENCHMARK(BM_Like_LongStretchAfterStar)->Arg(4)->Arg(64);

BENCHMARK_MAIN();
