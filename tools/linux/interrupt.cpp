#include "tools/interrupt.h"

#include <atomic>
#include <csignal>
#include <cstdlib>

namespace captionfx {
namespace {

std::atomic<int> received{0};
static_assert(std::atomic<int>::is_always_lock_free, "signal handlers may not wait");

extern "C" void NoteInterrupt(int number) {
    received = number;
}

}  // namespace

void CatchInterrupts() {
    struct sigaction action {};
    action.sa_handler = &NoteInterrupt;
    for (const int number : {SIGINT, SIGTERM}) sigaction(number, &action, nullptr);
}

bool IsInterrupted() {
    return received != 0;
}

void ThrowIfInterrupted() {
    if (IsInterrupted()) throw Interrupted();
}

void DieOfInterrupt() {
    std::signal(received, SIG_DFL);
    std::raise(received);
    std::abort();
}

}  // namespace captionfx
