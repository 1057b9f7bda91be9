// Lines that end between words. The library breaks a line at the character that does not fit any more, also within a
// word.
#pragma once

#include <cstddef>
#include <span>
#include <string>
#include <vector>

#include "tools/script/script_title.h"

namespace captionfx {

/// The blanks that must become line ends, so that the lines of a string with a width limit end between words: rising
/// indices into the text of all its runs. A word longer than a line is cut, and text in ideographs ends anywhere.
[[nodiscard]] std::vector<size_t> BlanksToBreakAt(StringRuler& ruler, ScriptString string);

/// Makes CR LF of the blanks in a text that is spread over `texts`.
void BreakLines(std::span<std::u16string* const> texts, std::span<const size_t> blanks);

/// The string with line ends in the place of those blanks. Each line is a paragraph then.
[[nodiscard]] ScriptString WrappedAtWords(StringRuler& ruler, ScriptString string);

}  // namespace captionfx
