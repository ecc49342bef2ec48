// Word and position search, checked also against slow literal definitions on generated text.
#include "tools/search.h"

#include <gtest/gtest.h>

#include <random>
#include <string>
#include <vector>

#include "rtl/classes.h"
#include "rtl/locale.h"
#include "rtl/ustring.h"
#include "tests/slow_references.h"
#include "tools/char_scan.h"

using namespace Qm_tools;
using std::u16string;
using std::u16string_view;

namespace {

// InstrLeft as defined: a window k..limit grown leftwards until it holds the needle.
int WindowInstrLeft(int limit, u16string_view text, u16string_view needle) {
  for (int k = limit; k >= 1; --k)
    if (rtl::Pos(needle, rtl::Copy(text, k, limit - k + 1)) > 0) return k;
  return 0;
}

// Plain wildcard matching, which qm_Like must equal wherever no '?' follows a '*'.
bool Glob(u16string_view t, u16string_view p) {
  std::vector<std::vector<char>> m(p.size() + 1, std::vector<char>(t.size() + 1, 0));
  m[0][0] = 1;
  for (size_t i = 1; i <= p.size(); ++i)
    for (size_t j = 0; j <= t.size(); ++j)
      m[i][j] = p[i - 1] == u'*'
                    ? m[i - 1][j] || (j > 0 && m[i][j - 1])
                    : j > 0 && m[i - 1][j - 1] && (p[i - 1] == u'?' || p[i - 1] == t[j - 1]);
  return m[p.size()][t.size()];
}

int SlowWordPos(u16string_view word, u16string_view text, bool withDigits) {
  return slow::WordPos(word, text, withDigits ? slow::kWideLettersDigits : slow::kWideLetters,
                       slow::kWideLetters);
}
int SlowWordPos2(u16string_view word, u16string_view text) {
  return slow::WordPos(word, text, slow::kWideLettersHyphen, slow::kWideLettersHyphen);
}

u16string Random(std::mt19937& rng, u16string_view alphabet, size_t maxLen) {
  u16string s(std::uniform_int_distribution<size_t>(0, maxLen)(rng), u' ');
  std::uniform_int_distribution<size_t> pick(0, alphabet.size() - 1);
  for (auto& c : s) c = alphabet[pick(rng)];
  return s;
}


// Text glued from pieces picked at random: rejected matches, runs, case-folding letters.
u16string Glued(std::mt19937& rng, const std::vector<u16string_view>& pieces, size_t maxPieces) {
  u16string s;
  const size_t count = std::uniform_int_distribution<size_t>(0, maxPieces)(rng);
  for (size_t i = 0; i < count; ++i) s += pieces[rng() % pieces.size()];
  return s;
}

// Runs of one character, mostly of the first: long near-misses for the wildcard matcher.
u16string Runs(std::mt19937& rng, u16string_view alphabet, size_t maxLen) {
  u16string s;
  const size_t len = std::uniform_int_distribution<size_t>(0, maxLen)(rng);
  while (s.size() < len) {
    const char16_t c = rng() % 3 ? alphabet[0] : alphabet[rng() % alphabet.size()];
    s.append(std::min<size_t>(len - s.size(), 1 + rng() % (rng() % 4 ? 3 : 200)), c);
  }
  return s;
}

// A pattern of stars, '?'s and stretches. A stretch is a run of the text's first letter
// with one other letter in it (lengths about the 64-character word boundaries) or a piece
// cut from the text; either may have a few characters turned into '?' or another letter.
u16string HostilePattern(std::mt19937& rng, const u16string& text, u16string_view alphabet) {
  static constexpr size_t kLengths[] = {1, 2, 3, 5, 31, 62, 63, 64, 65, 66, 127, 128, 129, 200};
  u16string p;
  const int tokens = 1 + static_cast<int>(rng() % 6);
  for (int i = 0; i < tokens; ++i) {
    const unsigned kind = rng() % 8;
    if (kind == 0 || kind == 1) {
      p += u'*';
    } else if (kind == 2) {
      p += rng() % 2 ? u"?" : u"*?";
    } else {
      u16string piece;
      if (kind < 6 || text.empty()) {
        piece.assign(kLengths[rng() % std::size(kLengths)], alphabet[0]);
        piece[rng() % piece.size()] = alphabet[rng() % alphabet.size()];
      } else {
        const size_t from = rng() % text.size();
        piece = text.substr(from, 1 + rng() % kLengths[rng() % std::size(kLengths)]);
      }
      for (auto& c : piece) {
        if (rng() % 50 == 0) c = u'?';
        if (rng() % 100 == 0) c = alphabet[rng() % alphabet.size()];
      }
      p += piece;
    }
  }
  return p;
}

}  // namespace

