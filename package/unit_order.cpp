#include "package/unit_order.h"

#include <cwchar>
#include <iterator>

namespace WNOXD13_64 {

namespace {

constexpr const wchar_t* kStartOrder[] = {
    L"QMMessageDlgVCL", L"Qm_tools",      L"NOXEData",    L"DVersion",
    L"WNOXView",        L"WNOXConstants", L"WNOXCreator", L"WNOXD13_64",
};

const TPackageUnitEntry* Find(const TPackageInfoTable& info, const wchar_t* name) {
  for (int i = 0; i < info.UnitCount; ++i)
    if (std::wcscmp(info.Units[i].Name, name) == 0) return &info.Units[i];
  return nullptr;
}

}  // namespace

void StartUnits(const TPackageInfoTable& info) {
  for (const wchar_t* name : kStartOrder) {
    const TPackageUnitEntry* unit = Find(info, name);
    if (unit != nullptr && unit->Init != nullptr) unit->Init();
  }
}

void StopUnits(const TPackageInfoTable& info) {
  for (auto name = std::rbegin(kStartOrder); name != std::rend(kStartOrder); ++name) {
    const TPackageUnitEntry* unit = Find(info, *name);
    if (unit != nullptr && unit->FInit != nullptr) unit->FInit();
  }
}

}  // namespace WNOXD13_64
