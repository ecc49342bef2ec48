// String helpers, case and order rules, string lists; natively and under Wine.
#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "rtl/classes.h"
#include "rtl/locale.h"
#include "rtl/unicase.h"
#include "rtl/ustring.h"

namespace rtl {
namespace {

using Lines = std::vector<std::u16string>;

Lines LinesOf(const TStrings& list) {
  Lines r;
  for (int i = 0; i < list.Count(); ++i) r.push_back(list[i]);
  return r;
}

std::string ErrorOf(const std::function<void()>& call) {
  try {
    call();
  } catch (const EStringListError& e) {
    return e.what();
  }
  return "no error";
}

int Sign(int v) { return (v > 0) - (v < 0); }

TEST(RtlString, IndexesCountFromOneAndClip) {
  struct Case { int index, count; std::u16string copied, deleted; };
  for (const auto& c : std::vector<Case>{{2, 9, u"bc", u"a"}, {0, 2, u"ab", u"abc"},
                                         {-5, 1, u"a", u"abc"}, {2, 0, u"", u"abc"},
                                         {2, -1, u"", u"abc"}, {4, 1, u"", u"abc"},
                                         {3, 1, u"c", u"ab"}, {2, 1, u"b", u"ac"}}) {
    SCOPED_TRACE(testing::Message() << c.index << "," << c.count);
    EXPECT_EQ(Copy(u"abc", c.index, c.count), c.copied);
    std::u16string s = u"abc";
    Delete(s, c.index, c.count);
    EXPECT_EQ(s, c.deleted);
  }
  EXPECT_EQ(Copy(u"abc", 2), u"bc");
  for (const auto& [index, want] : std::vector<std::pair<int, std::u16string>>{
           {1, u"Xab"}, {2, u"aXb"}, {3, u"abX"}, {-1, u"Xab"}, {9, u"abX"}}) {
    std::u16string s = u"ab";
    Insert(u"X", s, index);
    EXPECT_EQ(s, want) << index;
  }
  struct PosCase { std::u16string needle; int from, want; };
  for (const auto& c : std::vector<PosCase>{
           {u"b", 1, 2}, {u"", 1, 0}, {u"x", 1, 0}, {u"b", 3, 4}, {u"b", 5, 0}})
    EXPECT_EQ(c.from == 1 ? Pos(c.needle, u"abcb") : PosEx(c.needle, u"abcb", c.from), c.want);
  EXPECT_EQ(Pos(u'c', u"abc"), 3);
}

TEST(RtlString, TrimDropsSpacesAndControlsAtTheEnds) {
  struct Case { std::u16string in, both, left, right; };
  for (const auto& c : std::vector<Case>{
           {u" \t a b \r\n", u"a b", u"a b \r\n", u" \t a b"}, {u"a ", u"a", u"a ", u"a"},
           {u"x", u"x", u"x", u"x"}, {u" \x01 ", u"", u"", u""},
           {u"\u00A0a\u00A0", u"\u00A0a\u00A0", u"\u00A0a\u00A0", u"\u00A0a\u00A0"}}) {
    SCOPED_TRACE(Utf16ToUtf8(c.in));
    EXPECT_EQ(Trim(c.in), c.both);
    EXPECT_EQ(TrimLeft(c.in), c.left);
    EXPECT_EQ(TrimRight(c.in), c.right);
  }
}

TEST(RtlString, StrToIntDefReadsOnlyWholeDecimalNumbers) {
  struct Case { std::u16string in; int want; };
  for (const auto& c : std::vector<Case>{
           {u"42", 42}, {u" -17 ", -17}, {u"+7", 7}, {u"-2147483648", -2147483647 - 1},
           {u"2147483647", 2147483647}, {u"2147483648", -1}, {u"4 2", -1}, {u"", -1},
           {u" ", -1}, {u"-", -1}, {u"0x10", -1}, {u"12a", -1}})
    EXPECT_EQ(StrToIntDef(c.in, -1), c.want) << Utf16ToUtf8(c.in);
}

TEST(RtlString, StringReplaceAllGoesLeftToRightWithoutRescanning) {
  struct Case { std::u16string s, from, to, want; };
  for (const auto& c : std::vector<Case>{{u"xyx", u"x", u"ab", u"abyab"}, {u"aaa", u"aa", u"b", u"ba"},
                                         {u"a.b", u".", u"..", u"a..b"}, {u"abc", u"", u"z", u"abc"},
                                         {u"abc", u"d", u"z", u"abc"}})
    EXPECT_EQ(StringReplaceAll(c.s, c.from, c.to), c.want) << Utf16ToUtf8(c.s);
}

TEST(RtlString, Utf8RoundTripsEveryPlaneAndReplacesWhatIsMalformed) {
  const std::u16string text = u"A\u0080\u00A7\u00E4\u0800\u20AC\U0001F600z";
  EXPECT_EQ(Utf16ToUtf8(text),
            "A\xC2\x80\xC2\xA7\xC3\xA4\xE0\xA0\x80\xE2\x82\xAC\xF0\x9F\x98\x80z");
  EXPECT_EQ(Utf8ToUtf16(Utf16ToUtf8(text)), text);
  struct Case { std::string in; std::u16string want; };
  for (const auto& c : std::vector<Case>{
           {"a\x80z", u"a\uFFFDz"}, {"\xC0\xAF", u"\uFFFD\uFFFD"}, {"\xE2\x82", u"\uFFFD\uFFFD"},
           {"\xED\xA0\x80", u"\uFFFD\uFFFD\uFFFD"}, {"\xE2\x82z", u"\uFFFD\uFFFDz"},
           {"\xF4\x90\x80\x80", u"\uFFFD\uFFFD\uFFFD\uFFFD"}})  // the last is past U+10FFFF
    EXPECT_EQ(Utf8ToUtf16(c.in), c.want) << c.in;
  EXPECT_EQ(Utf16ToUtf8(u"a\xD800z"), "a\xEF\xBF\xBDz");
}

TEST(RtlUnicase, SimpleCaseMappingOfCharactersAndTexts) {
  // Each character of `upper` and the one below it in `lower` map to each other.
  const std::u16string upper = u"AZÀÞŸĀĹŇŊŽȘΆΏΣЁЯѢԱẠＡΎӒḀß×ǅ",
                       lower = u"azàþÿāĺňŋžșάώσёяѣաạａύӓḁß×ǅ";
  ASSERT_EQ(upper.size(), lower.size());
  for (size_t i = 0; i < upper.size(); ++i) {
    EXPECT_EQ(ToLowerChar(upper[i]), lower[i]) << int{upper[i]};
    EXPECT_EQ(ToUpperChar(lower[i]), upper[i]) << int{lower[i]};
  }
  // One way only: the dotted capital I, the dotless small i, the final sigma.
  const std::u16string from = u"İıς", toLower = u"iıς", toUpper = u"İIΣ";
  for (size_t i = 0; i < from.size(); ++i) {
    EXPECT_EQ(ToLowerChar(from[i]), toLower[i]) << int{from[i]};
    EXPECT_EQ(ToUpperChar(from[i]), toUpper[i]) << int{from[i]};
  }
  // Whole texts, the long one through the blocks of plain ASCII.
  EXPECT_EQ(AnsiLowerCase(u"ÄÖÜÀÉÑÇÅØÞŸ AZ"), u"äöüàéñçåøþÿ az");
  EXPECT_EQ(AnsiUpperCase(u"äöüàéñçåøþÿ az"), u"ÄÖÜÀÉÑÇÅØÞŸ AZ");
  EXPECT_EQ(AnsiUpperCase(u"straße"), u"STRAßE");
  EXPECT_EQ(AnsiUpperCase(u"łódź żółć"), u"ŁÓDŹ ŻÓŁĆ");
  EXPECT_EQ(AnsiLowerCase(u"ΑΘΉΝΑ МОСКВА ЁЖ"), u"αθήνα москва ёж");
  const std::u16string up = u"THE QUICK BROWN FOX, AND BACK AGAIN: 0123456789 [ABC] @XYZ`.",
                       low = u"the quick brown fox, and back again: 0123456789 [abc] @xyz`.";
  EXPECT_EQ(AnsiLowerCase(up + up + u"ÄÖÜ"), low + low + u"äöü");
}

// Each row: a sorts before b, case-sensitively and, unless `caseOnly`, ignoring case.
struct Ordered { std::u16string a, b; bool caseOnly = false; };

const std::vector<Ordered> kOrdered = {
    {u"Apfel", u"Äpfel"}, {u"Äpfel", u"Birne"}, {u"apfel", u"Apfel", true}, {u"Öl", u"Ozean"},
    {u"Äpfel", u"Apfelmus"}, {u"ähnlich", u"Ahorn"}, {u"Müller", u"Muster"}, {u"!", u"0"},
    {u"Ärger", u"Arzt"}, {u"résumé", u"resumes"}, {u"Masse", u"Maßen"}, {u" x", u"_x"},
    {u"_x", u"0"}, {u"9", u"a"}, {u"10", u"2"}, {u"\u00E6", u"af"}, {u"ábaco", u"Zebra"},
    {u"coop", u"co-op"}, {u"co-op", u"cop"}, {u"co-op", u"c-oop"}, {u"its", u"it's"},
    {u"\u0441\u0442\u043E\u043B", u"\u0441\u0442\u0443\u043B"}, {u"\u03B1\u03B2", u"\u03B2\u03B1"},
    {u"zz", u"\u03B1"}, {u"\u03C9", u"\u0430"}, {u"o", u"\u00F8"}, {u"\u00F8", u"p"},
    {u"ss", u"st"}, {u"a", u"\u0180"},
};

// Natively both orders are the collation rules; under Wine the Ansi ones are the system's.
TEST(RtlUnicase, CollationOrdersLettersBeforeAccentsBeforeCase) {
  for (const auto& o : kOrdered) {
    SCOPED_TRACE(Utf16ToUtf8(o.a + u" < " + o.b));
    EXPECT_LT(CollateCompare(o.a, o.b, false), 0);
    EXPECT_GT(CollateCompare(o.b, o.a, false), 0);
    EXPECT_EQ(Sign(CollateCompare(o.a, o.b, true)), o.caseOnly ? 0 : -1);
    EXPECT_LT(AnsiCompareStr(o.a, o.b), 0);
    EXPECT_EQ(Sign(AnsiCompareText(o.a, o.b)), o.caseOnly ? 0 : -1);
  }
  EXPECT_EQ(AnsiCompareStr(u"Straße", u"Strasse"), 0);
  EXPECT_TRUE(AnsiSameText(u"ÄRGER", u"ärger"));
  EXPECT_FALSE(AnsiSameText(u"Arger", u"Ärger"));
  EXPECT_EQ(AnsiCompareText(std::u16string_view(), u""), 0);
}

TEST(RtlUnicase, CollationTiesOnlyWhereTheTextReadsTheSame) {
  // Ties: expansions, soft hyphens, nulls, composed and decomposed marks, case when ignored.
  // Different letters, accents or marks never tie; width still counts without case.
  struct Case { std::u16string a, b; bool ignoreCase, tie; };
  for (const auto& c : std::vector<Case>{
           {u"Straße", u"Strasse", false, true}, {u"co\u00ADop", u"coop", false, true},
           {u"\u00E4", u"a\u0308", false, true}, {std::u16string(u"a\0b", 3), u"ab", false, true},
           {u"ÄPFEL", u"äpfel", true, true}, {u"\u03C3", u"\u03C2", true, true},
           {u"\u00E7", u"c\u0327", false, true}, {u"\u0390", u"\u03B9\u0308\u0301", false, true},
           {u"", u"", false, true}, {u"\u03C3", u"\u03C2", false, false},
           {u"a", u"\uFF41", true, false}, {u"l\u0307", u"\u0140", true, false},
           {u"a\u2027b", u"a\u2043b", true, false}})
    EXPECT_EQ(CollateCompare(c.a, c.b, c.ignoreCase) == 0, c.tie) << Utf16ToUtf8(c.a);
}

TEST(RtlStringList, SortedAddKeepsLocaleOrderAndHandlesDuplicates) {
  TStringList list;
  list.SetSorted(true);
  for (const char16_t* s : {u"Birne", u"apfel", u"Äpfel", u"10", u"2", u"_x", u"Apfel"})
    list.Add(s);
  // Apfel and apfel are one line case-insensitively; the first one stays.
  EXPECT_EQ(LinesOf(list), (Lines{u"_x", u"10", u"2", u"apfel", u"Äpfel", u"Birne"}));
  int index = -1;
  EXPECT_TRUE(list.Find(u"BIRNE", index));
  EXPECT_EQ(index, 5);
  EXPECT_FALSE(list.Find(u"Banane", index));
  EXPECT_EQ(index, 5);
  EXPECT_EQ(list.IndexOf(u"äpfel"), 4);
  list.SetCaseSensitive(true);
  EXPECT_EQ(list.Add(u"Apfel"), 4);
  EXPECT_EQ(list.Add(u"APFEL"), 5);

  TObject first, second;
  TStringList dup;
  dup.SetSorted(true);
  dup.AddObject(u"b", &first);
  dup.AddObject(u"c", nullptr);
  EXPECT_EQ(dup.AddObject(u"B", &second), 0);  // dupIgnore: the existing line and object
  EXPECT_EQ(dup.Objects(0), &first);
  EXPECT_EQ(dup.Count(), 2);
  dup.Duplicates = TDuplicates::dupAccept;
  EXPECT_EQ(dup.AddObject(u"B", &second), 0);  // before the equal line
  EXPECT_EQ(LinesOf(dup), (Lines{u"B", u"b", u"c"}));
}

TEST(RtlStringList, MisuseThrowsWithTheFrameworkMessages) {
  TStringList list;
  list.Add(u"a");
  EXPECT_EQ(ErrorOf([&] { list.Get(5); }), "List index out of bounds (5)");
  EXPECT_EQ(ErrorOf([&] { list.Delete(-1); }), "List index out of bounds (-1)");
  EXPECT_EQ(ErrorOf([&] { list.Insert(2, u"x"); }), "List index out of bounds (2)");
  list.SetSorted(true);
  EXPECT_EQ(ErrorOf([&] { list.Insert(0, u"x"); }), "Operation not allowed on sorted list");
  EXPECT_EQ(ErrorOf([&] { list.Put(0, u"x"); }), "Operation not allowed on sorted list");
  list.Duplicates = TDuplicates::dupError;
  EXPECT_EQ(ErrorOf([&] { list.Add(u"A"); }), "String list does not allow duplicates");
  EXPECT_EQ(LinesOf(list), Lines{u"a"});
}

TEST(RtlStringList, TextAndDelimitedTextReplaceTheLines) {
  enum How { kText, kLoose, kStrict };
  struct Case { How how; std::u16string text; Lines lines; };
  for (const auto& c : std::vector<Case>{
           {kText, u"a\r\nb\rc\nd", {u"a", u"b", u"c", u"d"}}, {kText, u"a\r\n", {u"a"}},
           {kText, u"\n", {u""}}, {kText, u"", {}}, {kText, u"a\n\rb", {u"a", u"", u"b"}},
           {kLoose, u"a, b ,c", {u"a", u"b", u"c"}}, {kStrict, u"a, b ,c", {u"a", u" b ", u"c"}},
           {kLoose, u"a b", {u"a", u"b"}}, {kLoose, u"\"open", {u"open"}},
           {kLoose, u"\"q\"r,s", {u"q", u"r", u"s"}},
           {kLoose, u"  \"x \"\"y\"\" z\" , w", {u"x \"y\" z", u"w"}},
           {kLoose, u"a,,b", {u"a", u"", u"b"}}, {kLoose, u" ,a", {u"", u"a"}},
           {kStrict, u"a,", {u"a", u""}}, {kLoose, u"", {}}}) {
    SCOPED_TRACE(testing::Message() << Utf16ToUtf8(c.text) << " how=" << c.how);
    TStringList list;
    list.Add(u"old");
    list.StrictDelimiter = c.how == kStrict;
    if (c.how == kText)
      list.SetText(c.text);
    else
      list.SetDelimitedText(c.text);
    EXPECT_EQ(LinesOf(list), c.lines);
  }
}

TEST(RtlStringList, DelimitedTextQuotesWhatWouldNotReadBack) {
  struct Case { Lines lines; char16_t delimiter; bool strict; std::u16string want; };
  for (const auto& c : std::vector<Case>{
           {{u"a", u"b c"}, u',', false, u"a,\"b c\""}, {{u"a", u"b c"}, u',', true, u"a,b c"},
           {{u"x;y", u"z"}, u';', true, u"\"x;y\";z"}, {{u""}, u',', false, u"\"\""},
           {{u"say \"hi\""}, u',', true, u"\"say \"\"hi\"\"\""}, {{}, u',', false, u""},
           {{u"", u""}, u',', false, u","}, {{u"tab\there"}, u'|', false, u"\"tab\there\""}}) {
    TStringList list;
    for (const auto& l : c.lines) list.Add(l);
    list.Delimiter = c.delimiter;
    list.StrictDelimiter = c.strict;
    EXPECT_EQ(list.DelimitedText(), c.want) << Utf16ToUtf8(c.want);
  }
  // Comma text ignores the delimiter settings.
  TStringList list;
  list.Delimiter = u';';
  list.QuoteChar = u'\'';
  list.StrictDelimiter = true;
  list.SetCommaText(u"a b,'c'");
  EXPECT_EQ(LinesOf(list), (Lines{u"a", u"b", u"'c'"}));
  EXPECT_EQ(list.CommaText(), u"a,b,'c'");
  list.SetText(u"x y\nz");
  EXPECT_EQ(list.Text(), u"x y\r\nz\r\n");
  EXPECT_EQ(list.CommaText(), u"\"x y\",z");
  EXPECT_EQ(list.DelimitedText(), u"x y;z");
}

TEST(RtlStringList, NameValuePairs) {
  TStringList list;
  list.SetText(u"Host=example\nplain\nPort=80=90\n=anon");
  EXPECT_EQ((Lines{list.Names(0), list.Names(1), list.ValueFromIndex(1), list.ValueFromIndex(2)}),
            (Lines{u"Host", u"", u"", u"80=90"}));
  EXPECT_EQ(list.Values(u"HOST"), u"example");
  EXPECT_EQ(list.Values(u"missing"), u"");
  EXPECT_EQ(list.IndexOfName(u"port"), 2);
  EXPECT_EQ(list.IndexOfName(u"plain"), -1);

  list.SetValue(u"Port", u"8080");
  list.SetValue(u"User", u"me");
  list.SetValue(u"host", u"");
  EXPECT_EQ(LinesOf(list), (Lines{u"plain", u"Port=8080", u"=anon", u"User=me"}));

  list.NameValueSeparator = u':';
  list.SetValue(u"k", u"v");
  EXPECT_EQ(list.Values(u"K"), u"v");
}

TEST(RtlStringList, ChangeNotificationsWaitForTheOutermostUpdate) {
  TStringList list;
  std::u16string log;
  list.OnChanging = [&](TObject* sender) { log += sender == &list ? u'<' : u'?'; };
  list.OnChange = [&](TObject*) { log += u'>'; };
  list.Add(u"a");
  list.Put(0, u"b");
  list.Clear();
  list.Clear();  // nothing to clear, nothing to tell
  list.BeginUpdate();
  list.BeginUpdate();
  list.Add(u"b");
  list.SetText(u"c\nd");
  list.EndUpdate();
  EXPECT_EQ(log, u"<><><><");
  list.EndUpdate();
  EXPECT_EQ(log, u"<><><><>");
  list.EndUpdate();  // unbalanced: ignored
  EXPECT_EQ(list.UpdateCount(), 0);
  list.SetCommaText(u"x,y");
  EXPECT_EQ(log, u"<><><><><>");
}

TEST(RtlStringList, CustomSortIsStableAndAssignCopiesLinesObjectsAndDelimiters) {
  TStringList list;
  list.SetCommaText(u"ccc,a,bb,b,aa");
  list.CustomSort([](TStringList& l, int a, int b) {
    return static_cast<int>(l[a].size()) - static_cast<int>(l[b].size());
  });
  EXPECT_EQ(LinesOf(list), (Lines{u"a", u"b", u"bb", u"aa", u"ccc"}));
  list.Exchange(0, 4);
  EXPECT_EQ(list[0], u"ccc");

  TObject object;
  TStringList source, target;
  source.AddObject(u"one", &object);
  source.Add(u"two");
  source.Delimiter = u';';
  target.Add(u"stale");
  target.Assign(source);
  EXPECT_EQ(LinesOf(target), (Lines{u"one", u"two"}));
  EXPECT_EQ(target.IndexOfObject(&object), 0);
  EXPECT_EQ(target.DelimitedText(), u"one;two");
  target.Assign(target);
  EXPECT_EQ(target.Count(), 2);
  target.AddStrings(target);
  EXPECT_EQ(LinesOf(target), (Lines{u"one", u"two", u"one", u"two"}));
}

}  // namespace
}  // namespace rtl
