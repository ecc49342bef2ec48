// WordPos, WordPos2 and WordsInText against the plain reading of their rule, on texts that
// repeat a fuzzed unit many times, so that rejected matches and the later-occurrence gate
// come in long runs.
//
// Input: byte 0 picks the decoding (a small alphabet of letters, boundaries and
// case-folding letters, or raw UTF-16 byte pairs), byte 1 how often the text's unit
// repeats; the rest is word 0xFF text unit.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/fuzz_input.h"
#include "tests/slow_references.h"
#include "tools/search.h"

using std::u16string;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 2) return 0;
  const bool raw = data[0] & 1;
  const std::size_t repeats = 1 + data[1] % 128;
  data += 2;
  size -= 2;
  std::size_t cut = 0;
  while (cut < size && data[cut] != 0xFF) ++cut;
  constexpr std::u16string_view kAlphabet = u"abAB x-1äİıiΣσß";
  const u16string word = fuzz::DecodeText(data, cut, raw, kAlphabet);
  const u16string unit =
      cut < size ? fuzz::DecodeText(data + cut + 1, size - cut - 1, raw, kAlphabet) : u16string();
  if (unit.size() * repeats > 6000) return 0;
  u16string text;
  for (std::size_t i = 0; i < repeats; ++i) text += unit;

  const int wide = slow::WordPos(word, text, slow::kWideLetters, slow::kWideLetters);
  fuzz::Check(Qm_tools::WordPos(word, text, false) == wide, "WordPos");
  fuzz::Check(Qm_tools::WordPos(word, text, true) ==
                  slow::WordPos(word, text, slow::kWideLettersDigits, slow::kWideLetters),
              "WordPos with digits");
  fuzz::Check(Qm_tools::WordPos2(word, text) ==
                  slow::WordPos(word, text, slow::kWideLettersHyphen, slow::kWideLettersHyphen),
              "WordPos2");
  // The word's first character splits it into fields.
  if (!word.empty()) {
    bool any = false;
    for (std::size_t from = 0; from <= word.size();) {
      std::size_t to = word.find(word[0], from);
      if (to == u16string::npos) to = word.size();
      if (to > from)
        any = any || slow::WordPos(word.substr(from, to - from), text, slow::kWideLetters,
                                   slow::kWideLetters) > 0;
      from = to + 1;
    }
    fuzz::Check(Qm_tools::WordsInText(word[0], word, text) == any, "WordsInText");
  }
  return 0;
}
