// Title files, as the commands that draw load them.
#pragma once

#include <filesystem>

#include <captionfx/caption_fx.h>

namespace captionfx {

/// Replaces the strings of `title` by those of a file. Returns when its last keyframe is, in seconds; 0 where it has
/// none. Throws std::runtime_error with one line: the file, the place, the reason.
float LoadTitleFile(IKVT_CaptionFx& title, const std::filesystem::path& path);

}  // namespace captionfx
