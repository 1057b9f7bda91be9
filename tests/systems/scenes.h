// Titles that both systems draw: one feature each, fonts that scripts/install-dependencies installs.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

#include <captionfx/caption_fx.h>

namespace captionfx::test {

inline constexpr int32_t kSceneWidth = 480, kSceneHeight = 270;

/// The defaults of a title and its one string.
struct Scene {
    const char* name;
    const char16_t* text;
    FontSpec font;
    MetaFace face;
    MetaBorder border;
    MetaShadow shadow;
    CharSpacing spacing;
    ParagraphSpec paragraph;
    StringSpec string;
    TitleRenderSettings settings;
};

[[nodiscard]] std::span<const Scene> Scenes();

/// Sets the defaults and the output settings of a scene, without its string.
void SetDefaults(IKVT_CaptionFx& title, const Scene& scene);

}  // namespace captionfx::test
