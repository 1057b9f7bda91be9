// Ctrl-C and termination, turned into an orderly end: what was half done is put away before the process goes.
#pragma once

#include <exception>

namespace captionfx {

/// Thrown on the way out. Whoever catches it last calls DieOfInterrupt.
class Interrupted : public std::exception {
public:
    [[nodiscard]] const char* what() const noexcept override { return "interrupted"; }
};

/// From here on SIGINT and SIGTERM only set a mark, as do Ctrl-C, Ctrl-Break and the end of the console on Windows.
/// System calls that wait return.
void CatchInterrupts();

/// Safe from any thread.
[[nodiscard]] bool IsInterrupted();

/// Throws Interrupted where one has come.
void ThrowIfInterrupted();

/// Ends the process as the signal that came would have, so that shells and scripts see what ended it.
[[noreturn]] void DieOfInterrupt();

}  // namespace captionfx
