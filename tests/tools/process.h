// Runs the built tool and keeps what it said.
#pragma once

#include <string>
#include <vector>

#include <sys/types.h>

#include "tests/tools/scratch_folder.h"

namespace captionfx {

struct ProcessResult {
    int exitCode;  ///< -1 where a signal ended it.
    std::string output, errors;

    [[nodiscard]] int ErrorLines() const;
};

/// Runs the tool with `arguments`, passed on as they are, no shell between. What it prints goes through files of
/// `scratch`, so that no full pipe can stop it.
[[nodiscard]] ProcessResult RunTool(const ScratchFolder& scratch, const std::vector<std::string>& arguments);

/// Starts the tool as RunTool does and does not wait for it.
[[nodiscard]] pid_t StartTool(const ScratchFolder& scratch, const std::vector<std::string>& arguments);

/// Waits for a started tool. The signal that ended it; 0 where none did.
[[nodiscard]] int EndingSignal(pid_t process);

}  // namespace captionfx
