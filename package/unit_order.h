// The order in which the package starts its units and stops them again. A unit starts
// after the units it uses (WNOXCreator uses WNOXView and WNOXConstants, WNOXView uses
// NOXEData and Qm_tools, the shared data uses the tool library, and every message goes
// through QMMessageDlgVCL), the package unit last. Stopping goes the other way round, so
// the page is unregistered while the frame's unit still holds its settings.
#pragma once

#include "package/packageinfo.h"

namespace WNOXD13_64 {

// Calls the start procedure of each unit of `info` in start order; a unit the table
// does not hold, or one without start work, is passed over.
void StartUnits(const TPackageInfoTable& info);
// Calls the stop procedures in the reverse order.
void StopUnits(const TPackageInfoTable& info);

}  // namespace WNOXD13_64
