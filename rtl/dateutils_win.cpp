// Now() from the system's local clock.
#include <windows.h>

#include "rtl/dateutils.h"

namespace rtl {

TDateTime Now() {
  SYSTEMTIME st;
  GetLocalTime(&st);
  return EncodeDateTime(st.wYear, st.wMonth, st.wDay, st.wHour, st.wMinute, st.wSecond,
                        st.wMilliseconds);
}

}  // namespace rtl
