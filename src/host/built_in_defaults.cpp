#include "host/built_in_defaults.h"

#include <bit>

namespace captionfx {

TitleDefaults BuiltInDefaults() {
    constexpr uint32_t kWhite = 0x00FFFFFF, kRed = 0x000000FF;
    TitleDefaults defaults{};
    SetText(defaults.DefaultFont.FaceName, u"Arial");
    defaults.DefaultFont.CharSet = kDefaultCharSet;
    defaults.DefaultFont.Size = 24.0F;
    defaults.DefaultFace = {
        .Enable = 1, .Color1 = kWhite, .Color2 = kWhite, .GradType = 0, .Alpha = 255, .BlurRadius = 0};
    defaults.DefaultBorder = {
        .Enable = 1, .Size = 3, .Color1 = kRed, .Color2 = kRed, .GradType = 0, .Alpha = 255, .BlurRadius = 0};
    defaults.DefaultShadow = {.EnableFace = 1,
                              .EnableBorder = 1,
                              .Color1 = 0,
                              .Color2 = 0,
                              .GradType = 0,
                              .Alpha = 128,
                              .BlurRadius = 3,
                              .OffsetX = 3.0F,
                              .OffsetY = 3.0F,
                              .Height = 0};
    defaults.DefaultCharSpacing = {.WidthScale = 1.0F, .Spacing = 0.0F};
    defaults.DefaultString.Left = defaults.DefaultString.Top = 100.0F;
    defaults.DefaultString.WidthLimit = 1000000000.0F;
    SetText(defaults.DefaultString.PathID, "PATH_NOEFFECT");
    defaults.DefaultString.PathProgress = 1.0F;
    return defaults;
}

TitleRenderSettings BuiltInRenderSettings() {
    constexpr int32_t kWidth = 320, kHeight = 240;
    return {.Reserved = std::bit_cast<uint32_t>(1.0F),
            .AntialiasMode = 1,
            .PixelFormat = 0,
            .PostFilter = 0,
            .DestinationAlpha = 0,
            .Width = kWidth,
            .Height = kHeight,
            .ScaleX = 1.0F,
            .ScaleY = 1.0F,
            .ClipRect = {0, 0, kWidth, kHeight},
            .GlyphCacheEnabled = 1,
            .MaxThreads = 1};
}

}  // namespace captionfx
