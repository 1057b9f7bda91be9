// Where a title comes from: a title as XML, a title script, or subtitles. Every command loads its titles here.
#pragma once

#include <filesystem>
#include <optional>
#include <set>
#include <string>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/argument_values.h"
#include "tools/title_file.h"
#include "tools/title_setup.h"

namespace captionfx {

/// What the file says besides the strings, which are in the title.
struct TitleSource {
    std::optional<FrameSize> frame;   ///< The frame that the title is made for, where the file tells.
    float scale = 1.0F;               ///< Document units to pixels of that frame.
    float duration = 0.0F;            ///< Seconds, the script's own or to the last keyframe; 0 for a still.
    std::vector<FileString> strings;  ///< What the interface does not tell of each string.
    std::set<std::u16string> fonts;   ///< Families that a script or a style asks for.
};

/// Replaces the strings of `title` by those of a file. Its name decides what it is (.xml, .json, .srt, .vtt), and where
/// the name does not tell, what it holds. Subtitles look as the script with a cue in `style` says. A script that names
/// no frame is laid out for the present frame of `title`, the output settings stay as they are. Throws
/// std::runtime_error with one line: the file, the place, the reason.
[[nodiscard]] TitleSource LoadTitle(IKVT_CaptionFx& title, const std::filesystem::path& path,
                                    const std::filesystem::path& style = {});

/// The same from the text of a title script, whose errors begin with its place.
[[nodiscard]] TitleSource LoadScript(IKVT_CaptionFx& title, const std::string& text);

/// Sets up frames for a loaded title and returns their size: the frame that the source is made for, or the one that is
/// asked for, into which the source's frame is fitted as a whole, its upper left corner staying in the corner. Without
/// either the frame is 1280x720.
FrameSize SetSourceFrame(IKVT_CaptionFx& title, const TitleSource& source, std::optional<FrameSize> asked,
                         Ground ground);

/// Notes on standard error which of the families that the source asks for are not installed.
void NoteFontSubstitutes(IKVT_CaptionFx& title, const TitleSource& source);

}  // namespace captionfx
