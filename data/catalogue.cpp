// The pure part of the IDE version catalogue: display names and update names from version
// numbers. The tables and the registry keys are in NOXEData.h; the registry look-ups in
// catalogue_win.cpp.
#include "data/NOXEData.h"

namespace NOXEData {

namespace {

struct TNamedNumber {
  std::u16string_view number, name;
};

// Searched top to bottom and every hit overwrites the one before, so a longer number must
// stand below the shorter one it contains ("18.1" below "18").
constexpr TNamedNumber DisplayNames[] = {
    {u"12.0", u"Delphi 2010"},         {u"12.3", u"Delphi XE"},
    {u"13.4", u"Delphi XE2"},          {u"14.4", u"Delphi XE3"},
    {u"14.6", u"Delphi XE4"},          {u"15.0", u"Delphi XE5"},
    {u"15.1", u"Delphi XE5"},          {u"15.2", u"Delphi XE5"},
    {u"15.3", u"Delphi XE5"},          {u"15.4", u"Delphi XE6"},
    {u"16", u"Delphi XE7"},            {u"17", u"Delphi XE8"},
    {u"18", u"Delphi 10 Seattle"},     {u"18.1", u"Delphi 10.1 Berlin"},
    {u"18.2", u"Delphi 10.2 Tokyo"},   {u"18.3", u"Delphi 10.2 Tokyo"},
    {u"18.4", u"Delphi 10.2 Tokyo"},   {u"18.5", u"Delphi 10.3 Rio"},
    {u"18.6", u"Delphi 10.3 Rio"},     {u"18.7", u"Delphi 10.3 Rio"},
    {u"18.8", u"Delphi 10.3 Rio"},     {u"19.0", u"Delphi 10.4 Sydney"},
    {u"19.1", u"Delphi 10.4 Sydney"},  {u"19.2", u"Delphi 10.4 Sydney"},
    {u"19.3", u"Delphi 11 Alexandria"}, {u"19.4", u"Delphi 11 Alexandria"},
    {u"19.5", u"Delphi 11 Alexandria"}, {u"20.1", u"Delphi 12 Athens"},
    {u"20.2", u"Delphi 12 Athens"},    {u"20.3", u"Delphi 12 Athens"},
};

struct TUpdate {
  std::u16string_view number, specs, nr;
};

constexpr TUpdate Updates[] = {
    {u"20.3", u" ( Update 3 )", u"3"},          {u"20.2", u" ( Update 2 )", u"2"},
    {u"20.1", u" ( First + Update 1 )", u"0/1"}, {u"19.5", u" ( Update 2 or 3 )", u"2/3"},
    {u"19.4", u" ( Update 1 )", u"1"},          {u"19.3", u" ( First Release )", u""},
    {u"19.2", u" ( Update 2 )", u"2"},          {u"19.1", u" ( Update 1 )", u"1"},
    {u"19.0", u" ( First Release )", u""},      {u"18.8", u" ( Update 3 )", u"3"},
    {u"18.7", u" ( Update 2 )", u"2"},          {u"18.6", u" ( Update 1 )", u"1"},
    {u"18.5", u" ( First Release )", u""},      {u"18.4", u" ( Update 2 )", u"2"},
    {u"18.3", u" ( Update 1 )", u"1"},          {u"18.2", u" ( First Release )", u""},
};

const TUpdate* FindUpdate(std::u16string_view VersionNr) {
  for (const TUpdate& u : Updates)
    if (u.number == VersionNr) return &u;
  return nullptr;
}

}  // namespace

std::u16string GetDVersion(std::u16string_view VersionNr) {
  std::u16string_view result;
  for (const TNamedNumber& row : DisplayNames)
    if (VersionNr.find(row.number) != std::u16string_view::npos) result = row.name;
  return std::u16string(result);
}

std::u16string GetSpecs(std::u16string_view VersionNr) {
  const TUpdate* u = FindUpdate(VersionNr);
  return u ? std::u16string(u->specs) : std::u16string();
}

std::u16string GetSpecsNr(std::u16string_view VersionNr) {
  const TUpdate* u = FindUpdate(VersionNr);
  return u ? std::u16string(u->nr) : std::u16string();
}

}  // namespace NOXEData
