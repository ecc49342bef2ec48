// What the start page reads out of an IDE project file (output folder, main source, units,
// the groups holding a setting), and the substring rules behind it.
#include "tools/projectfile.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <initializer_list>
#include <string>
#include <utility>

#include "rtl/classes.h"

namespace {

using Str = std::u16string;

std::string Narrow(const Str& s) { return std::string(s.begin(), s.end()); }

void Fill(rtl::TStringList& list, std::initializer_list<const char16_t*> lines) {
  for (const char16_t* line : lines) list.Add(line);
}

// An application project as the IDE writes it: base and configuration groups, a
// generic output folder first and a concrete one for Win64 later.
class ProjectFileApp : public ::testing::Test {
 protected:
  void SetUp() override {
    Fill(lines, {
        uR"(<Project xmlns="http://schemas.microsoft.com/developer/msbuild/2003">)",
        uR"(    <PropertyGroup>)",
        uR"(        <MainSource>Noxdesk.dpr</MainSource>)",
        uR"(        <Config Condition="'$(Config)'==''">Debug</Config>)",
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
        uR"(        <DCC_DebugInformation>2</DCC_DebugInformation>)",
        uR"(    </PropertyGroup>)",
        uR"(    <PropertyGroup Condition="'$(Cfg_2)'!=''">)",
        uR"(        <DCC_Define>RELEASE;$(DCC_Define)</DCC_Define>)",
        uR"(        <DCC_DebugInformation>0</DCC_DebugInformation>)",
        uR"(    </PropertyGroup>)",
        uR"(    <ItemGroup>)",
        uR"(        <DelphiCompile Include="Noxdesk.dpr">)",
        uR"(            <MainSource>MainSource</MainSource>)",
        uR"(        </DelphiCompile>)",
        uR"(        <DCCReference Include="src\Main.pas">)",
        uR"(            <Form>MainForm</Form>)",
        uR"(        </DCCReference>)",
        uR"(        <DCCReference Include="src\settings.pas"/>)",
        uR"(        <DCCReference Include="src\About.pas">)",
        uR"(            <Form>AboutBox</Form>)",
        uR"(        </DCCReference>)",
        uR"(    </ItemGroup>)",
        uR"(    <ItemGroup Condition="'$(Platform)'=='Win64'">)",
        uR"(        <DCCReference Include="src\Main.pas"/>)",
        uR"(        <DCCReference Include="src\Win64Only.pas"/>)",
        uR"(    </ItemGroup>)",
        uR"(    <ProjectExtensions><Source Name="MainSource">Noxdesk.dpr</Source>)",
        uR"(</Project>)",
    });
  }
  rtl::TStringList lines;
};

TEST_F(ProjectFileApp, ReadsOutputFolderAndMainSource) {
  // The generic output folder gives way to the concrete one further down.
  EXPECT_EQ(Narrow(Qm_tools::GetXMLValue(lines, u"<DCC_ExeOutput>")), R"(..\bin\Win64)");
  EXPECT_EQ(Narrow(Qm_tools::GetXMLValue(lines, u"<MainSource>")), "Noxdesk.dpr");
  EXPECT_EQ(Narrow(Qm_tools::GetXMLValue(lines, u"<Source Name=\"MainSource\">")),
            "Noxdesk.dpr");
  // Any other tag: the first value wins, no entity decoding.
  EXPECT_EQ(Narrow(Qm_tools::GetXMLValue(lines, u"<DCC_UsePackage>")),
            "rtl;vcl;vclx;dbrtl;$(DCC_UsePackage)");
  EXPECT_EQ(Narrow(Qm_tools::GetXMLValue(lines, u"<VerInfo_Keys>")),
            "CompanyName=Quill &amp; Mark;FileVersion=1.0.0.0");
  EXPECT_EQ(Qm_tools::GetXMLValue(lines, u"<dcc_exeoutput>"), u"");  // case-sensitive
  EXPECT_EQ(Qm_tools::GetXMLValue(lines, u"<Missing>"), u"");
}

TEST_F(ProjectFileApp, ReadsPropertyOfFirstMatchingGroup) {
  struct Case { const char16_t* group; const char16_t* prop; const char* value; };
  const Case cases[] = {
      {u"'$(Base)'!=''", u"<DCC_UsePackage>",
       "        rtl;vcl;vclx;dbrtl;$(DCC_UsePackage)"},  // indentation stays
      {u"'$(Base)'!=''", u"<VerInfo_Keys>",
       "        CompanyName=Quill & Mark;FileVersion=1.0.0.0"},
      {u"'$(Base_Win64)'!=''", u"<DCC_ExeOutput>", R"(        ..\bin\Win64)"},
      {u"'$(Cfg_2)'!=''", u"<DCC_Define>", "        RELEASE;$(DCC_Define)"},
      // Only the first group holding the text is searched.
      {u"<PropertyGroup Condition=", u"<DCC_Define>", ""},
      {u"'$(Cfg_1)'!=''", u"<DCC_ExeOutput>", ""},  // not before the group ends
      {u"'$(Cfg_9)'!=''", u"<DCC_Define>", ""},
  };
  for (const auto& c : cases)
    EXPECT_EQ(Narrow(Qm_tools::GetXMLProperty(lines, c.group, c.prop)), c.value)
        << Narrow(c.group) << " " << Narrow(c.prop);
}

TEST_F(ProjectFileApp, ListsUnitsSortedWithoutDuplicates) {
  // Main.pas is in both groups; the list sorts ignoring case.
  EXPECT_EQ(Narrow(Qm_tools::GetXMLItems(lines, u"<ItemGroup", u"<DCCReference ")),
            R"(src\About.pas;src\Main.pas;src\settings.pas;src\Win64Only.pas;)");
  EXPECT_EQ(Narrow(Qm_tools::GetXMLItems(lines, u"<ItemGroup", u"<DelphiCompile ")),
            "Noxdesk.dpr;");
  EXPECT_EQ(Narrow(Qm_tools::GetXMLItems(lines, u"<ItemGroup", u"<Form>")), ";");
  // A group's items start on the line after it: its own line is no item (unlike the groups'
  // list below, where it counts).
  EXPECT_EQ(Qm_tools::GetXMLItems(lines, u"<ItemGroup", u"Condition="), u"");
  EXPECT_EQ(Qm_tools::GetXMLItems(lines, u"<ItemGroup", u"<Nothing"), u"");
}

TEST_F(ProjectFileApp, ListsGroupsHoldingSetting) {
  // Each group line once per matching property, in file order.
  const auto group = [](const char16_t* name) {
    return u"    <PropertyGroup Condition=\"'$(" + Str(name) + u")'!=''\">\x01";
  };
  EXPECT_EQ(Qm_tools::GetXMLPropertyGroups(lines, u"<PropertyGroup", u"<DCC_ExeOutput>"),
            group(u"Base") + group(u"Base_Win64"));
  EXPECT_EQ(Qm_tools::GetXMLPropertyGroups(lines, u"<PropertyGroup", u"<DCC_"),
            group(u"Base") + group(u"Base") + group(u"Base_Win64") + group(u"Base_Win64") +
                group(u"Cfg_1") + group(u"Cfg_1") + group(u"Cfg_2") + group(u"Cfg_2"));

  const Str plain = u"    <ItemGroup>";
  const Str win = uR"(    <ItemGroup Condition="'$(Platform)'=='Win64'">)";
  // Sorted, once per group.
  EXPECT_EQ(Qm_tools::GetXMLItemGroups(lines, u"<ItemGroup", u"<DCCReference "),
            win + u'\x01' + plain + u'\x01');
  EXPECT_EQ(Qm_tools::GetXMLItemGroups(lines, u"<ItemGroup", u"<Form>"), plain + u'\x01');
  // The group line counts as the group's own first line here.
  EXPECT_EQ(Qm_tools::GetXMLItemGroups(lines, u"<ItemGroup", u"Condition="), win + u'\x01');
}

TEST(ProjectFileGroups, ScanRulesAtGroupEdges) {
  rtl::TStringList lines;
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
  EXPECT_EQ(Narrow(Qm_tools::GetXMLItems(lines, u"<ItemGroup>", u"<Ref ")),
            "A.pas;b.pas;last.pas;own.pas;");
  // own.pas: in the group opened on line 5 and in the one opened on its own line.
  EXPECT_EQ(Qm_tools::GetXMLItemGroups(lines, u"<ItemGroup>", u"own.pas"),
            u"<ItemGroup>\x01<ItemGroup><Ref Include=\"own.pas\"/>\x01");
  // The first line's group, by the item on its closing line.
  EXPECT_EQ(Qm_tools::GetXMLItemGroups(lines, u"<ItemGroup>", u"A.pas"), u"<ItemGroup>\x01");

  rtl::TStringList props;
  Fill(props, {u"<PG a>", u"<P>1</P>", u"<PG b>", u"<P>2</P></PropertyGroup>", u"<P>3</P>",
               u"<PG c>"});
  // Group a runs on through group b's line up to b's end.
  EXPECT_EQ(Qm_tools::GetXMLPropertyGroups(props, u"<PG", u"<P>"),
            u"<PG a>\x01<PG a>\x01<PG b>\x01");
  EXPECT_EQ(Qm_tools::GetXMLProperty(props, u"<PG", u"<Q>"), u"");
  EXPECT_EQ(Qm_tools::GetXMLProperty(props, u"<PG c>", u"<P>"), u"");  // group on last line
  props.Add(u"<P>4</P>");
  EXPECT_EQ(Qm_tools::GetXMLPropertyGroups(props, u"<PG", u"<P>"),
            u"<PG a>\x01<PG a>\x01<PG b>\x01<PG c>\x01")
      << "a group cut off by the end of the file holds what follows it";
}

TEST(ProjectFileValue, TakesOnlyWellFormedValues) {
  struct Case {
    std::initializer_list<const char16_t*> lines;
    const char16_t* tag;
    const char* value;
  };
  const Case cases[] = {
      {{u"<A>open", u"<A>x</A>", u"<A>y</A>"}, u"<A>", "x"},  // no "</": passed over
      {{u"</B><A>x", u"<A>y</A>"}, u"<A>", ""},  // "</" only before the tag: empty, stops
      {{u"<A></A>", u"<A>y</A>"}, u"<A>", ""},
      {{u"<A>x</A>y</A>"}, u"<A>", "x"},
      // All generic: the last one.
      {{uR"(<DCC_ExeOutput>a\$(Platform)\$(Config)</DCC_ExeOutput>)",
        uR"(<DCC_ExeOutput>b\$(Platform)\$(Config)</DCC_ExeOutput>)"},
       u"<DCC_ExeOutput>",
       R"(b\$(Platform)\$(Config))"},
      // The generic macro only counts in full.
      {{uR"(<DCC_ExeOutput>$(Platform)</DCC_ExeOutput>)", uR"(<DCC_ExeOutput>z</DCC_ExeOutput>)"},
       u"<DCC_ExeOutput>",
       "$(Platform)"},
  };
  for (const auto& c : cases) {
    rtl::TStringList lines;
    Fill(lines, c.lines);
    EXPECT_EQ(Narrow(Qm_tools::GetXMLValue(lines, c.tag)), c.value) << Narrow(lines.Get(0));
  }
  // The value is cut at 1255 characters before its "</" is looked for.
  rtl::TStringList lines;
  lines.Add(u"<A>" + Str(1255, u'v') + u"</A>");
  lines.Add(u"<A>" + Str(1256, u'w') + u"</A>");
  EXPECT_EQ(Qm_tools::GetXMLValue(lines, u"<A>"), u"");
  lines.Delete(1);
  lines.Insert(0, u"<A>" + Str(1253, u'x') + u"</A>");
  EXPECT_EQ(Qm_tools::GetXMLValue(lines, u"<A>"), Str(1253, u'x'));
}

TEST(ProjectFileValue, InnerValueBetweenComments) {
  const std::pair<const char16_t*, const char*> cases[] = {
      {u"<!--a-->VALUE<!--b-->", "VALUE"},
      {u"x-->y<!--z", "y"},
      {u"no markers", ""},
      {u"abcd<!--", "cd"},  // no "-->": from position 3
      {u"ab<!--c", ""},     // a "<!--" right at the start is not seen
      {u"-->", ""},
      {u"a-->b<!--c-->d<!--", "b"},
  };
  for (const auto& [text, value] : cases)
    EXPECT_EQ(Narrow(Qm_tools::GetInnerValue(text)), value) << Narrow(text);
}

TEST(ProjectFileGroups, ManyUnclosedGroupsStayFast) {
  // Thousands of groups that never close: every scan runs to the end of the file.
  rtl::TStringList lines;
  for (int i = 0; i < 4000; ++i)
    lines.Add(u"<ItemGroup><Ref Include=\"u" + std::u16string(1 + i % 7, u'x') + u".pas\"/>");
  EXPECT_EQ(Narrow(Qm_tools::GetXMLItems(lines, u"<ItemGroup>", u"<Ref ")),
            "ux.pas;uxx.pas;uxxx.pas;uxxxx.pas;uxxxxx.pas;uxxxxxx.pas;uxxxxxxx.pas;");
  const Str groups = Qm_tools::GetXMLItemGroups(lines, u"<ItemGroup>", u"<Ref ");
  EXPECT_EQ(std::count(groups.begin(), groups.end(), u'\x01'), 7);
}

}  // namespace
