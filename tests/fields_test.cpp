// Delimited field strings: the edges that stored lists rely on.
#include "tools/fields.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <string>
#include <vector>

#include "tools/qm_globals.h"

namespace {

using Qm_tools::GetFieldsCount;
using Qm_tools::GetFieldStr;
using Str = std::u16string;

// Strings with adjacent, leading and trailing delimiters, in both writing styles.
const std::vector<Str> kVaried = {u"",          u";",    u";;",    u"a",
                                  u"a;",        u";a",   u"a;b;",  u";a;;b;",
                                  u"ab;;;cd;e", u"a;;c", u"é;Ä;;ß"};

std::string Narrow(const Str& s) { return std::string(s.begin(), s.end()); }

TEST(FieldsRead, CountReadAndCopyFollowTheDelimiters) {
  struct Case { Str s; int count, index; Str field, copy; };
  const Case cases[] = {
      {u"", 0, 1, u"", u""}, {u";", 1, 1, u"", u""},
      {u";a", 2, 2, u"a", u"a"}, {u"a;", 1, 1, u"a", u"a"},
      {u"a;;c", 3, 2, u"", u";"}, {u"a;b;", 2, 3, u"", u""},
      {u"a;b", 2, 0, u"", u""}, {u"a;b", 2, INT_MAX, u"", u""},
      {u"a;b;c", 3, 2, u"b", u"b;"},  // the last character goes even inside a field
      {u"a;b;c;", 3, 2, u"b", u"b;c"}, {u"a;b;c", 3, 3, u"c", u"c"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(Narrow(c.s) + " #" + std::to_string(c.index));
    EXPECT_EQ(GetFieldsCount(u';', c.s), c.count);
    EXPECT_EQ(GetFieldStr(u';', c.s, c.index), c.field);
    EXPECT_EQ(Qm_tools::CopyFieldStr(u';', c.s, c.index), c.copy);
  }
}

TEST(FieldsRead, OnePassReaderAgreesWithIndexedReader) {
  for (char16_t d : {u';', u'\0'}) {
    for (Str s : kVaried) {
      std::replace(s.begin(), s.end(), u';', d);
      int start = 1, count = 0;
      for (int k = 1; k <= GetFieldsCount(d, s); ++k)
        EXPECT_EQ(Qm_tools::GetFieldStrAtStart(d, s, count + 1, start, count),
                  GetFieldStr(d, s, k))
            << "field " << k << " of " << Narrow(s);
      EXPECT_EQ(count, std::count(s.begin(), s.end(), d));
      EXPECT_EQ(Qm_tools::GetFieldStrAtStart(d, s, count + 1, start, count), u"");
    }
  }
}

TEST(FieldsRead, OnePassReaderOddCallsStayInBounds) {
  struct Case { Str s; int index, start, count; Str field; int startAfter, countAfter; };
  const Case cases[] = {
      {u"abc;def", 0, 3, 0, u"a", 4, 0},  // index == count: text before start, less one
      {u"abc;def", 0, 7, 0, u"abc;d", 8, 0},  // ... also from the last character
      {u"a;b;c", 3, 1, 0, u"c", 6, 2},    // skips ahead
      {u"a;b", 5, 1, 0, u"", 1, 1},       // beyond the end: start stays, count counts
      {u"a;b", 1, -7, 0, u"a", 3, 1},     // a start below 1 reads from 1
      {u"a;b", 0, 1, INT_MAX, u"", 1, INT_MIN},  // counts wrap, never trap
  };
  for (const auto& c : cases) {
    int start = c.start, count = c.count;
    EXPECT_EQ(Qm_tools::GetFieldStrAtStart(u';', c.s, c.index, start, count), c.field);
    EXPECT_EQ(start, c.startAfter);
    EXPECT_EQ(count, c.countAfter);
  }
}

TEST(FieldsSearch, ExactPositionAndCaselessIndex) {
  struct Case { Str s, v; int pos, index; };
  const Case cases[] = {
      {u"A;b", u"a", -1, 1}, {u"a;b", u"c", -1, 0}, {u"", u"", -1, 0},
      {u"a;;b", u"", 2, 0}, {u";b", u"", 1, 1}, {u"x;Äpfel", u"äPFEL", -1, 2},
  };
  for (const auto& c : cases) {
    EXPECT_EQ(Qm_tools::GetFieldPos(u';', c.s, c.v), c.pos) << Narrow(c.s);
    EXPECT_EQ(Qm_tools::GetIndexOf(u';', c.s, c.v), c.index) << Narrow(c.s);
  }
}

TEST(FieldsList, FillsEveryFieldAsALine) {
  rtl::TStringList list;
  list.Add(u"old");
  Qm_tools::AddFieldsToStrList(u';', u"a;;b;", list);
  ASSERT_EQ(list.Count(), 4);  // appended, not cleared; the empty field is a line
  EXPECT_EQ(list.Get(2), u"");
  EXPECT_TRUE(Qm_tools::CreateDBFields(list, u";", u';'));
  EXPECT_EQ(list.Count(), 1);
  EXPECT_FALSE(Qm_tools::CreateDBFields(list, u"", u';'));
}

using Writer = void (*)(char16_t, Str&, std::u16string_view, int);
void Delete(char16_t d, Str& s, std::u16string_view, int i) { Qm_tools::DeleteFieldStr(d, s, i); }

TEST(FieldsWrite, WritersKeepTheirStoredShapes) {
  // Each writer puts "x" at the index (Delete takes the field out).
  struct Case { Writer write; Str s; int index; Str result; };
  const auto set = Qm_tools::SetFieldStr, set2 = Qm_tools::SetFieldStr2;
  const auto ins = Qm_tools::InsertFieldStr, before = Qm_tools::InsertFieldStrBefore;
  const Case cases[] = {
      // Padding is one field early or late depending on the style; a rebuild drops the end.
      {set, u"a;b;", 1, u"x;b"}, {set, u"", 3, u";;x"}, {set, u"a;b", 4, u"a;b;x"},
      {set, u"a;b;", 3, u"a;b;;x"}, {set, u"a;b;", INT_MIN, u"a;b"},
      {set, u"abc;", INT_MAX, u"abc;"},
      {set2, u"abc;", INT_MAX, u"abc;"}, {set2, u"a;b;", 1, u"x;b;"}, {set2, u"", 1, u";x"},
      {set2, u"a;b", 4, u"a;b;;x"}, {set2, u"a;b", 0, u"xa;b"}, {set2, u";b", 0, u";b"},
      {Delete, u"a;b;c", 2, u"a;c"}, {Delete, u"a;b;", 2, u"a;"}, {Delete, u"a;b;c", 1, u"b;c"},
      {Delete, u"a;;c", 3, u"a;"}, {Delete, u"abc", 1, u""}, {Delete, u"a;b;c", 5, u"a;b;c"},
      {ins, u"a;b;c", 1, u"a;x;b;c"}, {ins, u"a;b;c", 3, u"a;b;c"}, {ins, u"a;b", 9, u"a;b"},
      {ins, u"abc", 9, u"x;abc"}, {ins, u"a;b;", 2, u"a;b;x;"}, {ins, u"a;b", 0, u"ax;;b"},
      {before, u"a;b", 9, u"a;b"}, {before, u"a;b;c", 2, u"a;x;b;c"}, {before, u";b", 2, u"x;;b"},
      {before, u"a;b", 0, u"a;b"}, {before, u"ab;c", 1, u"ax;b;c"},
  };
  for (const auto& c : cases) {
    Str s = c.s;
    c.write(u';', s, u"x", c.index);
    EXPECT_EQ(s, c.result) << Narrow(c.s) << " #" << c.index;
  }
}

TEST(FieldsWrite, SettersPutTheValueWhereTheReaderFindsIt) {
  for (const Str& original : kVaried) {
    const int n = GetFieldsCount(u';', original);
    for (int i = 1; i <= n; ++i) {
      Str a = original, b = original;
      Qm_tools::SetFieldStr(u';', a, u"val", i);
      Qm_tools::SetFieldStr2(u';', b, u"val", i);
      EXPECT_EQ(GetFieldStr(u';', a, i) + GetFieldStr(u';', b, i), u"valval")
          << Narrow(original);
      EXPECT_EQ(GetFieldsCount(u';', b), n);  // SetFieldStr may drop an empty last field
    }
  }
}

TEST(FieldsAppend, EachAppenderKeepsItsStyle) {
  Str terminated, separated, mixed;
  const Str want[3][3] = {
      {u"a;", u"a;b;", u"a;b;c;"}, {u"a", u"a;b", u"a;b;c"}, {u"a", u"a;b;", u"a;b;c"}};
  for (int k = 0; k < 3; ++k) {
    const Str v(1, static_cast<char16_t>(u'a' + k));
    Qm_tools::qm_AddFieldStr(u';', terminated, v);
    Qm_tools::qm_AddFieldStr2(u';', separated, v);
    Qm_tools::qm_AddFieldStr_Ver2(u';', mixed, v);
    EXPECT_EQ(terminated + u"|" + separated + u"|" + mixed,
              want[0][k] + u"|" + want[1][k] + u"|" + want[2][k]);
  }
  Str s = u"ab;cd";  // the value may be the string itself
  Qm_tools::qm_AddFieldStr2(u';', s, s);
  EXPECT_EQ(s, u"ab;cd;ab;cd");
  s = u"ab;";
  Qm_tools::SetFieldStr2(u';', s, s, 3);
  EXPECT_EQ(s, u"ab;;;ab;");
}

TEST(FieldsArray, JoinsAndPicksTheToolLanguage) {
  EXPECT_EQ(Qm_tools::asStr({u"a", u"", u"b"}, u';'), u"a;;b");
  EXPECT_EQ(Qm_tools::asStr(std::span<const Str>(), u';'), u"");

  const Str saved = Qm_tools::ToolsLanguage;
  struct Case { Str language; std::vector<Str> texts; Str result; };
  const Case cases[] = {
      {u"EN", {u"DE:Ja", u"EN:Yes"}, u"Yes"}, {u"en", {u"DE:Ja", u"EN:Yes"}, u""},
      {u"DE", {u"DE:Ja", u"DE:Nein"}, u"Ja"}, {u"EN", {u"EN"}, u""},
      {u"EN", {u"EN:" + Str(6000, u'x')}, Str(5000, u'x')},
  };
  for (const auto& c : cases) {
    Qm_tools::ToolsLanguage = c.language;
    EXPECT_EQ(Qm_tools::GLT(c.texts), c.result);
  }
  Qm_tools::ToolsLanguage = saved;
}

}  // namespace
