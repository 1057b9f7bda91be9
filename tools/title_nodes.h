// What the tool looks for in a title's XML.
#pragma once

#include <optional>
#include <string_view>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/argument_values.h"
#include "tools/title_document.h"

namespace captionfx {

/// The name of a title's root.
inline constexpr const char* kTitleRoot = "CCaptionFx";

/// The first child of that name; none where there is none or no parent.
[[nodiscard]] TitleNode ChildOf(const TitleNode& parent, std::string_view name);

/// All children of that name.
[[nodiscard]] std::vector<TitleNode> ItemsOf(const TitleNode& list, std::string_view name);

/// The strings of a title, which is its root.
[[nodiscard]] std::vector<TitleNode> StringNodes(const TitleNode& root);

/// The number that a text begins with, 0 without one; nothing for one that is not finite.
[[nodiscard]] std::optional<float> FiniteNumber(std::string_view text);

/// The keyframes of a string, by rising time.
[[nodiscard]] std::vector<Keyframe> KeyframesOf(const TitleNode& string);

/// A title as the library writes it, from its root. Throws std::bad_alloc.
[[nodiscard]] TitleNode SavedNodes(IKVT_CaptionFx& title);

/// Replaces the strings of a title by those of a root that came from a title. Throws std::bad_alloc.
void LoadNodes(IKVT_CaptionFx& title, const TitleNode& root);

}  // namespace captionfx
