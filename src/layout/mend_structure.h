// The structure of a string from a file: lines and paragraphs as the text wants them.
#pragma once

#include "host/document.h"

namespace captionfx {

/// Leaves lines and paragraphs alone that partition the text, with paragraphs at its CR LF pairs. Others are built
/// anew: a paragraph for each part between two pairs, with the settings of the record that its first character names
/// where there is one, else with `settings`, and lines by reflow. `vertical` is that of ReflowLines.
void MendStructure(MetaString& string, const ParagraphSpec& settings, bool vertical);

}  // namespace captionfx
