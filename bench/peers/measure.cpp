#include "peers/measure.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <numeric>

#include "peers/cairo_side.h"
#include "peers/captionfx_side.h"
#include "peers/libass_side.h"
#include "peers/timing.h"

namespace captionfx::peers {
namespace {

double Median(std::vector<double> values) {
    const auto middle = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::ranges::nth_element(values, middle);
    return *middle;
}

/// The seconds that a side took, by the part of the scene.
struct Samples {
    std::vector<std::vector<double>> processor, wall;

    explicit Samples(size_t parts) : processor(parts), wall(parts) {}

    [[nodiscard]] Figures Summed() const {
        Figures figures{};
        const auto parts = static_cast<double>(processor.size());
        for (size_t part = 0; part < processor.size(); ++part) {
            const double ms = Median(processor[part]) * 1000;
            figures.meanMs += ms / parts;
            figures.worstMs = std::max(figures.worstMs, ms);
            figures.wallMs += Median(wall[part]) * 1000 / parts;
        }
        return figures;
    }
};

/// Rows that the text may touch at any moment. The ground is restored there before each frame, for all sides alike.
struct Rows {
    size_t first, end;
};

Rows TouchedRows(const Scene& scene, const Stage& stage, const TextLayout& layout) {
    if (scene.isCredits) return {.first = 0, .end = static_cast<size_t>(stage.height)};
    const double margin = layout.height / 2;
    return {
        .first = static_cast<size_t>(std::max(layout.top - margin, 0.0)),
        .end = std::min(static_cast<size_t>(layout.top + layout.height + margin), static_cast<size_t>(stage.height))};
}

/// The sides at their work.
class Race {
public:
    static constexpr size_t kSides = 4;  // this library on one thread and on two, libass, cairo

    Race(const Scene& scene, const Stage& stage, const std::string& fontFile)
        : stage_(stage),
          layout_(MeasureLayout(scene, stage)),
          sides_{MakeCaptionFxSide(scene, stage, 1), MakeCaptionFxSide(scene, stage, 2),
                 MakeLibassSide(scene, stage, layout_, fontFile), MakeCairoSide(scene, stage, layout_)},
          ground_(MakeGround(stage)),
          pixels_(ground_),
          rows_(TouchedRows(scene, stage, layout_)) {}

    /// Each side draws `parts` frames that are evenly spread over the scene, one after the other, beginning `shift`
    /// (0 to 1) into the first part: no two rounds show the same frames.
    void Round(size_t parts, double shift, std::vector<Samples>* samples) {
        for (size_t part = 0; part < parts; ++part) {
            const double moment = (static_cast<double>(part) + shift) / static_cast<double>(parts);
            for (size_t turn = 0; turn < kSides; ++turn) {
                const size_t side = (turn + part) % kSides;
                RestoreGround();
                sides_[side]->Prepare(moment);
                const double processor = SecondsOf(CLOCK_THREAD_CPUTIME_ID), wall = SecondsOf(CLOCK_MONOTONIC);
                sides_[side]->Draw(pixels_.data());
                const double wallTime = SecondsOf(CLOCK_MONOTONIC) - wall;
                const double processorTime = SecondsOf(CLOCK_THREAD_CPUTIME_ID) - processor;
                if (samples == nullptr) continue;
                (*samples)[side].processor[part].push_back(processorTime);
                (*samples)[side].wall[part].push_back(wallTime);
            }
        }
    }

private:
    void RestoreGround() {
        const size_t width = static_cast<size_t>(stage_.width), first = rows_.first * width;
        std::copy_n(ground_.data() + first, (rows_.end - rows_.first) * width, pixels_.data() + first);
    }

    Stage stage_;
    TextLayout layout_;
    std::array<std::unique_ptr<Side>, kSides> sides_;
    std::vector<uint32_t> ground_, pixels_;
    Rows rows_;
};

double FractionOf(double value) {
    return value - std::floor(value);
}

}  // namespace

SceneResult MeasureScene(const Scene& scene, const Stage& stage, const std::string& fontFile, double seconds) {
    constexpr size_t kFewParts = 6, kMostParts = 30, kRounds = 9;
    constexpr double kGoldenRatio = 0.6180339887498949;
    const double started = SecondsOf(CLOCK_MONOTONIC);
    Race race(scene, stage, fontFile);
    // Two rounds to get warm: caches fill, threads start.
    race.Round(kFewParts, 0.25, nullptr);
    const double warm = SecondsOf(CLOCK_MONOTONIC);
    race.Round(kFewParts, 0.75, nullptr);
    const double perPart = (SecondsOf(CLOCK_MONOTONIC) - warm) / kFewParts;
    const double affordable = (seconds - (SecondsOf(CLOCK_MONOTONIC) - started)) / perPart / kRounds;
    const size_t parts =
        static_cast<size_t>(std::clamp(affordable, static_cast<double>(kFewParts), static_cast<double>(kMostParts)));

    std::vector<Samples> samples(Race::kSides, Samples(parts));
    size_t rounds = 0;
    do {
        race.Round(parts, FractionOf(static_cast<double>(rounds++) * kGoldenRatio), &samples);
    } while (rounds < 3 || SecondsOf(CLOCK_MONOTONIC) - started < seconds);
    return {.scene = &scene,
            .stage = stage,
            .frames = rounds * parts,
            .us = samples[0].Summed(),
            .usOnTwo = samples[1].Summed(),
            .libass = samples[2].Summed(),
            .cairo = samples[3].Summed()};
}

OpeningResult MeasureOpening(const Scene& scene) {
    constexpr int kTimes = 15;
    std::vector<uint32_t> pixels = MakeGround(k1080);
    const auto measured = [&](Opening opening) {
        std::vector<double> seconds;
        for (int i = 0; i < kTimes; ++i) seconds.push_back(OpenAndDraw(scene, k1080, opening, pixels.data()));
        return Median(seconds) * 1000;
    };
    return {&scene, measured(Opening::kTyped), measured(Opening::kLoaded)};
}

std::vector<uint32_t> MakeGround(const Stage& stage) {
    std::vector<uint32_t> ground(stage.PixelCount());
    const auto width = static_cast<size_t>(stage.width);
    for (size_t i = 0; i < ground.size(); ++i) {
        const auto shade = static_cast<uint32_t>(96 + i / width * 96 / static_cast<size_t>(stage.height));
        ground[i] = 0xFF000000U | shade | shade << 8U | (shade / 2) << 16U;
    }
    return ground;
}

}  // namespace captionfx::peers
