// Every version of the structural UTF-8 test (portable, SSE2, AVX2 where the processor has
// it, and IsUtf8Structure, which picks one) against the plain byte-by-byte reading of the
// rule. The fuzzed bytes are put behind an ASCII run of chosen length, so that they fall
// across every edge of words and vector blocks, and repeated, so that the main loops and
// their ASCII skip see them; the result is also checked with the end cut short.
//
// Input: byte 0 the ASCII run's length, byte 1 how often the rest repeats; the rest.
#include <cstddef>
#include <cstdint>
#include <vector>

#include "fuzz/fuzz_input.h"
#include "tests/slow_references.h"
#include "tools/textformat.h"
#include "tools/utf8_structure.h"

namespace {

void CheckAll(const std::uint8_t* p, std::size_t n) {
  namespace u = Qm_tools::utf8_structure;
  const bool expected = slow::Utf8Structure(p, n);
  fuzz::Check(Qm_tools::IsUtf8Structure(p, n) == expected, "IsUtf8Structure");
  fuzz::Check(u::Portable(p, n) == expected, "portable");
#ifdef QM_UTF8_STRUCTURE_X86
  fuzz::Check(u::Sse2(p, n) == expected, "SSE2");
  static const bool avx2 = u::HasAvx2();
  if (avx2) fuzz::Check(u::Avx2(p, n) == expected, "AVX2");
#endif
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  std::vector<std::uint8_t> buffer(data[0], 'a');
  const std::size_t repeats = 1 + data[1] % 16;
  for (std::size_t i = 0; i < repeats; ++i) buffer.insert(buffer.end(), data + 2, data + size);
  for (std::size_t cut = 0; cut < 4 && cut <= buffer.size(); ++cut)
    CheckAll(buffer.data(), buffer.size() - cut);
  if (!buffer.empty()) CheckAll(buffer.data() + 1, buffer.size() - 1);
  return 0;
}
