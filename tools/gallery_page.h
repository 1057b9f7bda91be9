// The text of the gallery's page.
#pragma once

#include <span>
#include <string>

#include "tools/argument_values.h"
#include "tools/effect_list.h"

namespace captionfx {

struct GalleryEntry {
    EffectInfo effect;
    std::string picture;  ///< A file beside the page; empty for an effect that this library does not draw.
};

/// One HTML document that needs nothing but the pictures: grouped by class in the order in which the classes first
/// appear, searchable by typing or by a fragment such as index.html#wipe, each effect with the words to copy.
[[nodiscard]] std::string GalleryPage(std::span<const GalleryEntry> entries, FrameSize picture);

}  // namespace captionfx
