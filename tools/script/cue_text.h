// The text of one subtitle: its words, and what the marks in it say.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include "tools/script/subtitle_file.h"

namespace captionfx {

/// "01:02:03,500", "02:03.5": hours may be missing, and what decimals stand for. Nothing for what is no time.
[[nodiscard]] std::optional<float> ParseCueTime(std::string_view text);

/// Splits a text into pieces; times inside it are held between `start` and `end` and never fall.
[[nodiscard]] std::vector<CuePiece> SplitCueText(std::string_view text, float start, float end);

}  // namespace captionfx
