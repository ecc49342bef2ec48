// Waiting in Win32 tests while this thread's messages (posted, or sent by other processes)
// are dispatched; Wine wants a pumping waiter even where no window of ours is involved.
#pragma once

#include <windows.h>

#include <algorithm>

// Dispatches this thread's messages until done() holds, `object` (when given) is
// signalled, or `ms` milliseconds have passed. True unless the time ran out. done() is
// asked at least every 20 ms, as it may watch things no message announces.
template <class Done>
bool PumpUntil(Done done, DWORD ms, HANDLE object = nullptr) {
  const ULONGLONG end = GetTickCount64() + ms;
  for (;;) {
    MSG m;
    while (PeekMessageW(&m, nullptr, 0, 0, PM_REMOVE)) {
      TranslateMessage(&m);
      DispatchMessageW(&m);
    }
    if (done()) return true;
    const ULONGLONG now = GetTickCount64();
    if (now >= end) return false;
    const DWORD count = object ? 1 : 0;
    const DWORD wait = static_cast<DWORD>(std::min<ULONGLONG>(end - now, 20));
    const DWORD r =
        MsgWaitForMultipleObjects(count, object ? &object : nullptr, FALSE, wait, QS_ALLINPUT);
    if (object && r == WAIT_OBJECT_0) return true;
  }
}

// Lets this thread's windows run for `ms` milliseconds.
inline void Pause(DWORD ms) { PumpUntil([] { return false; }, ms); }

// The exit code of `process` once it has ended, or STILL_ACTIVE if it runs on after `ms`.
inline DWORD ExitCodeWithin(HANDLE process, DWORD ms) {
  PumpUntil([] { return false; }, ms, process);
  DWORD code = STILL_ACTIVE;
  GetExitCodeProcess(process, &code);
  return code;
}
