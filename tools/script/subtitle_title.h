// Titles from subtitles: where each cue stands, when it enters and leaves.
#pragma once

#include <vector>

#include "tools/script/subtitle_file.h"
#include "tools/script/title_script.h"

namespace captionfx {

/// How subtitles look where nobody says otherwise: a title script with a cue.
[[nodiscard]] std::string_view UsualSubtitleStyle();

/// The script of a title with a string for each cue, in the look of `style`, which has a cue; `usual` is the frame of a
/// style that names none. A cue that is shown while earlier ones still are stands beyond them, away from the edge that
/// they are anchored to. Words with times of their own are strings of their own, each at its place in the cue; vertical
/// and turned text appears as a whole.
[[nodiscard]] TitleScript ScriptOfSubtitles(std::vector<SubtitleCue> cues, const TitleScript& style, FrameSize usual);

}  // namespace captionfx
