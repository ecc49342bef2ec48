// Texts in every script: for round trips through anything that stores text for the user.
// Each text is non-empty, has no line break or control character, and no blank at either
// end (INI values lose those by their format); it starts with a letter, so that it does
// not read as a comment, a section or a quoted value.
#pragma once

#include <cstdio>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "rtl/ustring.h"

namespace nox_test {

inline std::vector<std::u16string> UnicodeCorpus() {
  // The first code point of each block of the Basic Multilingual Plane that holds letters,
  // and how many code points of it to walk.
  static const struct { char16_t from; int span; } kBlocks[] = {
      {0x00C0, 64},  {0x0100, 128}, {0x0180, 208}, {0x0250, 96},  {0x0370, 144}, {0x0400, 256},
      {0x0500, 48},  {0x0531, 38},  {0x05D0, 27},  {0x0620, 42},  {0x0671, 99},  {0x0710, 32},
      {0x0750, 48},  {0x0780, 38},  {0x07CA, 33},  {0x0800, 22},  {0x0840, 25},  {0x0905, 53},
      {0x0985, 53},  {0x0A05, 53},  {0x0A85, 53},  {0x0B05, 53},  {0x0B85, 53},  {0x0C05, 53},
      {0x0C85, 53},  {0x0D05, 53},  {0x0D85, 64},  {0x0E01, 48},  {0x0E81, 48},  {0x0F40, 45},
      {0x1000, 43},  {0x10A0, 96},  {0x1100, 256}, {0x1200, 384}, {0x13A0, 85},  {0x1401, 600},
      {0x1681, 26},  {0x16A0, 75},  {0x1700, 18},  {0x1780, 52},  {0x1820, 88},  {0x1900, 30},
      {0x1950, 30},  {0x1980, 44},  {0x1A00, 23},  {0x1B05, 47},  {0x1C00, 36},  {0x1E00, 256},
      {0x1F00, 256}, {0x2C00, 96},  {0x2C80, 100}, {0x2D30, 56},  {0x3041, 86},  {0x30A1, 90},
      {0x3105, 41},  {0x3131, 94},  {0x31A0, 27},  {0x3400, 512}, {0x4E00, 2048}, {0x8000, 2048},
      {0x9000, 2048}, {0xA000, 1165}, {0xA4D0, 40}, {0xA500, 300}, {0xA640, 96}, {0xA6A0, 70},
      {0xA720, 224}, {0xA840, 52}, {0xA882, 50},  {0xA90A, 28},  {0xA984, 47},  {0xAA00, 41},
      {0xAB30, 64},  {0xAC00, 4096}, {0xC000, 4096}, {0xD000, 1956}, {0xF900, 366}, {0xFB50, 98},
      {0xFE70, 140}, {0xFF21, 26},  {0xFF66, 88},
  };
  std::vector<std::u16string> corpus;
  for (const auto& b : kBlocks) {
    // Twelve texts a block: words of three to nine of its code points, spread over it.
    for (int k = 0; k < 12; ++k) {
      std::u16string word;
      const int length = 3 + (k * 5) % 7;
      for (int i = 0; i < length; ++i)
        word += static_cast<char16_t>(b.from + (k * 37 + i * 11) % b.span);
      corpus.push_back(k % 3 == 0 ? u"x" + word : k % 3 == 1 ? word + u" " + word : word);
    }
  }
  // Beyond the plane, as surrogate pairs: emoji, historic scripts, CJK extensions, maths.
  for (const char32_t c : {0x1F600u, 0x1F680u, 0x1F9D1u, 0x10330u, 0x10400u, 0x1D400u,
                           0x1D56Cu, 0x20000u, 0x2A6D6u, 0x2F800u, 0x13000u, 0x1F1E9u}) {
    for (int k = 0; k < 4; ++k) {
      std::u16string word = u"z";
      for (int i = 0; i <= k; ++i) {
        const char32_t v = c + static_cast<char32_t>(i * 3);
        word += static_cast<char16_t>(0xD800 + ((v - 0x10000) >> 10));
        word += static_cast<char16_t>(0xDC00 + ((v - 0x10000) & 0x3FF));
      }
      corpus.push_back(word);
    }
  }
  // Combining marks, right-to-left text with its marks, and the format's own characters.
  for (const char16_t* s : {
           u"e\u0301te\u0301", u"a\u0308\u0323b", u"n\u0303o\u0302\u0300", u"Z\u0335\u0336a",
           u"\u05E9\u05B8\u05DC\u05D5\u05B9\u05DD", u"\u0627\u0644\u0633\u0644\u0627\u0645",
           u"abc \u200F\u05D0\u05D1\u200E def", u"\u202Bx\u202C", u"\u0915\u094D\u0937",
           u"a=b", u"k=v=w", u"x;y", u"A [S] B", u"A ]x[ B", u"say \"hi\" now", u"it's",
           u"C:\\Users\\\u0141ukasz\\Projekte\\", u"Gr\u00FC\u00DFe \u03A9 \u4E2D", u"a\u00A0b",
           u"\u00A9\u00AE\u2122\u20AC", u"x\uFEFFy", u"%APPDATA%", u"a&b<c>d",
       })
    corpus.emplace_back(s);
  return corpus;
}

// Counts the characters of each text that a round trip does not give back in their places,
// reports the first few texts that lost any, and prints the totals at its end.
class TLossCount {
 public:
  ~TLossCount() { std::printf("%zu texts, %zu characters, %zu lost\n", texts_, characters_, lost_); }
  void Check(const char* where, const std::u16string& want, const std::u16string& got) {
    ++texts_;
    characters_ += want.size();
    size_t lost = want.size() > got.size() ? want.size() - got.size() : 0;
    for (size_t i = 0; i < want.size() && i < got.size(); ++i) lost += want[i] != got[i];
    lost_ += lost;
    if (lost > 0 && ++reported_ <= 5)
      ADD_FAILURE() << where << ": " << rtl::Utf16ToUtf8(want) << " came back as "
                    << rtl::Utf16ToUtf8(got);
  }
  size_t Lost() const { return lost_; }

 private:
  size_t texts_ = 0, characters_ = 0, lost_ = 0, reported_ = 0;
};

}  // namespace nox_test