TEST(SearchWord, WholeWordRoutinesKeepTheirBoundaryRules) {
  struct Case { const char* routine; int got, want; };
  const Case cases[] = {
      {"accents are letters", WordPos(u"ab", u"éab", false), 0},
      {"first only", WordPos3(u"ab", u"xab ab"), 0}, {"left only", WordLeftPos(u"ab", u"ab1"), 1},
      {"letters only", CharsetPos(u"ab", u"xab ab"), 0},
      {"é is no Letter", CharsetPos(u"ab", u"éab"), 2},
      {"left only, bad left", WordLeftPos(u"ab", u"äab"), 0},
      {"from start", WordPosFrom(u"ab", u"ab xab ab", 2), 0},
      {"from start whole", WordPosFrom(u"AB", u"ab x ab", 2), 6},
      {"start 0 shifts", WordPosFrom(u"a.", u"  a.", 0), 2},
      {"start 0 shifts to 0", WordPosFrom(u"ab", u"ab", 0), 0},
  };
  for (const auto& c : cases) EXPECT_EQ(c.got, c.want) << c.routine;
  EXPECT_TRUE(WordsInText(u';', u"zz;;AB", u"x ab"));
  EXPECT_FALSE(WordsInText(u';', u"zz;xa", u"x ab"));
}

TEST(SearchWord, IterativeSearchEqualsRecursiveDefinition) {
  std::mt19937 rng(20240611);
  const u16string_view alphabet = u"ab AB-1xäÄ";
  for (int i = 0; i < 40000; ++i) {
    const u16string text = Random(rng, alphabet, 24);
    u16string word = Random(rng, alphabet, 3);
    SCOPED_TRACE(rtl::Utf16ToUtf8(u"word '" + word + u"' text '" + text + u"'"));
    ASSERT_EQ(WordPos(word, text, false), SlowWordPos(word, text, false));
    ASSERT_EQ(WordPos(word, text, true), SlowWordPos(word, text, true));
    ASSERT_EQ(WordPos2(word, text), SlowWordPos2(word, text));
  }
}

TEST(SearchWord, EqualsTheRuleOnHostileText) {
  struct Case {
    const char* what;
    std::vector<u16string_view> pieces, words;
  };
  const Case cases[] = {
      {"rejected matches",
       {u"xab ", u"xAB ", u"ab", u"aB", u" ", u"-", u"1", u"ab1", u"äb", u"ab-", u"@ab", u"[ab",
        u"`AB", u"{ab", u"Zab", u"zab"},
       {u"ab", u"AB", u"b", u"a", u"b ", u"ab-"}},
      {"runs of one letter", {u"a", u"aaaa", u"aaaaaaaaaaaaaaaaaaa", u" ", u"A", u"b"},
       {u"aa", u"aaa", u"aaaaaaaaa", u"a", u"aA", u"aab"}},
      {"case-folding letters",
       {u"İ", u"i", u"ı", u"I", u"Σ", u"σ", u"ς", u"ß", u"ẞ", u"SS", u"ss", u" ", u"x"},
       {u"i", u"İ", u"σ", u"Σς", u"ß", u"iı", u"ss"}},
      {"letters past Latin-1", {u"Āb", u"āb", u"ab", u"Ā", u"š", u"ab\u0161", u" "},
       {u"ab", u"āb", u"Ā", u"b"}},
  };
  std::mt19937 rng(1811);
  for (const auto& c : cases) {
    for (int i = 0; i < 300; ++i) {
      const u16string text = Glued(rng, c.pieces, i % 10 ? 40 : 600);
      const u16string_view word = c.words[rng() % c.words.size()];
      SCOPED_TRACE(rtl::Utf16ToUtf8(u"word '" + u16string(word) + u"' text '" + text + u"'"));
      ASSERT_EQ(WordPos(word, text, false), SlowWordPos(word, text, false)) << c.what;
      ASSERT_EQ(WordPos(word, text, true), SlowWordPos(word, text, true)) << c.what;
      ASSERT_EQ(WordPos2(word, text), SlowWordPos2(word, text)) << c.what;
      const u16string other(c.words[rng() % c.words.size()]);
      ASSERT_EQ(WordsInText(u';', other + u";" + u16string(word), text),
                SlowWordPos(other, text, false) || SlowWordPos(word, text, false))
          << c.what;
    }
  }
}

