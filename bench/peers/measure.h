// One scene at one size: all sides in turns, frame by frame, in one process.
#pragma once

#include <string>
#include <vector>

#include "peers/scene.h"

namespace captionfx::peers {

/// Milliseconds a frame. Of several frames of the same part of the scene the median counts.
struct Figures {
    double meanMs = 0;   ///< Processor time of the thread.
    double worstMs = 0;  ///< Of the costliest part of the scene.
    double wallMs = 0;   ///< By the clock.
};

struct SceneResult {
    const Scene* scene;
    Stage stage;
    size_t frames;
    Figures us, usOnTwo, libass;
    Figures libassSoft;  ///< With a soft border: see SoftShadow.
    Figures cairo;

    [[nodiscard]] double Ratio() const { return us.meanMs / libass.meanMs; }
    [[nodiscard]] double RatioToSoft() const { return us.meanMs / libassSoft.meanMs; }
    [[nodiscard]] double Target() const { return stage.scale > 1 ? scene->mostRatio4k : scene->mostRatio1080; }
    [[nodiscard]] double Speedup() const { return us.wallMs / usOnTwo.wallMs; }
    [[nodiscard]] double WorstOverMean() const { return us.worstMs / us.meanMs; }
};

/// Measures for about `seconds`.
[[nodiscard]] SceneResult MeasureScene(const Scene& scene, const Stage& stage, const std::string& fontFile,
                                       double seconds);

struct OpeningResult {
    const Scene* scene;
    double typedMs, loadedMs;
};

/// A title and its first frame at 1080p, median of several, fonts known to the process.
[[nodiscard]] OpeningResult MeasureOpening(const Scene& scene);

/// An opaque ground.
[[nodiscard]] std::vector<uint32_t> MakeGround(const Stage& stage);

}  // namespace captionfx::peers
