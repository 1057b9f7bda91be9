// The scenes that this library and its peers draw, in terms that all of them understand: lines of text, a style in
// pixels, and where each character stands at a moment.
#pragma once

#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace captionfx::peers {

inline constexpr const char* kFontFamily = "Liberation Sans";
// Of that font, in ems: from the top of a character's box to its base line, which is the typographic ascender.
inline constexpr double kAscent = 1491.0 / 2048;

enum class Motion { kRest, kSlide, kScaleIn, kTurn, kFade, kFreshShadow, kScroll };

struct Scene {
    std::string_view name, what;
    Motion motion;
    const char* effect;                 ///< Of this library; the peers follow `PlaceCharacters`.
    float firstProgress, lastProgress;  ///< Of the effect, at moment 0 and at moment 1.
    double emPx;                        ///< Size of the font in a frame of 1920 by 1080.
    double mostRatio1080, mostRatio4k;  ///< Our time over that of libass is to be at most this.
    bool isCredits;                     ///< 60 lines instead of one.
};

[[nodiscard]] std::span<const Scene> AllScenes();

/// Size of the frames; lengths of a scene are those at 1920 by 1080 times `scale`.
struct Stage {
    std::string_view name;
    int32_t width, height;
    double scale;

    [[nodiscard]] size_t PixelCount() const { return static_cast<size_t>(width) * static_cast<size_t>(height); }
};

inline constexpr Stage k1080{"1080", 1920, 1080, 1}, k4k{"4k", 3840, 2160, 2};

/// The look, in pixels of the frame: a white face, a red border, a soft dark shadow.
struct Look {
    double emPx, borderPx, shadowOffsetPx;
    double shadowSigmaPx;  ///< Of the bell curve that comes closest to the blur.
    double shadowAlpha;    ///< 0 to 1
};

// What this library is told, in its unit: ten are an eighth of the font's size.
inline constexpr int32_t kBorderSize = 3, kShadowBlur = 3, kWideShadowBlur = 8;
inline constexpr int32_t kShadowAlpha = 128;
inline constexpr float kShadowOffsetDoc = 3;  // pixels at 1920 by 1080

[[nodiscard]] Look LookOf(const Scene& scene, const Stage& stage);

/// Lines of ASCII.
[[nodiscard]] std::vector<std::string> TextOf(const Scene& scene);

/// A character's box at rest, pixels of the frame. Blanks are there, line ends are not.
struct CharBox {
    char letter;
    size_t line;
    double left, top, width, height;
};

/// Where this library's layout puts the text.
struct TextLayout {
    std::vector<CharBox> boxes;  ///< Line by line.
    double left = 0, top = 0, width = 0, height = 0;
};

/// A character at a moment: the left end of its base line, and how it is scaled and turned about that point.
struct PlacedChar {
    char letter;
    double x, baseline;
    double scale = 1;
    double clockwiseDeg = 0;
    double alpha = 1;
};

/// Whether all characters of a line keep their distances, so that a peer may draw it as a whole.
[[nodiscard]] bool MovesAsWhole(const Scene& scene);

/// Places all characters that are seen, in order. `moment` runs from 0 to 1.
[[nodiscard]] std::vector<PlacedChar> PlaceCharacters(const Scene& scene, const Stage& stage, const TextLayout& layout,
                                                      double moment);

/// A line that moves as a whole.
struct PlacedLine {
    std::string_view text;
    size_t index;
    double x, baseline;
    double alpha;
};

/// Those that are in the frame, or so close that border or shadow may be.
[[nodiscard]] std::vector<PlacedLine> PlaceLines(const Scene& scene, const Stage& stage, const TextLayout& layout,
                                                 std::span<const std::string> text, double moment);

}  // namespace captionfx::peers
