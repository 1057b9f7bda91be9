#include "tools/interrupt.h"

#include <windows.h>
#include <atomic>

namespace captionfx {
namespace {

std::atomic<bool> isReceived{false};

/// On a thread of the system's. When a console closes, the process ends as soon as this returns: what is under way then
/// has the few seconds that the system gives.
BOOL WINAPI NoteInterrupt(DWORD event) {
    isReceived = true;
    if (event != CTRL_C_EVENT && event != CTRL_BREAK_EVENT) Sleep(INFINITE);
    return TRUE;
}

}  // namespace

void CatchInterrupts() {
    SetConsoleCtrlHandler(&NoteInterrupt, TRUE);
}

bool IsInterrupted() {
    return isReceived;
}

void ThrowIfInterrupted() {
    if (IsInterrupted()) throw Interrupted();
}

void DieOfInterrupt() {
    constexpr UINT kEndedByControlC = 0xC000013A;
    ExitProcess(kEndedByControlC);
}

}  // namespace captionfx
