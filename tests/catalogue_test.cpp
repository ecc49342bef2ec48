// The IDE version catalogue: names and registry keys per version, and version numbers.
#include <gtest/gtest.h>

#include <string>

#include "data/NOXEData.h"

namespace {

using namespace NOXEData;
using Str = std::u16string;

std::string Narrow(std::u16string_view s) { return std::string(s.begin(), s.end()); }

// The keys follow the vendor's numbering, which skips BDS 13.0 and jumps from 23.0 to 37.0.
TEST(CatalogueTables, EveryVersionHasItsNameAndKey) {
  struct Row { TDelphiVersions v; std::u16string_view name, key; };  // key under Software
  const Row rows[] = {
      {Delphi1, u"Delphi 1", u"Borland\\Delphi\\1.0"}, {Delphi8, u"Delphi 8", u"Borland\\BDS\\2.0"},
      {Delphi7, u"Delphi 7", u"Borland\\Delphi\\7.0"},
      {Delphi2005, u"BDS 2005", u"Borland\\BDS\\3.0"},
      {Delphi2009, u"RAD Studio 2009", u"CodeGear\\BDS\\6.0"},
      {DelphiXE, u"RAD Studio XE", u"Embarcadero\\BDS\\8.0"},
      {DelphiXE5, u"RAD Studio XE5", u"Embarcadero\\BDS\\12.0"},
      {DelphiXE6, u"RAD Studio XE6", u"Embarcadero\\BDS\\14.0"},
      {DelphiXE12, u"RAD Studio XE12", u"Embarcadero\\BDS\\23.0"},
      {DelphiXE13, u"RAD Studio XE13", u"Embarcadero\\BDS\\37.0"},
  };
  for (const Row& r : rows) {
    EXPECT_EQ(Narrow(DelphiVersionsNames[r.v]), Narrow(r.name)) << r.v;
    EXPECT_EQ(Narrow(DelphiRegPaths[r.v]), "\\Software\\" + Narrow(r.key)) << r.v;
  }
}

TEST(CatalogueDVersion, LastKnownNumberFoundWins) {
  struct Case { Str number, name; };
  const Case cases[] = {
      {u"12.0", u"Delphi 2010"}, {u"12.3", u"Delphi XE"},
      {u"13.4", u"Delphi XE2"}, {u"14.4", u"Delphi XE3"},
      {u"14.6", u"Delphi XE4"}, {u"15.0", u"Delphi XE5"},
      {u"15.1", u"Delphi XE5"}, {u"15.2", u"Delphi XE5"},
      {u"15.3", u"Delphi XE5"}, {u"15.4", u"Delphi XE6"},
      {u"16", u"Delphi XE7"}, {u"17", u"Delphi XE8"},
      {u"18", u"Delphi 10 Seattle"}, {u"18.9", u"Delphi 10 Seattle"},
      {u"18.1", u"Delphi 10.1 Berlin"}, {u"18.2", u"Delphi 10.2 Tokyo"},
      {u"18.3", u"Delphi 10.2 Tokyo"}, {u"18.4", u"Delphi 10.2 Tokyo"},
      {u"18.5", u"Delphi 10.3 Rio"}, {u"18.6", u"Delphi 10.3 Rio"},
      {u"18.7", u"Delphi 10.3 Rio"}, {u"18.8", u"Delphi 10.3 Rio"},
      {u"19.0", u"Delphi 10.4 Sydney"}, {u"19.1", u"Delphi 10.4 Sydney"},
      {u"19.2", u"Delphi 10.4 Sydney"}, {u"19.3", u"Delphi 11 Alexandria"},
      {u"19.4", u"Delphi 11 Alexandria"}, {u"19.5", u"Delphi 11 Alexandria"},
      {u"20.1", u"Delphi 12 Athens"}, {u"20.2", u"Delphi 12 Athens"},
      {u"20.3", u"Delphi 12 Athens"},
      // Found anywhere, so a number can stand inside a longer one.
      {u"18.10", u"Delphi 10.1 Berlin"}, {u"116.0", u"Delphi XE7"},
      {u"Version 19.5.1", u"Delphi 11 Alexandria"},
      {u"18.2 and 12.0", u"Delphi 10.2 Tokyo"},  // table order, not text order
      // A bare major number matches only where the table has one.
      {u"12", u""}, {u"15", u""}, {u"19", u""}, {u"20", u""},
      {u"20.0", u""}, {u"37.0", u""}, {u"", u""},
  };
  for (const Case& c : cases) EXPECT_EQ(GetDVersion(c.number), c.name) << Narrow(c.number);
}

TEST(CatalogueSpecs, OnlyExactNumbersHaveAnUpdate) {
  struct Case { Str number, specs, nr; };
  const Case cases[] = {
      {u"20.3", u" ( Update 3 )", u"3"}, {u"20.2", u" ( Update 2 )", u"2"},
      {u"20.1", u" ( First + Update 1 )", u"0/1"}, {u"19.5", u" ( Update 2 or 3 )", u"2/3"},
      {u"19.4", u" ( Update 1 )", u"1"}, {u"19.3", u" ( First Release )", u""},
      {u"19.2", u" ( Update 2 )", u"2"}, {u"19.1", u" ( Update 1 )", u"1"},
      {u"19.0", u" ( First Release )", u""}, {u"18.8", u" ( Update 3 )", u"3"},
      {u"18.7", u" ( Update 2 )", u"2"}, {u"18.6", u" ( Update 1 )", u"1"},
      {u"18.5", u" ( First Release )", u""}, {u"18.4", u" ( Update 2 )", u"2"},
      {u"18.3", u" ( Update 1 )", u"1"}, {u"18.2", u" ( First Release )", u""},
      {u" 20.2", u"", u""}, {u"20.2 ", u"", u""}, {u"20.20", u"", u""}, {u"18.1", u"", u""},
      {u"20.0", u"", u""}, {u"", u"", u""},
  };
  for (const Case& c : cases) {
    EXPECT_EQ(GetSpecs(c.number), c.specs) << Narrow(c.number);
    EXPECT_EQ(GetSpecsNr(c.number), c.nr) << Narrow(c.number);
  }
}

}  // namespace
