#include "peers/scene.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>

namespace captionfx::peers {
namespace {

constexpr double kLineEm = 96, kCreditsEm = 64;

constexpr std::array kScenes = {
    Scene{"S1", "at rest", Motion::kRest, "PATH_NOEFFECT", 1, 1, kLineEm, 0.40, 0.68, false},
    Scene{"S2", "line slides by fractions", Motion::kSlide, "PATH_SCROLLLEFT", 0.485F, 0.515F, kLineEm, 0.77, 1.30,
          false},
    Scene{"S3", "characters scale in", Motion::kScaleIn, "PATH_GLITTER", 0.8F, 1, kLineEm, 0.35, 0.54, false},
    Scene{"S4", "every character turns", Motion::kTurn, "PATH_ROLLINGLEFT", 0.7F, 0.89F, kLineEm, 0.48, 0.75, false},
    Scene{"S5", "fade", Motion::kFade, "PATH_FADE", 0.02F, 0.98F, kLineEm, 0.60, 0.77, false},
    Scene{"S6", "wide shadow, fresh each frame", Motion::kFreshShadow, "PATH_NOEFFECT", 0.9F, 0.9F, kLineEm, 0.67, 0.76,
          false},
    Scene{"S7", "credits of 2,000 characters", Motion::kScroll, "PATH_SCROLLUP", 0.45F, 0.5F, kCreditsEm, 0.56, 0.80,
          true},
};

/// The sigma of three boxes, one after the other, whose radii add up to `radiusPx`.
double SigmaOfBoxes(double radiusPx) {
    const double reach = std::ceil(radiusPx);
    double variance = 0;
    for (const double rounding : {2, 1, 0}) {
        const double share = std::floor((reach + rounding) / 3), width = 2 * radiusPx * share / reach + 1;
        variance += (width * width - 1) / 12;
    }
    return std::sqrt(variance);
}

double ProgressAt(const Scene& scene, double moment) {
    const auto first = static_cast<double>(scene.firstProgress), last = static_cast<double>(scene.lastProgress);
    return first + (last - first) * moment;
}

/// The progress of one character's own, 0 to 1, when characters start by `order` and each takes `span` of the whole.
double Stagger(double p, double order, double span) {
    return std::clamp((p - order * (1 - span)) / span, 0.0, 1.0);
}

/// Grows, together with its alpha.
void ScaleIn(double p, const TextLayout& layout, const CharBox& box, PlacedChar& out) {
    const double t = Stagger(p, (box.left - layout.left) / layout.width, 0.6);
    const double flash = std::sin((t * 3 - 0.5) * std::numbers::pi) + 1;
    out.scale = out.alpha = std::max(flash * (1 - (1 - t) * (1 - t)) / 2, 0.0);
}

/// Rolls in from the right, like a wheel, round a point in its middle, a third of its height above the base point.
void Turn(double p, double order, double way, const CharBox& box, PlacedChar& out) {
    const double t = Stagger(p, order, 0.9), x = way * (1 - t * (2 - t));
    const double angle = x / box.height * 2;
    const double half = box.width / 2, third = box.height / 3, c = std::cos(angle), s = std::sin(angle);
    out.x += half + x - (c * half + s * third);
    out.baseline += c * third - s * half - third;
    out.clockwiseDeg = angle * 180 / std::numbers::pi;
}

/// How far a line that moves as a whole is from its place at rest.
struct Way {
    double x = 0, y = 0;
};

Way WayOf(const Scene& scene, const Stage& stage, const TextLayout& layout, double p) {
    if (scene.motion == Motion::kSlide) return {.x = stage.width - layout.left - (stage.width + layout.width) * p};
    if (scene.motion == Motion::kScroll) return {.y = stage.height - layout.top - (stage.height + layout.height) * p};
    return {};
}

double AlphaOf(const Scene& scene, double p) {
    return scene.motion == Motion::kFade ? p : 1;
}

}  // namespace

std::span<const Scene> AllScenes() {
    return kScenes;
}

Look LookOf(const Scene& scene, const Stage& stage) {
    const double em = scene.emPx * stage.scale;
    const int32_t blur = scene.motion == Motion::kFreshShadow ? kWideShadowBlur : kShadowBlur;
    const auto styleLength = [em](int32_t size) { return em / 8 * size / 10; };
    return {.emPx = em,
            .borderPx = styleLength(kBorderSize),
            .shadowOffsetPx = static_cast<double>(kShadowOffsetDoc) * stage.scale,
            .shadowSigmaPx = SigmaOfBoxes(styleLength(blur)),
            .shadowAlpha = kShadowAlpha / 255.0};
}

std::vector<std::string> TextOf(const Scene& scene) {
    const std::string sentence = "The quick brown fox jumps over the lazy.";
    if (!scene.isCredits) return {sentence};
    // Sixty lines of 33 and 34 letters, 2,000 in all, each begun at another place.
    const std::string ring = "Camera Operator Jo Quill, Grip Max Webb, Sound Vic Dyer, Light Zoe Fink, ";
    std::vector<std::string> lines;
    for (size_t i = 0; i < 60; ++i) {
        const size_t length = i % 3 == 0 ? 34 : 33, start = i * 7 % ring.size();
        lines.push_back((ring + ring).substr(start, length));
    }
    return lines;
}

bool MovesAsWhole(const Scene& scene) {
    return scene.motion != Motion::kScaleIn && scene.motion != Motion::kTurn;
}

std::vector<PlacedChar> PlaceCharacters(const Scene& scene, const Stage& stage, const TextLayout& layout,
                                        double moment) {
    const double p = ProgressAt(scene, moment), ascent = kAscent * scene.emPx * stage.scale;
    const Way way = WayOf(scene, stage, layout, p);
    std::vector<PlacedChar> placed;
    for (size_t i = 0; i < layout.boxes.size(); ++i) {
        const CharBox& box = layout.boxes[i];
        PlacedChar out{.letter = box.letter,
                       .x = box.left + way.x,
                       .baseline = box.top + ascent + way.y,
                       .alpha = AlphaOf(scene, p)};
        if (scene.motion == Motion::kScaleIn) ScaleIn(p, layout, box, out);
        if (scene.motion == Motion::kTurn) {
            Turn(p, static_cast<double>(i) / static_cast<double>(layout.boxes.size()), stage.width, box, out);
        }
        if (out.letter != ' ' && out.scale > 0 && out.alpha > 0) placed.push_back(out);
    }
    return placed;
}

std::vector<PlacedLine> PlaceLines(const Scene& scene, const Stage& stage, const TextLayout& layout,
                                   std::span<const std::string> text, double moment) {
    const double p = ProgressAt(scene, moment), ascent = kAscent * scene.emPx * stage.scale;
    const Way way = WayOf(scene, stage, layout, p);
    std::vector<PlacedLine> lines;
    size_t next = 0;
    for (const CharBox& box : layout.boxes) {
        if (box.line < next) continue;  // the first character of each line
        next = box.line + 1;
        const double top = box.top + way.y, margin = box.height / 2;
        if (top + box.height + margin < 0 || top - margin > stage.height) continue;
        lines.push_back({.text = text[box.line],
                         .index = box.line,
                         .x = box.left + way.x,
                         .baseline = top + ascent,
                         .alpha = AlphaOf(scene, p)});
    }
    return lines;
}

}  // namespace captionfx::peers
