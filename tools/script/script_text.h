// Pieces of a title script as text.
#pragma once

#include <string>

#include <nlohmann/json.hpp>

#include "tools/script/text_style.h"
#include "tools/script/timeline.h"

namespace captionfx {

using ScriptJson = nlohmann::ordered_json;

/// The shortest decimal that is read back as this number.
[[nodiscard]] ScriptJson NumberText(float number);

/// Adds the keys that turn the style `base` into `style`, as far as keys can.
void AddStyleKeys(ScriptJson& object, const TextStyle& style, const TextStyle& base);

/// Adds the keys of a timeline.
void AddTimelineKeys(ScriptJson& object, const std::vector<Keyframe>& keys);

/// JSON with what fits into a line on one line.
[[nodiscard]] std::string LaidOut(const ScriptJson& value);

}  // namespace captionfx
