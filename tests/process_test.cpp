// The shell's error texts, the split of a typed line, command lines and file-type entries.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "rtl/ustring.h"
#include "tools/process.h"

namespace {

using namespace Qm_tools;

TEST(ProcessShellErrors, EveryCodeUpTo32HasItsTextOrNone) {
  const std::u16string known[] = {
      u"Zuwenig Speicher, ausführbare Datei war zerstört, Relokationswerte waren ungültig", u"",
      u"Datei wurde nicht gefunden.", u"Verzeichnis wurde nicht gefunden.", u"",
      u"Fehler beim Zugriff auf eine Datei oder Verzeichnis im Netz oder Fehler beim Zugriff "
      u"auf eine gesperrte Datei im Netz. Möglicherweise besteht derzeit kein Netzzugang.",
      u"Bibliothek forderte separate Datensegmente für jede Task an.", u"",
      u"Zuwenig Speicher, um die Anwendung zu starten.", u"", u"Falsche Windows-Version.",
      u"Ungültige ausführbare Datei. Entweder keine Windows-Anwendung oder Fehler in der "
      u"EXE-Datei.",
      u"Anwendung für ein anderes Betriebssystem.", u"Anwendung für MS-DOS 4.0.",
      u"Typ der ausführbaren Datei unbekannt.",
      u"Versuch, eine Real-Mode-Anwendung (für eine frühere Windows-Version) zu laden.",
      u"Versuch, eine zweite Instanz einer ausführbaren Datei mit mehreren Datensegmenten, die "
      u"nicht als nur lesbar gekennzeichnet waren, zu laden.",
      u"", u"",
      u"Versuch, eine komprimierte ausführbare Datei zu laden. Die Datei muß dekomprimiert "
      u"werden, bevor sie geladen werden kann.",
      u"Ungültige dynamische Linkbibliothek (DLL). Eine der DLLs, die benötigt wurde, um die "
      u"Anwendung auszuführen, war beschädigt."};
  for (int code = 0; code <= 32; ++code) {
    const std::u16string expected = code < 21 ? known[code] : u"";
    EXPECT_EQ(ShellErrorText(code), expected) << "code " << code;
  }
}

TEST(ProcessShellLine, SplitsFileFromParameters) {
  const std::u16string a300(300, u'a');
  const std::u16string a255(255, u'a');
  // A quoted program alone still gets parameters: two double quotes.
  struct Case { std::u16string line, file, params; } cases[] = {
      {u"", u"", u""}, {u"\"", u"", u""}, {u"\"C:\\Prog\\p.exe\"", u"\"C:\\Prog\\p.exe\"", u"\"\""},
      {u"\"C:\\Prog\\p.exe\"   -x y  ", u"\"C:\\Prog\\p.exe\"", u"\"-x y\""},
      {u"\"C:\\p.exe\" \"a b\" c", u"\"C:\\p.exe\"", u"\"a b\" c"},
      {u"C:\\Prog\\p.exe  \"a b\"", u"C:\\Prog\\p.exe", u"\"a b\""},
      {u"C:\\Daten\\brief.txt", u"C:\\Daten\\brief.txt", u""},
      // Never closed: the whole line, without quotes, is the file.
      {u"\"C:\\Prog\\p.exe -x", u"C:\\Prog\\p.exe -x", u""},
      {u"\"p.exe\" " + a300, u"\"p.exe\"", u"\"" + a255 + u"\""},
      {u"p.exe \"" + a300, u"p.exe", u"\"" + a300.substr(0, 254)},
  };
  for (const Case& c : cases) {
    const TShellLine split = SplitShellLine(c.line);
    EXPECT_EQ(split.File + u"|" + split.Params, c.file + u"|" + c.params)
        << std::string(c.line.begin(), c.line.end());
  }
}

TEST(ProcessCommandLines, QuoteAsTheStartersExpect) {
  EXPECT_EQ(ShellOpenFailedText(u"x.abc"),
            u"Konnte Datei \r\rx.abc\r\r nicht öffnen, Dateityp unbekannt!");
  EXPECT_EQ(ExecCommandLine(u"C:\\P Q\\p.exe", u""), u"\"C:\\P Q\\p.exe\" \"\"");
  EXPECT_EQ(ExecCommandLine(u"p.exe", u"a b"), u"\"p.exe\" \"a b\"");
  EXPECT_EQ(LogonCommandLine(u"C:\\p.exe", u""), u"C:\\p.exe");
  EXPECT_EQ(LogonCommandLine(u"C:\\p.exe", u"a b"), u"C:\\p.exe \"a b\"");
  EXPECT_EQ(GetCommandOutput(u"cmd /c dir"), u"") << "output is never captured";
}

TEST(ProcessAdmin, OnlyBareDocumentsGoThroughTheirProgram) {
  // ".exe" counts anywhere in the name, as the callers have always relied on.
  const std::tuple<const char16_t*, const char16_t*, bool> cases[] = {
      {u"C:\\brief.txt", u"", true}, {u"C:\\brief.txt", u"/p", false},
      {u"C:\\SETUP.EXE", u"", false}, {u"C:\\command.com", u"", false},
      {u"C:\\x.exe.txt", u"", false}};
  for (const auto& [file, params, through] : cases)
    EXPECT_EQ(RunsThroughAssociation(file, params), through) << rtl::Utf16ToUtf8(file);
}

TEST(ProcessFileType, EntriesWithAndWithoutIcon) {
  // Each entry as "key = value".
  const auto text = [](const auto& entries) {
    std::u16string r;
    for (const auto& e : entries) r += e.Key + u" = " + e.Value + u"\n";
    return r;
  };
  EXPECT_EQ(text(FileTypeEntries(u"C:\\P\\p.exe", u"nox", u"C:\\P\\p.exe,0")),
            u".nox = nox_file\nnox_file\\DefaultIcon = C:\\P\\p.exe,0\n"
            u"nox_file\\shell\\open\\command = \"C:\\P\\p.exe\" \"%1\"\n");
  EXPECT_EQ(text(FileTypeEntries(u"p.exe", u"nox", u"")),
            u".nox = nox_file\nnox_file\\shell\\open\\command = \"p.exe\" \"%1\"\n");
}

}  // namespace
