// What `captionfx render` does once the command line is understood.
#pragma once

#include "tools/render_command.h"

namespace captionfx {

/// The frames a second of a sequence that names none.
inline constexpr float kUsualRate = 25.0F;

/// Whether a request is for frames at several times.
[[nodiscard]] bool IsSequence(const RenderRequest& request);

/// Writes all that the request asks for, and notes on standard error what a user may not expect. Throws std::exception
/// with a one-line reason.
void WriteOutput(const RenderRequest& request);

}  // namespace captionfx