TEST(SearchWord, MatchesAcrossTheEdgesOfTheLoweredWindowsAreFoundOnce) {
  // The text is lowered in windows of 4096 characters; matches, rejected ones and surrogate
  // pairs are put just before, on and after the edges between them.
  const std::pair<u16string_view, u16string_view> cases[] = {
      {u"ab", u"xAB ab"}, {u"ab", u"AB1ab"}, {u"abc", u"xabcABC abc"}, {u"a", u"Aa a"},
      {u"ab", u"\U0001F600ab"}, {u"ab", u"a\U0001F600AB"}, {u"aaaa", u"aaaaaaaaa"},
  };
  for (const auto& [word, piece] : cases) {
    for (const size_t edge : {4096, 8192}) {
      for (size_t at = edge - 12; at <= edge + 4; ++at) {
        u16string text(8200, u' ');
        text.replace(at, piece.size(), piece);
        SCOPED_TRACE(rtl::Utf16ToUtf8(u16string(word) + u" in " + u16string(piece)) + " at " +
                     std::to_string(at));
        ASSERT_EQ(WordPos(word, text, true), SlowWordPos(word, text, true));
        ASSERT_EQ(WordPos2(word, text), SlowWordPos2(word, text));
      }
    }
  }
}

TEST(SearchWord, EveryCharacterBeforeALaterMatchIsJudgedByTheSet) {
  // Rejected matches first, then one behind each character in turn, with text after it.
  u16string rejected;
  for (int i = 0; i < 20; ++i) rejected += u"xab ";
  for (char16_t c = 1; c < 0x200; ++c) {
    const u16string text = rejected + c + u"ab" + u16string(80, u' ');
    ASSERT_EQ(WordPos(u"ab", text, false), SlowWordPos(u"ab", text, false)) << int(c);
    ASSERT_EQ(WordPos(u"ab", text, true), SlowWordPos(u"ab", text, true)) << int(c);
    ASSERT_EQ(WordPos2(u"ab", text), SlowWordPos2(u"ab", text)) << int(c);
  }
}

TEST(SearchWord, LongHostileTextNeedsNoDeepRecursion) {
  u16string rejected, lowerCase;
  for (int i = 0; i < 200000; ++i) rejected += u"xAB ", lowerCase += u"xab ";
  EXPECT_EQ(WordPos(u"ab", rejected + u"ab", false), 800001);
  EXPECT_EQ(WordPos(u"ab", lowerCase, false), 0);
  EXPECT_EQ(WordPos2(u"ab", lowerCase + u"ab"), 800001);
}

TEST(SearchScan, VectorMasksEqualThoseTakenOneCharacterAtATime) {
  // Every UTF-16 unit for the letter mask; pairs at every gap over the letters' edges.
  std::vector<char16_t> all(0x10000);
  for (size_t c = 0; c < all.size(); ++c) all[c] = static_cast<char16_t>(c);
  for (size_t at = 0; at < all.size(); at += 64)
    ASSERT_EQ(char_scan::AsciiLetterMask(&all[at]), char_scan::AsciiLetterMaskByChar(&all[at]))
        << at;
  std::mt19937 rng(16);
  const u16string_view alphabet = u"@AZ[`az{\u0141\u0161\uFF21";
  for (int i = 0; i < 2000; ++i) {
    const u16string text = Random(rng, alphabet, 200) + u16string(200, u'a');
    const size_t gap = rng() % 70, at = rng() % (text.size() - 64 - gap);
    const char16_t a = alphabet[rng() % alphabet.size()], b = alphabet[rng() % alphabet.size()];
    ASSERT_EQ(char_scan::PairMask(&text[at], a, b, gap),
              char_scan::PairMaskByChar(&text[at], a, b, gap));
  }
}

TEST(SearchPosition, FindsOccurrencesAsCallersExpect) {
  struct Case { const char* routine; int got, want; };
  int pos = -5;
  const Case cases[] = {
      {"Instr", Instr(2, u"abab", u"ab"), 3}, {"RPosFrom", RPosFrom(u"a", u"banana", 5), 4},
      {"Instr below 1 shifts", Instr(-2, u"xab", u"ab"), -1},
      {"RPosFrom huge limit", RPosFrom(u"na", u"banana", 0x7fffffff), 5},
      {"LastPos", LastPos(u"na", u"banana"), 5}, {"LastPos empty", LastPos(u"", u"abb"), 0},
      {"LastPos misses after false start", LastPos(u"ab", u"abb"), 0},
      {"OccurNr overlapping", OccurNr(u"aa", u"aaaa", 3), 3},
      {"OccurNr too few", OccurNr(u"x", u"abc", 1), -1},
      {"OccurNr zeroth", OccurNr(u"a", u"abc", 0), -1},
      {"OccurNr empty needle", OccurNr(u"", u"abc", 2), 2},
      {"ULPos", ULPos(u"ÄB", u"xäb"), 2}, {"FirstDifferent", FirstDifferent(u'0', u"007"), 3},
      {"qmxPos misses", qmxPos(u"z", u"abc", pos), false}, {"qmxPos's position", pos, 0},
  };
  for (const auto& c : cases) EXPECT_EQ(c.got, c.want) << c.routine;
}

