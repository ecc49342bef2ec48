// The UTF-8 shape test over 64 MiB, beside one memchr pass over the same buffer in the
// same run (for a byte the buffer does not hold): plain ASCII text, and German UTF-8 with
// an umlaut or sharp s every few words. The counter of_memchr_rate is the test's rate as a
// share of memchr's. IsUtf8Structure runs the version the processor allows; each version
// is also timed on its own.
#include <benchmark/benchmark.h>

#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>

#include "bench/ratio.h"
#include "tools/textformat.h"
#include "tools/utf8_structure.h"

namespace {

constexpr size_t kSize = size_t{64} << 20;

std::string Fill(std::string_view unit) {
  std::string s;
  s.reserve(kSize + unit.size());
  while (s.size() < kSize) s += unit;
  s.resize(kSize);
  // Cut where a character starts, so that the text stays whole.
  while (!s.empty() && (static_cast<unsigned char>(s.back()) & 0xC0) == 0x80) s.pop_back();
  if (!s.empty() && static_cast<unsigned char>(s.back()) >= 0xC0) s.pop_back();
  return s;
}

const std::string& Ascii() {
  static const std::string s = Fill("The quick brown fox jumps over the lazy dog, 0123456789.\r\n");
  return s;
}
const std::string& German() {
  static const std::string s =
      Fill("Gr\xC3\xBC\xC3\x9F" "e aus K\xC3\xB6ln: Die Stra\xC3\x9F" "e f\xC3\xBChrt \xC3\xBC" "ber "
           "die Br\xC3\xBC" "cke zum Flu\xC3\x9F, sagte der B\xC3\xA4" "cker.\r\n");
  return s;
}

void Bytes(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

void Memchr(benchmark::State& state, const std::string& text) {
  for (auto _ : state) benchmark::DoNotOptimize(std::memchr(text.data(), 0xFF, text.size()));
  Bytes(state, text);
}

void Structure(benchmark::State& state, const std::string& text,
               Qm_tools::utf8_structure::Test test) {
  const auto* p = reinterpret_cast<const std::uint8_t*>(text.data());
  bool ok = false;
  for (auto _ : state) benchmark::DoNotOptimize(ok = test(p, text.size()));
  if (!ok) state.SkipWithError("text not shaped like UTF-8");
  Bytes(state, text);
  state.counters["of_memchr_rate"] =
      bench::Ratio([&] { benchmark::DoNotOptimize(std::memchr(p, 0xFF, text.size())); },
                   [&] { benchmark::DoNotOptimize(test(p, text.size())); });
}

namespace u = Qm_tools::utf8_structure;

void BM_Memchr_Ascii64M(benchmark::State& state) { Memchr(state, Ascii()); }
void BM_IsUtf8Structure_Ascii64M(benchmark::State& state) {
  Structure(state, Ascii(), Qm_tools::IsUtf8Structure);
}
void BM_Memchr_German64M(benchmark::State& state) { Memchr(state, German()); }
void BM_IsUtf8Structure_German64M(benchmark::State& state) {
  Structure(state, German(), Qm_tools::IsUtf8Structure);
}
void BM_Portable_Ascii64M(benchmark::State& state) { Structure(state, Ascii(), u::Portable); }
void BM_Portable_German64M(benchmark::State& state) { Structure(state, German(), u::Portable); }
#ifdef QM_UTF8_STRUCTURE_X86
void BM_Sse2_Ascii64M(benchmark::State& state) { Structure(state, Ascii(), u::Sse2); }
void BM_Sse2_German64M(benchmark::State& state) { Structure(state, German(), u::Sse2); }
void BM_Avx2_Ascii64M(benchmark::State& state) {
  if (u::HasAvx2()) Structure(state, Ascii(), u::Avx2);
  else state.SkipWithError("no AVX2 here");
}
void BM_Avx2_German64M(benchmark::State& state) {
  if (u::HasAvx2()) Structure(state, German(), u::Avx2);
  else state.SkipWithError("no AVX2 here");
}
#endif

}  // namespace

BENCHMARK(BM_Memchr_Ascii64M)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IsUtf8Structure_Ascii64M)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Memchr_German64M)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_IsUtf8Structure_German64M)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Portable_Ascii64M)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Portable_German64M)->Unit(benchmark::kMillisecond);
#ifdef QM_UTF8_STRUCTURE_X86
BENCHMARK(BM_Sse2_Ascii64M)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Sse2_German64M)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Avx2_Ascii64M)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Avx2_German64M)->Unit(benchmark::kMillisecond);
#endif

BENCHMARK_MAIN();
