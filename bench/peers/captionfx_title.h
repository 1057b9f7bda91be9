// A title of this library as a host sets it up. All functions throw std::runtime_error where the library refuses.
#pragma once

#include <string>

#include <captionfx/caption_fx.h>

#include "peers/scene.h"
#include "tools/title_handle.h"

namespace captionfx::peers {

inline constexpr int32_t kDefaults = -1;  // no string: the getters then give the defaults

/// Throws when the title cannot `what`.
void Require(bool isGood, const char* what);

/// The lines of a scene, a paragraph each.
[[nodiscard]] std::u16string JoinedText(const Scene& scene);

/// A title of the scene's frame and look, without a string. Each character's layers are kept.
[[nodiscard]] TitleHandle OpenTitle(const Scene& scene, const Stage& stage, int32_t threads);

/// For new text.
void SetShadowBlur(IKVT_CaptionFx& title, int32_t blur);

/// Adds the scene's text, at whole document units: a line in the middle, credits at the upper edge.
void Type(IKVT_CaptionFx& title, const Scene& scene, const char* effect, float progress);

[[nodiscard]] std::u16string Saved(IKVT_CaptionFx& title);

/// Gives the one string of a title two keyframes, at the moments 0 and 1.
void SetKeyframes(IKVT_CaptionFx& title, const Scene& scene);

}  // namespace captionfx::peers
