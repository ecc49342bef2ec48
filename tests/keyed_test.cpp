// Named values in strings and lists: lookup, separators and the case rules of the lists.
#include "tools/keyed.h"

#include <gtest/gtest.h>

#include <string>

namespace {

using Str = std::u16string;

std::string Narrow(const Str& s) { return std::string(s.begin(), s.end()); }

TEST(KeyedString, ReadsValueOrWholeEntry) {
  struct Case { Str name, s, value, entry; };
  const Case cases[] = {
      {u"b", u"a=1,b=2", u"2", u"b=2"},
      {u"dth", u"width=5", u"5", u"dth=5"},  // not anchored at an entry start
      {u"B", u"a=1,b=2", u"", u""},          // case-sensitive
      {u"b", u"a=1,b=2=3,c", u"2=3", u"b=2=3"},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Qm_tools::gns(c.name, c.s, false, u',', u'='), c.value) << Narrow(c.s);
    EXPECT_EQ(Qm_tools::gns(c.name, c.s, true, u',', u'='), c.entry) << Narrow(c.s);
  }
}

using Writer = void (*)(std::u16string_view, std::u16string_view, Str&, char16_t, char16_t);

TEST(KeyedString, WritersReplaceOrAppend) {
  struct Case { Writer write; Str s; char16_t es, ks; Str result; };
  const auto sns = Qm_tools::sns, add = Qm_tools::snsadd, set = Qm_tools::SetToStr;
  const Case cases[] = {
      {sns, u"a=1,b=2,c=3", u',', u'=', u"a=1,b=9,c=3"}, {sns, u"a=1", u',', u'=', u"a=1"},
      {sns, u"xb=1,b=2", u',', u'=', u"xb=9,b=2"},  // first match, inside another entry
      {add, u"", u',', u'=', u"b=9"}, {add, u"a=1", u',', u'=', u"a=1,b=9"},
      {set, u"", u',', u'=', u",b=9"},
      // The update runs to code 5 or the end, and looks for '='.
      {set, u"a=1,b=2,c=3", u',', u'=', u"a=1,b=9"}, {set, u"a:1,b:2", u',', u':', u"a:1,b:2"},
      {set, u"a=1\5b=2\5c=3", u'\5', u'=', u"a=1\5b=9\5c=3"},
  };
  for (const auto& c : cases) {
    Str s = c.s;
    c.write(u"b", u"9", s, c.es, c.ks);
    EXPECT_EQ(s, c.result) << Narrow(c.s);
  }
  Str s = u"ab=1";  // name and value may be views of the string being written
  Qm_tools::snsadd(std::u16string_view(s).substr(0, 1), s, s, u',', u'=');
  EXPECT_EQ(s, u"ab=1,a=ab=1");
}

TEST(KeyedList, WriterMatchesLocaleCaseReaderOnlyAsciiCase) {
  struct Case { Str lines, name, written, read; };
  const Case cases[] = {
      {u"Name=x", u"NAME", u"NAME=y\r\n", u"x"},  // spelled as passed now
      {u"a\nA=5", u"a", u"a\r\na=y\r\n", u"5"},   // lines without '=' do not count
      {u"k=1\nK=2", u"K", u"K=y\r\nK=2\r\n", u"1"},
      {u"k=a=b", u"k=a", u"k=a=b\r\nk=a=y\r\n", u"def"},  // the name ends at the first '='
      {u"Ärger=1", u"äRGER", u"äRGER=y\r\n", u"def"},     // intended asymmetry
  };
  for (const auto& c : cases) {
    rtl::TStringList list;
    list.SetText(c.lines);
    EXPECT_EQ(Qm_tools::GetVerwItem(list, c.name, u"def"), c.read) << Narrow(c.name);
    Qm_tools::SetVerwItem(list, c.name, u"y");
    EXPECT_EQ(list.Text(), c.written) << Narrow(c.name);
  }
}

}  // namespace
