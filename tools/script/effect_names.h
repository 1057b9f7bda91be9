// Effects as a person writes them: "slide-left" is PATH_SLIDELEFT.
#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace captionfx {

/// The effect that a name stands for, as the library calls it: its own name, or the readable one; where hyphens stand
/// and in which case letters are does not matter. "none" is the text at rest, "nothing" no text. Nothing where there is
/// no such effect.
[[nodiscard]] std::optional<std::string> EffectOfName(std::string_view name);

/// The readable name of an effect of the list; any other name comes back as it is.
[[nodiscard]] std::string NameOfEffect(std::string_view effect);

/// The readable name that a slip of the pen may have meant; empty where none is near.
[[nodiscard]] std::string NearestEffectName(std::string_view name);

}  // namespace captionfx
