// The package's entry points. The IDE loads the DLL, calls Initialize (every unit's start
// work, each after the units it uses), then Register; at unload Finalize (stop work in
// reverse) before FreeLibrary. Nothing happens in DllMain: start work that may load other
// modules or make windows must not run under the loader lock.
#include <windows.h>

#include <iterator>

#include "data/NOXEData.h"
#include "dialog/QMMessageDlgVCL.h"
#include "host/WNOXView.h"
#include "package/WNOXConstants.h"
#include "package/WNOXCreator.h"
#include "package/packageinfo.h"
#include "package/unit_order.h"
#include "rtl/unitinit.h"
#include "tools/qm_globals.h"

namespace DVersion {
namespace {
rtl::TUnitCounter Counter;  // no start or stop work: counted only
}
void Initialize() { Counter.Start(); }
void Finalize() { Counter.Stop(); }
}  // namespace DVersion

namespace WNOXD13_64 {
namespace {
rtl::TUnitCounter Counter;  // the package unit itself: counted only

void InitializeUnit() { Counter.Start(); }
void FinalizeUnit() { Counter.Stop(); }

constexpr const wchar_t* kRequires[] = {L"designide370", L"vcl370", L"rtl370"};

// The package's own list order, as the IDE shows the contained units.
constexpr TPackageUnitEntry kUnits[] = {
    {L"WNOXD13_64", &InitializeUnit, &FinalizeUnit},
    {L"NOXEData", &NOXEData::Initialize, &NOXEData::Finalize},
    {L"Qm_tools", &Qm_tools::Initialize, &Qm_tools::Finalize},
    {L"QMMessageDlgVCL", &QMMessageDlgVCL::Initialize, &QMMessageDlgVCL::Finalize},
    {L"SysInit", nullptr, nullptr},
    {L"DVersion", &DVersion::Initialize, &DVersion::Finalize},
    {L"WNOXView", &WNOXView::Initialize, &WNOXView::Finalize},
    {L"WNOXConstants", &WNOXConstants::Initialize, &WNOXConstants::Finalize},
    {L"WNOXCreator", &WNOXCreator::Initialize, &WNOXCreator::Finalize},
};

constexpr TPackageInfoTable kInfo = {
    L"WNOXD13_64",
    L"--- Quillmark Noxdesk PlugIn f\u00fcr Delphi 13 64 Bit Welcome Page",
    static_cast<int>(std::size(kRequires)),
    kRequires,
    static_cast<int>(std::size(kUnits)),
    kUnits,
};
}  // namespace
}  // namespace WNOXD13_64

extern "C" {

__declspec(dllexport) const TPackageInfoTable* GetPackageInfoTable() {
  return &WNOXD13_64::kInfo;
}

__declspec(dllexport) void Initialize() { WNOXD13_64::StartUnits(WNOXD13_64::kInfo); }

__declspec(dllexport) void Finalize() { WNOXD13_64::StopUnits(WNOXD13_64::kInfo); }

__declspec(dllexport) void Register() { WNOXCreator::Register(); }

}  // extern "C"
