// Word and position search on hostile input, each case beside a baseline over the same
// buffer in the same run. The baseline is one plain 16-bit pass
// (std::char_traits<char16_t>::find for a character that is not there); the counter
// x_baseline is the case's time over the baseline's. The wildcard shapes run on texts of
// 100k, 200k and 400k characters, and x_100k is the time over the same shape's on 100k:
// about 2 and 4 where the time grows linearly with the text.
#include <benchmark/benchmark.h>

#include <map>
#include <string>
#include <string_view>

#include "bench/ratio.h"
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

void Bytes(benchmark::State& state, const u16string& text) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                          static_cast<int64_t>(text.size() * sizeof(char16_t)));
}

// One plain pass over the text.
void Pass(const u16string& text) {
  benchmark::DoNotOptimize(std::char_traits<char16_t>::find(text.data(), text.size(), u'\uffff'));
}

void Baseline(benchmark::State& state, const u16string& text) {
  for (auto _ : state) Pass(text);
  Bytes(state, text);
}

// Runs f as the benchmark and again beside the baseline over `text` for the counter.
template <class F>
void Versus(benchmark::State& state, const u16string& text, F f) {
  for (auto _ : state) benchmark::DoNotOptimize(f());
  Bytes(state, text);
  state.counters["x_baseline"] =
      bench::Ratio([&] { benchmark::DoNotOptimize(f()); }, [&] { Pass(text); });
}

void BM_Baseline_1Mi(benchmark::State& state) { Baseline(state, UpperCaseRejects()); }

// Not a search: the one lowering pass every case-insensitive search makes, to show how
// much of WordPos's time is the locale's rather than the search's.
void BM_AnsiLowerCase_1Mi(benchmark::State& state) {
  Versus(state, UpperCaseRejects(), [] { return rtl::AnsiLowerCase(UpperCaseRejects()).size(); });
}

void BM_WordPos_UpperCaseRejects(benchmark::State& state) {
  Versus(state, UpperCaseRejects(),
         [] { return Qm_tools::WordPos(u"ab", UpperCaseRejects(), false); });
}

void BM_WordPos_LowerCaseRejects(benchmark::State& state) {
  Versus(state, LowerCaseRejects(),
         [] { return Qm_tools::WordPos(u"ab", LowerCaseRejects(), false); });
}

void BM_WordPos2_LowerCaseRejects(benchmark::State& state) {
  Versus(state, LowerCaseRejects(), [] { return Qm_tools::WordPos2(u"ab", LowerCaseRejects()); });
}

void BM_RPos_NeedleFirst(benchmark::State& state) {
  Versus(state, NeedleFirst(), [] { return Qm_tools::RPos(u"na", NeedleFirst()); });
}

void BM_OccurNr_EveryFourth(benchmark::State& state) {
  Versus(state, LowerCaseRejects(),
         [] { return Qm_tools::OccurNr(u"ab", LowerCaseRejects(), -1); });
}

// ---- Wildcards: the shapes of pattern, each on 'a' repeated 100k, 200k and 400k times.

const u16string& AllA(size_t n) {
  static std::map<size_t, u16string> texts;
  auto& text = texts[n];
  if (text.empty()) text.assign(n, u'a');
  return text;
}

u16string As(size_t n) { return u16string(n, u'a'); }

void Like(benchmark::State& state, const u16string& pattern) {
  const auto n = static_cast<size_t>(state.range(0));
  const u16string& text = AllA(n);
  Versus(state, text, [&] { return Qm_tools::qm_Like(text, pattern); });
  const u16string& first = AllA(100000);
  state.counters["x_100k"] =
      bench::Ratio([&] { benchmark::DoNotOptimize(Qm_tools::qm_Like(text, pattern)); },
                   [&] { benchmark::DoNotOptimize(Qm_tools::qm_Like(first, pattern)); });
}

// A 65-character stretch ending the pattern: it can only match where it ends with the text.
void BM_Like_StarThen64AThenB(benchmark::State& state) { Like(state, u"*" + As(64) + u"b"); }
// The same between stars, so that it is searched for; the filter's two ends never agree.
void BM_Like_StarThen63AThenBStar(benchmark::State& state) { Like(state, u"*" + As(63) + u"b*"); }
// A 64-character stretch whose ends agree everywhere and whose middle never does: the
// bit-parallel matcher takes over.
void BM_Like_NearMissInTheMiddle(benchmark::State& state) {
  Like(state, u"*" + As(31) + u"b" + As(32) + u"*");
}
void BM_Like_QuestionMarkInTheStretch(benchmark::State& state) {
  Like(state, u"*" + As(20) + u"?" + As(21) + u"b" + As(21) + u"*");
}
// '?' right after the star: the places tried skip ahead.
void BM_Like_QuestionMarkAfterStar(benchmark::State& state) {
  Like(state, u"*?" + As(31) + u"b" + As(31) + u"*");
}
// 200 characters: four words per character in the bit-parallel matcher.
void BM_Like_200CharacterStretch(benchmark::State& state) {
  Like(state, u"*" + As(100) + u"b" + As(99) + u"*");
}
// "*a" a thousand times and then "*b" or "b".
void BM_Like_ManyStars(benchmark::State& state) { Like(state, Repeat(u"*a", 1000) + u"*b"); }
void BM_Like_ManyStarsThenLiteral(benchmark::State& state) {
  Like(state, Repeat(u"*a", 1000) + u"b");
}

}  // namespace

BENCHMARK(BM_Baseline_1Mi);
BENCHMARK(BM_AnsiLowerCase_1Mi);
BENCHMARK(BM_WordPos_UpperCaseRejects);
BENCHMARK(BM_WordPos_LowerCaseRejects);
BENCHMARK(BM_WordPos2_LowerCaseRejects);
BENCHMARK(BM_RPos_NeedleFirst);
BENCHMARK(BM_OccurNr_EveryFourth);
BENCHMARK(BM_Like_StarThen64AThenB)->Arg(100000)->Arg(200000)->Arg(400000);
BENCHMARK(BM_Like_StarThen63AThenBStar)->Arg(100000)->Arg(200000)->Arg(400000);
BENCHMARK(BM_Like_NearMissInTheMiddle)->Arg(100000)->Arg(200000)->Arg(400000);
BENCHMARK(BM_Like_QuestionMarkInTheStretch)->Arg(100000)->Arg(200000)->Arg(400000);
BENCHMARK(BM_Like_QuestionMarkAfterStar)->Arg(100000)->Arg(200000)->Arg(400000);
BENCHMARK(BM_Like_200CharacterStretch)->Arg(100000)->Arg(200000)->Arg(400000);
BENCHMARK(BM_Like_ManyStars)->Arg(100000)->Arg(200000)->Arg(400000);
BENCHMARK(BM_Like_ManyStarsThenLiteral)->Arg(100000)->Arg(200000)->Arg(400000);

BENCHMARK_MAIN();
