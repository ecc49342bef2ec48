// What the start page reads out of an IDE project file, and the substring rules behind it.
#include "tools/projectfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>

#include "rtl/classes.h"

namespace {

using Str = std::u16string;
using Qm_tools::GetXMLItemGroups;
using Qm_tools::GetXMLItems;
using Qm_tools::GetXMLProperty;
using Qm_tools::GetXMLPropertyGroups;
using Qm_tools::GetXMLValue;

std::string Narrow(const Str& s) { return std::string(s.begin(), s.end()); }

void Fill(rtl::TStringList& list, std::initializer_list<const char16_t*> lines) {
  for (const char16_t* line : lines) list.Add(line);
}

// An application project as the IDE writes it: a generic output folder first and a
// concrete one for Win64 later.
class ProjectFileApp : public ::testing::Test {
 protected:
  ProjectFileApp() { Fill(lines, {
      uR"(    <PropertyGroup>)",
      uR"(        <MainSource>Noxdesk.dpr</MainSource>)",
      uR"(    </PropertyGroup>)",
      uR"(    <PropertyGroup Condition="'$(Base)'!=''">)",
      uR"(        <DCC_ExeOutput>.\$(Platform)\$(Config)</DCC_ExeOutput>)",
      uR"(        <DCC_UsePackage>rtl;vcl;vclx;dbrtl;$(DCC_UsePackage)</DCC_UsePackage>)",
      uR"(        <VerInfo_Keys>CompanyName=Quill &amp; Mark;FileVersion=1.0.0.0</VerInfo_Keys>)",
      uR"(    </PropertyGroup>)",
      uR"(    <PropertyGroup Condition="'$(Base_Win64)'!=''">)",
      uR"(        <DCC_UsePackage>rtl;vcl;vclimg;$(DCC_UsePackage)</DCC_UsePackage>)",
      uR"(        <DCC_ExeOutput>..\bin\Win64</DCC_ExeOutput>)",
      uR"(    </PropertyGroup>)",
      uR"(    <PropertyGroup Condition="'$(Cfg_1)'!=''">)",
      uR"(        <DCC_Define>DEBUG;$(DCC_Define)</DCC_Define>)",
      uR"(    </PropertyGroup>)",
      uR"(    <PropertyGroup Condition="'$(Cfg_2)'!=''">)",
      uR"(        <DCC_Define>RELEASE;$(DCC_Define)</DCC_Define>)",
      uR"(    </PropertyGroup>)",
      uR"(    <ItemGroup>)",
      uR"(        <DelphiCompile Include="Noxdesk.dpr"/>)",
      uR"(        <DCCReference Include="src\Main.pas">)",
      uR"(            <Form>MainForm</Form>)",
      uR"(        </DCCReference>)",
      uR"(        <DCCReference Include="src\settings.pas"/>)",
      uR"(        <DCCReference Include="src\About.pas"/>)",
      uR"(    </ItemGroup>)",
      uR"(    <ItemGroup Condition="'$(Platform)'=='Win64'">)",
      uR"(        <DCCReference Include="src\Main.pas"/>)",
      uR"(        <DCCReference Include="src\Win64Only.pas"/>)",
      uR"(    </ItemGroup>)",
  }); }
  rtl::TStringList lines;
};

TEST_F(ProjectFileApp, ReadsValuesAndFirstMatchingGroupsProperty) {
  const std::pair<const char16_t*, const char*> values[] = {
      {u"<DCC_ExeOutput>", R"(..\bin\Win64)"},  // the generic folder gives way
      {u"<MainSource>", "Noxdesk.dpr"},
      {u"<DCC_UsePackage>", "rtl;vcl;vclx;dbrtl;$(DCC_UsePackage)"},  // the first wins
      {u"<VerInfo_Keys>", "CompanyName=Quill &amp; Mark;FileVersion=1.0.0.0"},
      {u"<dcc_exeoutput>", ""},  // case-sensitive
      {u"<Missing>", ""},
  };
  for (const auto& [tag, value] : values)
    EXPECT_EQ(Narrow(GetXMLValue(lines, tag)), value) << Narrow(tag);

  struct Case { const char16_t* group; const char16_t* prop; const char* value; };
  const Case cases[] = {
      {u"'$(Base)'!=''", u"<DCC_UsePackage>",
       "        rtl;vcl;vclx;dbrtl;$(DCC_UsePackage)"},  // indentation stays
      {u"'$(Base)'!=''", u"<VerInfo_Keys>",
       "        CompanyName=Quill & Mark;FileVersion=1.0.0.0"},
      {u"'$(Base_Win64)'!=''", u"<DCC_ExeOutput>", R"(        ..\bin\Win64)"},
      {u"'$(Cfg_2)'!=''", u"<DCC_Define>", "        RELEASE;$(DCC_Define)"},
      {u"<PropertyGroup Condition=", u"<DCC_Define>", ""},  // only the first group is searched
      {u"'$(Cfg_1)'!=''", u"<DCC_ExeOutput>", ""},  // not past the group's end
      {u"'$(Cfg_9)'!=''", u"<DCC_Define>", ""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Narrow(GetXMLProperty(lines, c.group, c.prop)), c.value)
        << Narrow(c.group) << " " << Narrow(c.prop);
}

TEST_F(ProjectFileApp, ListsUnitsAndTheGroupsHoldingThem) {
  // Main.pas is in both groups; the list sorts ignoring case.
  EXPECT_EQ(Narrow(GetXMLItems(lines, u"<ItemGroup", u"<DCCReference ")),
            R"(src\About.pas;src\Main.pas;src\settings.pas;src\Win64Only.pas;)");
  // Each property group line once per matching property, in file order; item groups sorted,
  // once per group.
  EXPECT_EQ(GetXMLPropertyGroups(lines, u"<PropertyGroup", u"<DCC_ExeOutput>"),
            uR"(    <PropertyGroup Condition="'$(Base)'!=''">)" u"\x01"
            uR"(    <PropertyGroup Condition="'$(Base_Win64)'!=''">)" u"\x01");
  EXPECT_EQ(GetXMLItemGroups(lines, u"<ItemGroup", u"<DCCReference "),
            uR"(    <ItemGroup Condition="'$(Platform)'=='Win64'">)" u"\x01    <ItemGroup>\x01");
}

TEST(ProjectFileGroups, ScanRulesAtGroupEdges) {
  rtl::TStringList lines, props;
  Fill(lines, {
      u"<ItemGroup>",
      uR"(  <Ref Include="b.pas"/>)",
      uR"(  <Ref Include="A.pas"/></ItemGroup>)",  // item on the closing line counts
      uR"(  <Ref Include="outside.pas"/>)",
      u"<ItemGroup>",
      uR"(  <Ref Include="B.pas"/>)",  // the first spelling stays
      u"<ItemGroup><Ref Include=\"own.pas\"/>",  // unclosed: runs to the last line
      uR"(  <Ref Include="last.pas)",
  });
  EXPECT_EQ(Narrow(GetXMLItems(lines, u"<ItemGroup>", u"<Ref ")),
            "A.pas;b.pas;last.pas;own.pas;");
  // own.pas: in the group opened on line 5 and in the one opened on its own line.
  EXPECT_EQ(GetXMLItemGroups(lines, u"<ItemGroup>", u"own.pas"),
            u"<ItemGroup>\x01<ItemGroup><Ref Include=\"own.pas\"/>\x01");
  EXPECT_EQ(GetXMLItemGroups(lines, u"<ItemGroup>", u"A.pas"), u"<ItemGroup>\x01");

  Fill(props,
      {u"<PG a>", u"<P>1</P>", u"<PG b>", u"<P>2</P></PropertyGroup>", u"<P>3</P>", u"<PG c>"});
  // Group a runs on through group b's line up to b's end.
  EXPECT_EQ(GetXMLPropertyGroups(props, u"<PG", u"<P>"), u"<PG a>\x01<PG a>\x01<PG b>\x01");
  EXPECT_EQ(GetXMLProperty(props, u"<PG", u"<Q>"), u"");
  EXPECT_EQ(GetXMLProperty(props, u"<PG c>", u"<P>"), u"");  // group on the last line
  props.Add(u"<P>4</P>");  // a group cut off by the end of the file holds what follows it
  EXPECT_EQ(GetXMLPropertyGroups(props, u"<PG", u"<P>"),
            u"<PG a>\x01<PG a>\x01<PG b>\x01<PG c>\x01");
}

TEST(ProjectFileValue, TakesOnlyWellFormedValues) {
  const Str longV = u"<A>" + Str(1255, u'v') + u"</A>", longW = u"<A>" + Str(1256, u'w') + u"</A>";
  const Str shortX = u"<A>" + Str(1253, u'x') + u"</A>";
  struct Case { std::initializer_list<const char16_t*> lines; const char16_t* tag; Str value; };
  const Case cases[] = {
      {{u"<A>open", u"<A>x</A>", u"<A>y</A>"}, u"<A>", u"x"},  // no "</": passed over
      {{u"</B><A>x", u"<A>y</A>"}, u"<A>", u""},  // "</" only before the tag: empty, stops
      {{u"<A></A>", u"<A>y</A>"}, u"<A>", u""}, {{u"<A>x</A>y</A>"}, u"<A>", u"x"},
      // All generic: the last one; the generic macro only counts in full.
      {{uR"(<DCC_ExeOutput>a\$(Platform)\$(Config)</DCC_ExeOutput>)",
        uR"(<DCC_ExeOutput>b\$(Platform)\$(Config)</DCC_ExeOutput>)"},
       u"<DCC_ExeOutput>", uR"(b\$(Platform)\$(Config))"},
      {{uR"(<DCC_ExeOutput>$(Platform)</DCC_ExeOutput>)", uR"(<DCC_ExeOutput>z</DCC_ExeOutput>)"},
       u"<DCC_ExeOutput>", u"$(Platform)"},
      // The value is cut at 1255 characters before its "</" is looked for.
      {{longV.c_str(), longW.c_str()}, u"<A>", u""},
      {{shortX.c_str(), longV.c_str()}, u"<A>", Str(1253, u'x')},
  };
  for (const auto& c : cases) {
    rtl::TStringList lines;
    Fill(lines, c.lines);
    EXPECT_EQ(GetXMLValue(lines, c.tag), c.value) << Narrow(lines.Get(0)).substr(0, 40);
  }
}

TEST(ProjectFileValue, InnerValueBetweenComments) {
  const std::pair<const char16_t*, const char*> cases[] = {
      {u"<!--a-->VALUE<!--b-->", "VALUE"}, {u"x-->y<!--z", "y"}, {u"no markers", ""},
      {u"abcd<!--", "cd"},  // no "-->": from position 3
      {u"ab<!--c", ""},     // a "<!--" right at the start is not seen
      {u"-->", ""}, {u"a-->b<!--c-->d<!--", "b"},
  };
  for (const auto& [text, value] : cases)
    EXPECT_EQ(Narrow(Qm_tools::GetInnerValue(text)), value) << Narrow(text);
}

TEST(ProjectFileGroups, ManyUnclosedGroupsStayFast) {
  rtl::TStringList lines;
  for (int i = 0; i < 4000; ++i)
    lines.Add(u"<ItemGroup><Ref Include=\"u" + Str(1 + i % 7, u'x') + u".pas\"/>");
  EXPECT_EQ(Narrow(GetXMLItems(lines, u"<ItemGroup>", u"<Ref ")),
            "ux.pas;uxx.pas;uxxx.pas;uxxxx.pas;uxxxxx.pas;uxxxxxx.pas;uxxxxxxx.pas;");
  const Str groups = GetXMLItemGroups(lines, u"<ItemGroup>", u"<Ref ");
  EXPECT_EQ(std::count(groups.begin(), groups.end(), u'\x01'), 7);
}

}  // namespace
