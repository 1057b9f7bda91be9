// The structure of a string as lines of text, for whoever debugs a host.
#pragma once

#include "host/document.h"
#include "platform/clock.h"
#include "platform/debug_output.h"

namespace captionfx {

/// Writes one line for each character, line and paragraph. `index` is the string's own.
void WriteStringDump(DebugOutput& output, Clock& clock, int32_t index, const MetaString& string);

}  // namespace captionfx
