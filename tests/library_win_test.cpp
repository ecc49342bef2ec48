// The package DLL's export table against the units' headers: every routine, class and
// global a unit header marks for export is there under its namespace-qualified name, and
// nothing of rtl/ or ui/ that no unit's surface needs.
#include <windows.h>

#include <gtest/gtest.h>

#include <regex>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "win_support.h"

namespace {

// The names the DLL exports, read from its image mapped without running it.
std::set<std::string> ExportedNames() {
  wchar_t exe[MAX_PATH];
  const DWORD n = GetModuleFileNameW(nullptr, exe, MAX_PATH);
  std::wstring dll(exe, n);
  dll = dll.substr(0, dll.find_last_of(L'\\') + 1) + L"WNOXD13_64.dll";
  const HMODULE module = LoadLibraryExW(dll.c_str(), nullptr, DONT_RESOLVE_DLL_REFERENCES);
  std::set<std::string> names;
  if (module == nullptr) return names;
  const auto* base = reinterpret_cast<const std::uint8_t*>(module);
  const auto* nt = reinterpret_cast<const IMAGE_NT_HEADERS64*>(
      base + reinterpret_cast<const IMAGE_DOS_HEADER*>(base)->e_lfanew);
  const IMAGE_DATA_DIRECTORY& dir = nt->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_EXPORT];
  const auto* table = reinterpret_cast<const IMAGE_EXPORT_DIRECTORY*>(base + dir.VirtualAddress);
  const auto* offsets = reinterpret_cast<const DWORD*>(base + table->AddressOfNames);
  for (DWORD i = 0; i < table->NumberOfNames; ++i)
    names.insert(reinterpret_cast<const char*>(base + offsets[i]));
  FreeLibrary(module);
  return names;
}

// What the unit headers mark: "<macro> ... Name(" for routines, "extern <macro> ... Name;"
// for globals, "class <macro> Name" for classes, each as the start of its mangled name
// ("N8Qm_tools11GetFieldStr").
std::vector<std::string> MarkedNames() {
  const struct { const char* header; const char* ns; const char* macro; } units[] = {
      {"tools/fields.h", "Qm_tools", "QM_TOOLS_API"},     {"tools/keyed.h", "Qm_tools", "QM_TOOLS_API"},
      {"tools/search.h", "Qm_tools", "QM_TOOLS_API"},     {"tools/interapp.h", "Qm_tools", "QM_TOOLS_API"},
      {"tools/paths.h", "Qm_tools", "QM_TOOLS_API"},      {"tools/sysinfo.h", "Qm_tools", "QM_TOOLS_API"},
      {"tools/textformat.h", "Qm_tools", "QM_TOOLS_API"}, {"tools/projectfile.h", "Qm_tools", "QM_TOOLS_API"},
      {"tools/fileops.h", "Qm_tools", "QM_TOOLS_API"},    {"tools/process.h", "Qm_tools", "QM_TOOLS_API"},
      {"tools/inisettings.h", "Qm_tools", "QM_TOOLS_API"}, {"tools/uihelpers.h", "Qm_tools", "QM_TOOLS_API"},
      {"tools/streaming.h", "Qm_tools", "QM_TOOLS_API"},  {"tools/qm_globals.h", "Qm_tools", "QM_TOOLS_API"},
      {"data/NOXEData.h", "NOXEData", "NOXEDATA_API"},
      {"dialog/QMMessageDlgVCL.h", "QMMessageDlgVCL", "QMMESSAGEDLG_API"},
      {"dialog/msgdlg_form.h", "QMMessageDlgVCL", "QMMESSAGEDLG_API"},
      {"host/WNOXView.h", "WNOXView", "WNOXVIEW_API"},
      {"package/WNOXCreator.h", "WNOXCreator", "WNOXCREATOR_API"},
      {"package/WNOXConstants.h", "WNOXConstants", "WNOXCONSTANTS_API"},
  };
  std::vector<std::string> marked;
  for (const auto& u : units) {
    const std::string text = nox_test::ReadBytes(nox_test::WinPath(std::string(NOX_SOURCE_DIR) + "/" + u.header));
    EXPECT_NE(text, "<missing>") << u.header;
    const std::string m = u.macro;
    const std::regex routine("^" + m + R"([^(;]*?[\s*&](\w+)\()"), global("^extern " + m + R"([^;(]*?[\s*&](\w+);)"),
        cls("^(?:class|struct) " + m + R"( (\w+))");
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
      std::smatch found;
      if (std::regex_search(line, found, routine) || std::regex_search(line, found, global) ||
          std::regex_search(line, found, cls)) {
        const std::string name = found[1];
        marked.push_back("N" + std::to_string(std::string(u.ns).size()) + u.ns +
                         std::to_string(name.size()) + name);
      }
    }
  }
  return marked;
}

TEST(LibraryExports, EveryMarkedRoutineClassAndGlobalOfTheUnitsAndNoMore) {
  const std::set<std::string> exported = ExportedNames();
  ASSERT_FALSE(exported.empty()) << "WNOXD13_64.dll has no export table";
  const std::vector<std::string> marked = MarkedNames();
  EXPECT_GT(marked.size(), 400u);
  for (const std::string& name : marked) {
    bool found = false;
    for (const std::string& e : exported) found = found || e.find(name) != std::string::npos;
    EXPECT_TRUE(found) << name << " is not exported";
  }
  // The package's own entry points; the framework's counterparts stay inside.
  for (const char* entry : {"Initialize", "Finalize", "GetPackageInfoTable", "Register"})
    EXPECT_EQ(exported.count(entry), 1u) << entry;
  for (const std::string& e : exported)
    for (const char* internal : {"_ZN2ui", "_ZNK2ui", "_ZN3rtl", "_ZNK3rtl"})
      EXPECT_FALSE(e.starts_with(internal)) << e;
}

}  // namespace
