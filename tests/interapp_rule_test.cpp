// Which window a title search accepts, and what the wide calls read from short strings.
#include "tools/interapp.h"

#include <gtest/gtest.h>

#include <string>

using namespace Qm_tools;
using std::u16string;

namespace {

TEST(InterappRule, WindowTitleMatches) {
  const u16string title78 = u16string(70, u'x') + u"tail-end";  // exactly 78
  const u16string class80 = u16string(78, u'C') + u"XY";
  struct Case { const char* what; u16string wantClass, titlePart, windowClass, windowTitle;
                bool match; } cases[] = {
      {"class and part", u"TForm", u"edit", u"TForm", u"Edit me", true},
      {"class ignores ASCII case", u"tFORM", u"me", u"TForm", u"Edit me", true},
      {"class compare is ASCII only", u"TÄForm", u"me", u"TäForm", u"Edit me", false},
      {"other class", u"TForm", u"me", u"TButton", u"Edit me", false},
      {"title lowered by locale", u"", u"äpfel", u"Any", u"ÄPFEL kaufen", true},
      {"no class wanted: any class", u"", u"me", u"", u"Edit me", true},
      {"part not in title", u"", u"you", u"Any", u"Edit me", false},
      {"empty part never matches", u"", u"", u"Any", u"Edit me", false},
      {"empty title never matches", u"", u"x", u"Any", u"", false},
      {"78th character is seen", u"", u"tail-end", u"Any", title78 + u"!", true},
      {"79th character is not", u"", u"end!", u"Any", title78 + u"!", false},
      {"class cut to 78", class80.substr(0, 78), u"me", class80, u"Edit me", true},
      {"long wanted class never equals", class80, u"me", class80, u"Edit me", false},
  };
  for (const Case& c : cases)
    EXPECT_EQ(WindowTitleMatches(c.wantClass, c.titlePart, c.windowClass, c.windowTitle), c.match)
        << c.what;
}

TEST(InterappRule, WideReadingPairsTheBytes) {
  struct Case { std::string bytes; u16string wide; } cases[] = {
      {"", u""}, {"A", u"A"}, {"AB", u"\u4241"}, {"ABC", u"\u4241C"},
      {"TForm", u"\u4654\u726f\u006d"}, {"\xE4", u"\u00E4"}, {std::string("A\0BC", 4), u"A\u4342"},
      {std::string("\0A", 2), u"\u4100"}, {std::string("\0\0A", 3), u""},
      // Full strings (longer ones are cut) lose the appended zero; the reading still ends.
      {std::string(254, 'a'), u16string(127, u'\u6161')},
      {std::string(255, 'a'), u16string(127, u'\u6161') + u"a"},
      {std::string(300, 'a'), u16string(127, u'\u6161') + u"a"},
  };
  for (const Case& c : cases)
    EXPECT_EQ(WideReadingOf(ShortString(c.bytes)), c.wide) << c.bytes.size() << " bytes";
}

}  // namespace
