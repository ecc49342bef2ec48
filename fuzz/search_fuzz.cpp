// Word and position search under arbitrary input: no crash anywhere, and on short input
// the one-pass whole-word and reverse searches agree with their literal definitions.
//
// Input: byte 0 picks the decoding, byte 1 is a signed start/limit/count, the rest is
// needle 0xFF text. Decoding either maps each byte into a small alphabet that makes
// words and near-misses likely, or takes byte pairs as raw UTF-16 code units.
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>
#include <string_view>

#include "rtl/locale.h"
#include "rtl/ustring.h"
#include "tools/search.h"
#include "fuzz/fuzz_input.h"
#include "tests/slow_references.h"

using namespace Qm_tools;
using std::u16string;
using std::u16string_view;

namespace {

int WindowInstrLeft(int limit, u16string_view text, u16string_view needle) {
  for (int k = limit; k >= 1; --k)
    if (rtl::Pos(needle, rtl::Copy(text, k, limit - k + 1)) > 0) return k;
  return 0;
}

int CopyOccurNr(u16string_view needle, u16string_view text, int n) {
  int count = 0;
  for (int k = 1; k <= rtl::Length(text); ++k)
    if (rtl::Copy(text, k, rtl::Length(needle)) == needle && ++count == n) return k;
  return -1;
}

u16string Decode(const uint8_t* data, size_t size, bool raw) {
  return fuzz::DecodeText(data, size, raw, u"abAB xä-1Äé");
}

using fuzz::Check;

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size < 2) return 0;
  const bool raw = data[0] & 1;
  const int num = static_cast<int8_t>(data[1]);
  data += 2;
  size -= 2;
  size_t cut = 0;
  while (cut < size && data[cut] != 0xFF) ++cut;
  const u16string word = Decode(data, cut, raw);
  const u16string text = cut < size ? Decode(data + cut + 1, size - cut - 1, raw) : u16string();

  const int wp = WordPos(word, text, false), wpd = WordPos(word, text, true);
  const int wp2 = WordPos2(word, text);
  if (text.size() <= 200) {
    Check(wp == slow::WordPos(word, text, slow::kWideLetters, slow::kWideLetters));
    Check(wpd == slow::WordPos(word, text, slow::kWideLettersDigits, slow::kWideLetters));
    Check(wp2 == slow::WordPos(word, text, slow::kWideLettersHyphen, slow::kWideLettersHyphen));
    Check(InstrLeft(num, text, word) == WindowInstrLeft(num, text, word));
    Check(RPos(word, text) == WindowInstrLeft(rtl::Length(text), text, word));
    Check(OccurNr(word, text, num) == CopyOccurNr(word, text, num));
  }
  const int from = static_cast<int>(rtl::Length(text)) + num;
  const int q = rtl::Pos(word, rtl::Copy(text, num));
  Check(Instr(num, text, word) == (q > 0 ? q + num - 1 : 0));
  (void)RPosFrom(word, text, from);
  (void)InstrLeft(num * 1000000, text, word);
  (void)WordPos3(word, text);
  (void)WordNumberPos(word, text);
  (void)CharsetPos(word, text);
  (void)WordLeftPos(word, text);
  (void)WordPosFrom(word, text, num);
  (void)WordsInText(u' ', word, text);
  (void)LastPos(word, text);
  (void)ULPos(word, text);
  (void)FirstDifferent(word.empty() ? u'a' : word[0], text);
  (void)ContentBetween(text, word, word);
  (void)LeadStr(text, u'0', num + 100);
  (void)GetThreeNr(num * 100000);
  (void)qm_HexStrInvert(text);
  (void)RemoveDblSpaces(text);
  int pos = 0;
  Check(qmxPos(word, text, pos) == (pos > 0));

  const char16_t d = word.empty() ? u';' : word[0];
  TSequntialStrSearch walk(text, d);
  while (walk.Findnext()) Check(walk.CurrentItem().size() <= text.size());
  walk.Init(text, d);
  while (walk.FindPrev()) Check(walk.CurrentItem().size() <= text.size());
  return 0;
}
