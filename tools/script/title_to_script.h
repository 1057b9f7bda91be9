// Titles turned back into scripts.
#pragma once

#include <filesystem>

#include <captionfx/caption_fx.h>

#include "tools/title_source.h"

namespace captionfx {

/// Writes a script of a loaded title, and notes on standard error what a script cannot say of it. Throws
/// std::runtime_error with one line.
void WriteScript(IKVT_CaptionFx& title, const TitleSource& source, const std::filesystem::path& path);

}  // namespace captionfx
