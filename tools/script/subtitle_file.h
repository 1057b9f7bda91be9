// Subtitles, SubRip and WebVTT: who reads them needs the times and the words, and of the marks those that a title can
// show.
#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "tools/argument_values.h"

namespace captionfx {

/// A part of a cue's text that looks the same and appears at one time.
struct CuePiece {
    std::string text;  ///< UTF-8; lines end in a line feed.
    float time;        ///< Seconds; the cue's start but for words with times of their own.
    bool bold = false, italic = false;
    std::optional<Rgb> color;
};

/// Times are seconds, `end` lies after `start`.
struct SubtitleCue {
    float start, end;
    std::vector<CuePiece> pieces;  ///< At least one.
};

/// Reads a file, UTF-8 with or without a byte-order mark; one that begins with WEBVTT is that, any other SubRip. Cues
/// come in the order of the file, those without text are left out. Of the marks <b>, <i>, <font color>, WebVTT's colour
/// classes and its times inside a text count; others are dropped. Throws PlacedError for what is no time, and
/// for a file without cues.
[[nodiscard]] std::vector<SubtitleCue> ReadSubtitles(std::string_view text);

}  // namespace captionfx