TEST(SearchPosition, ReverseSearchEqualsWindowDefinition) {
  std::mt19937 rng(7);
  for (int i = 0; i < 20000; ++i) {
    const u16string text = Random(rng, u"aab", 12);
    const u16string needle = Random(rng, u"ab", 3);
    const int limit = std::uniform_int_distribution<int>(-1, 15)(rng);
    ASSERT_EQ(InstrLeft(limit, text, needle), WindowInstrLeft(limit, text, needle));
    ASSERT_EQ(RPos(needle, text), WindowInstrLeft(rtl::Length(text), text, needle));
  }
}

TEST(SearchPosition, ListsAndMarkers) {
  rtl::TStringList list;
  list.SetCommaText(u"alpha,beta");
  EXPECT_EQ(IsTxtInList(u"et", list), 1);
  EXPECT_EQ(IsTxtInList(u"ET", list), -1);
  EXPECT_EQ(IsTxtInList(u"", list), -1);
  EXPECT_EQ(ContentBetween(u"x<a>y</a>", u"<a>", u"</a>"), u"y");
  EXPECT_EQ(ContentBetween(u"x<a>y", u"<a>", u"</a>"), u"");
  EXPECT_EQ(ContentBetween(u"x<a>y</a>", u"", u"</a>"), u"");
  const u16string body(9996, u'-');  // the longest content there may be
  EXPECT_EQ(ContentBetween(u"<a>" + body + u"</a>", u"<a>", u"</a>"), body);
  EXPECT_EQ(ContentBetween(u"<a>-" + body + u"</a>", u"<a>", u"</a>"), u"");
}

TEST(SearchLike, MatchesWholeTextWithLatestStarBacktracking) {
  struct Case { const char16_t *text, *pattern; bool want; };
  const Case cases[] = {
      {u"abc", u"A*", false}, {u"ab", u"*?b", true}, {u"axaxb", u"*?xb", true},
      // The '?' after a star is taken again one past the last literal found, so these
      // miss matches a plain wildcard match would find.
      {u"xbb", u"*?b", false}, {u"axxb", u"*?xb", false}, {u"abb", u"**?b", false},
  };
  for (const auto& c : cases)
    EXPECT_EQ(qm_Like(c.text, c.pattern), c.want)
        << rtl::Utf16ToUtf8(c.text) << " ~ " << rtl::Utf16ToUtf8(c.pattern);
}

TEST(SearchLike, EqualsPlainWildcardsUnlessQuestionMarkFollowsStar) {
  std::mt19937 rng(99);
  for (int i = 0; i < 50000; ++i) {
    const u16string text = Random(rng, u"aab", 10);
    const u16string pattern = Random(rng, u"ab*?", 7);
    if (pattern.find(u"*?") != u16string::npos) continue;
    ASSERT_EQ(qm_Like(text, pattern), Glob(text, pattern))
        << rtl::Utf16ToUtf8(text) << " ~ " << rtl::Utf16ToUtf8(pattern);
  }
}

TEST(SearchLike, EqualsTheRuleOnHostileText) {
  // Letters that share a low byte with 'a' (U+0161, U+FF61) or lie on another page (U+0100).
  const u16string_view alphabets[] = {u"ab", u"aAb", u"a\u0161\u0100\uFF61", u"ba?"};
  std::mt19937 rng(4242);
  for (const u16string_view alphabet : alphabets) {
    for (int i = 0; i < 1500; ++i) {
      const u16string text = Runs(rng, alphabet, i % 8 ? 300 : 3000);
      const u16string pattern = HostilePattern(rng, text, alphabet);
      ASSERT_EQ(qm_Like(text, pattern), slow::Like(text, pattern))
          << rtl::Utf16ToUtf8(text) << " ~ " << rtl::Utf16ToUtf8(pattern);
    }
  }
}

