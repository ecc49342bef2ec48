// qm_Like against the plain reading of its rule, on long texts and patterns made by
// repeating fuzzed units: runs of one letter, stretches longer than 64 characters, '?'
// inside stretches and right after stars.
//
// Input: byte 0 picks the decoding (a small alphabet with '*' and '?' and letters that
// share a low byte with 'a', or raw UTF-16 byte pairs), byte 1 how often the text's unit
// repeats, byte 2 how often the pattern's; the rest is text unit 0xFF pattern unit.
#include <cstddef>
#include <cstdint>
#include <string>

#include "fuzz/fuzz_input.h"
#include "tests/slow_references.h"
#include "tools/search.h"

using std::u16string;

namespace {

u16string Repeated(const u16string& unit, std::size_t times) {
  u16string s;
  for (std::size_t i = 0; i < times; ++i) s += unit;
  return s;
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  if (size < 3) return 0;
  const bool raw = data[0] & 1;
  const std::size_t textRepeats = 1 + data[1] % 200, patternRepeats = 1 + data[2] % 16;
  data += 3;
  size -= 3;
  std::size_t cut = 0;
  while (cut < size && data[cut] != 0xFF) ++cut;
  constexpr std::u16string_view kAlphabet = u"aaaab*?\u0161\u0100";
  const u16string textUnit = fuzz::DecodeText(data, cut, raw, kAlphabet);
  const u16string patternUnit =
      cut < size ? fuzz::DecodeText(data + cut + 1, size - cut - 1, raw, kAlphabet) : u16string();
  if (textUnit.size() * textRepeats > 20000 || patternUnit.size() * patternRepeats > 2000) return 0;
  const u16string text = Repeated(textUnit, textRepeats);
  const u16string pattern = Repeated(patternUnit, patternRepeats);
  fuzz::Check(Qm_tools::qm_Like(text, pattern) == slow::Like(text, pattern), "qm_Like");
  // The same pattern once more with a star in front, so that its first stretch is searched.
  const u16string starred = u"*" + pattern;
  fuzz::Check(Qm_tools::qm_Like(text, starred) == slow::Like(text, starred), "qm_Like *");
  return 0;
}
