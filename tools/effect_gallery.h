// The gallery: a page for a browser with a short looping picture of every effect.
#pragma once

#include <filesystem>
#include <span>

#include "tools/effect_list.h"
#include "tools/effect_sheet.h"

namespace captionfx {

/// Writes index.html and an animated picture an effect beside it; the folder is made where it is missing. Tells how far
/// it is on standard error unless it is to be quiet. Throws std::exception with a one-line reason.
void WriteEffectGallery(std::span<const EffectInfo> effects, const SheetLook& look, const std::filesystem::path& folder,
                        bool isQuiet);

}  // namespace captionfx