TEST(SearchLike, StretchesThatAlmostMatchEverywhereFindTheirFirstMatch) {
  // Runs of 'a' parted by single other letters (one sharing 'a''s low byte, one on another
  // page, one far up); the stretches are runs of 'a' with a few of those letters or '?' in
  // them, so that nearly every place looks right at both ends and fails inside.
  const u16string_view others = u"b\u0161\u0100\uFF61?";
  static constexpr size_t kLengths[] = {12, 40, 63, 64, 65, 100, 129, 140};
  std::mt19937 rng(64);
  const auto stretch = [&] {
    u16string s(kLengths[rng() % std::size(kLengths)], u'a');
    for (unsigned k = rng() % 3; k-- > 0;) s[1 + rng() % (s.size() - 1)] = others[rng() % 5];
    return s;
  };
  for (int i = 0; i < 1500; ++i) {
    u16string text;
    const size_t size = 200 + rng() % 3000;
    while (text.size() < size) text += u16string(1 + rng() % 300, u'a') + others[rng() % 4];
    // '?' after a star makes the search skip some places (see qm_Like).
    const auto star = [&] { return rng() % 3 ? u"*" : rng() % 2 ? u"*?" : u"*??"; };
    u16string pattern = star() + stretch();
    if (rng() % 2) pattern += star() + stretch();
    if (rng() % 2) pattern += u"*";
    ASSERT_EQ(qm_Like(text, pattern), slow::Like(text, pattern))
        << rtl::Utf16ToUtf8(text) << " ~ " << rtl::Utf16ToUtf8(pattern);
  }
}

TEST(SearchLike, ManyStarsOnLongTextStayFast) {
  const u16string text(100000, u'a');
  u16string stars;
  for (int i = 0; i < 2000; ++i) stars += u"*a";
  EXPECT_FALSE(qm_Like(text, stars + u"b"));
  EXPECT_TRUE(qm_Like(text, stars));
  EXPECT_FALSE(qm_Like(text, u"*" + u16string(300, u'a') + u"b"));
}

TEST(SearchText, PredicatesAndFormatters) {
  struct Case { u16string got, want; };
  const Case cases[] = {
      {GetTwoNr(7), u"07"}, {GetTwoNr(-3), u"0-3"}, {GetTwoNr(10), u"10"},
      {GetThreeNr(5), u"005"}, {GetThreeNr(42), u"042"}, {GetThreeNr(250), u"250"},
      {GetThreeNr(10), u""}, {GetThreeNr(100), u""}, {GetThreeNr(-1), u"00-1"},
      {qm_HexStrInvert(u"A1B2C3"), u"C3B2A1"}, {qm_HexStrInvert(u"ABC"), u"BC"},
      {qm_StrInvert(u"abc"), u"cba"}, {RemoveDblSpaces(u"  a \t  b  "), u" a \t b "},
      {LeadStr(u"7", u'0', 3), u"007"}, {LeadStr(u"1234", u'0', 3), u"1234"},
      {ReplaceStr(u"aXbX", u"X", u"yy", false), u"ayybyy"},
  };
  for (const auto& c : cases) EXPECT_EQ(c.got, c.want);
  EXPECT_EQ(std::pair(NoAlpha(u"12 é-"), NoAlpha(u"12ß")), std::pair(true, false));
  EXPECT_EQ(std::pair(DigitsInStr(u"ab3"), DigitsInStr(u"abc")), std::pair(true, false));
}

TEST(SearchTokenizer, WalksItemsInEitherDirection) {
  struct Case { u16string_view text; std::vector<u16string> forward, backward; };
  const Case cases[] = {
      {u"ab;cd;ef", {u"ab", u"cd", u"ef"}, {u"ef", u"cd", u"ab"}}, {u"a;b", {u"a"}, {u"b"}},
      {u"a", {}, {}}, {u"abc", {u"abc"}, {u"abc"}}, {u"a;;bc", {u"a", u"", u"bc"}, {u"bc", u""}},
      {u";ab", {u"", u"ab"}, {u"ab", u""}}, {u"ab;", {u"ab"}, {u"", u"ab"}}, {u"", {}, {u""}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(rtl::Utf16ToUtf8(c.text));
    TSequntialStrSearch walk(c.text, u';');
    std::vector<u16string> got;
    while (walk.Findnext()) got.push_back(walk.CurrentItem());
    EXPECT_EQ(got, c.forward);
    walk.Init(c.text, u';');
    got.clear();
    while (walk.FindPrev()) got.push_back(walk.CurrentItem());
    EXPECT_EQ(got, c.backward);
    EXPECT_EQ(walk.CurrentItem(), u"");
  }
  TSequntialStrSearch endsInDelimiter(u"ab;", u';');
  endsInDelimiter.Findnext();
  EXPECT_FALSE(endsInDelimiter.Findnext());
  EXPECT_EQ(endsInDelimiter.CurrentItem(), u"ab");
}
