// The pure rules of the process family: the shell's error texts, the split of a typed
// line, command lines and the registry entries of a file type. No system calls here.
#include "tools/process.h"

#include "rtl/ustring.h"

namespace Qm_tools {

std::u16string ShellErrorText(int code) {
  switch (code) {
    case 0: return u"Zuwenig Speicher, ausführbare Datei war zerstört, Relokationswerte waren ungültig";
    case 2: return u"Datei wurde nicht gefunden.";
    case 3: return u"Verzeichnis wurde nicht gefunden.";
    case 5:
      return u"Fehler beim Zugriff auf eine Datei oder Verzeichnis im Netz oder Fehler beim "
             u"Zugriff auf eine gesperrte Datei im Netz. Möglicherweise besteht derzeit kein "
             u"Netzzugang.";
    case 6: return u"Bibliothek forderte separate Datensegmente für jede Task an.";
    case 8: return u"Zuwenig Speicher, um die Anwendung zu starten.";
    case 10: return u"Falsche Windows-Version.";
    case 11:
      return u"Ungültige ausführbare Datei. Entweder keine Windows-Anwendung oder Fehler in "
             u"der EXE-Datei.";
    case 12: return u"Anwendung für ein anderes Betriebssystem.";
    case 13: return u"Anwendung für MS-DOS 4.0.";
    case 14: return u"Typ der ausführbaren Datei unbekannt.";
    case 15:
      return u"Versuch, eine Real-Mode-Anwendung (für eine frühere Windows-Version) zu laden.";
    case 16:
      return u"Versuch, eine zweite Instanz einer ausführbaren Datei mit mehreren "
             u"Datensegmenten, die nicht als nur lesbar gekennzeichnet waren, zu laden.";
    case 19:
      return u"Versuch, eine komprimierte ausführbare Datei zu laden. Die Datei muß "
             u"dekomprimiert werden, bevor sie geladen werden kann.";
    case 20:
      return u"Ungültige dynamische Linkbibliothek (DLL). Eine der DLLs, die benötigt wurde, "
             u"um die Anwendung auszuführen, war beschädigt.";
    default: return u"";
  }
}

namespace {

constexpr std::size_t kMaxParams = 255;

std::u16string QuotedUnlessQuoting(std::u16string params) {
  if (params.find(u'"') == std::u16string::npos) return u"\"" + params + u"\"";
  return params;
}

std::u16string WithoutQuotes(std::u16string_view line) {
  std::u16string r;
  for (const char16_t c : line)
    if (c != u'"') r += c;
  return r;
}

}  // namespace

TShellLine SplitShellLine(std::u16string_view line) {
  if (line.empty()) return {};
  if (line.front() == u'"') {
    const std::size_t close = line.find(u'"', 1);
    // Never closed: nothing tells the program from its parameters, so the whole line is
    // taken as a file name rather than guessing a split.
    if (close == std::u16string_view::npos) return {WithoutQuotes(line), u""};
    std::u16string params = rtl::Trim(line.substr(close + 1)).substr(0, kMaxParams);
    return {std::u16string(line.substr(0, close + 1)), QuotedUnlessQuoting(std::move(params))};
  }
  const std::size_t quote = line.find(u'"');
  if (quote == std::u16string_view::npos) return {std::u16string(line), u""};
  return {rtl::Trim(line.substr(0, quote)),
          QuotedUnlessQuoting(std::u16string(line.substr(quote, kMaxParams)))};
}

std::u16string ShellOpenFailedText(std::u16string_view file) {
  return u"Konnte Datei \r\r" + std::u16string(file) + u"\r\r nicht öffnen, Dateityp unbekannt!";
}

std::u16string ExecCommandLine(std::u16string_view program, std::u16string_view parameters) {
  return u"\"" + std::u16string(program) + u"\" \"" + std::u16string(parameters) + u"\"";
}

std::u16string LogonCommandLine(std::u16string_view program, std::u16string_view parameters) {
  if (parameters.empty()) return std::u16string(program);
  return std::u16string(program) + u" \"" + std::u16string(parameters) + u"\"";
}

bool RunsThroughAssociation(std::u16string_view file, std::u16string_view parameters) {
  if (!parameters.empty()) return false;
  const std::u16string lower = rtl::LowerCase(file);
  return lower.find(u".exe") == std::u16string::npos &&
         lower.find(u".com") == std::u16string::npos;
}

std::vector<TRegistryEntry> FileTypeEntries(std::u16string_view program,
                                            std::u16string_view extension,
                                            std::u16string_view icon) {
  const std::u16string type = std::u16string(extension) + u"_file";
  std::vector<TRegistryEntry> entries{{u"." + std::u16string(extension), type}};
  if (!icon.empty()) entries.push_back({type + u"\\DefaultIcon", std::u16string(icon)});
  entries.push_back(
      {type + u"\\shell\\open\\command", u"\"" + std::u16string(program) + u"\" \"%1\""});
  return entries;
}

std::u16string GetCommandOutput(std::u16string_view) { return u""; }

}  // namespace Qm_tools
