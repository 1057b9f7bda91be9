#include "peers/measure.h"

#include <algorithm>
#include <array>
#include <cmath>

#include "peers/cairo_side.h"
#include "peers/captionfx_side.h"
#include "peers/libass_side.h"
#include "peers/timing.h"

namespace captionfx::peers {
namespace {

/// Seconds of one frame.
struct Times {
    double processor, wall;
};

/// The seconds that a side took, by the part of the scene.
struct Samples {
    std::vector<std::vector<double>> processor, wall;

    explicit Samples(size_t parts) : processor(parts), wall(parts) {}

    void Add(size_t part, const Times& times) {
        processor[part].push_back(times.processor);
        wall[part].push_back(times.wall);
    }

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

constexpr double kGoldenRatio = 0.6180339887498949;

double FractionOf(double value) {
    return value - std::floor(value);
}

/// The sides at their work.
class Race {
public:
    static constexpr size_t kSides = 5;  // this library on one thread and on two, libass in both ways, cairo

    Race(const Scene& scene, const Stage& stage, const std::string& fontFile)
        : layout_(MeasureLayout(scene, stage)),
          sides_{MakeCaptionFxSide(scene, stage, 1), MakeCaptionFxSide(scene, stage, 2),
                 MakeLibassSide(scene, stage, layout_, fontFile, SoftShadow::kOfItsOwn),
                 MakeLibassSide(scene, stage, layout_, fontFile, SoftShadow::kWithBorder),
                 MakeCairoSide(scene, stage, layout_)},
          ground_(MakeGround(stage)) {
        pixels_.fill(ground_);
    }

    /// Each side draws frames from all over the scene, so that glyphs come into the caches and threads start, for at
    /// most `seconds`. Returns the seconds of one turn of all of them.
    double Warm(double seconds) {
        constexpr int kFrames = 64;
        double turns = 0;
        for (size_t side = 0; side < kSides; ++side) {
            const double started = SecondsOf(CLOCK_MONOTONIC);
            int drawn = 0;
            double used = 0;
            while (drawn < 2 || (drawn < kFrames && used < seconds)) {
                DrawTimed(side, FractionOf(++drawn * kGoldenRatio));
                used = SecondsOf(CLOCK_MONOTONIC) - started;
            }
            turns += used / drawn * kFramesOfATurn;
        }
        return turns;
    }

    /// Each side draws frames of `parts` parts that are evenly spread over the scene, beginning `shift` (0 to 1) into
    /// the part: no two rounds show the same frames. A turn is a few frames in a row, as a host has them; in the first
    /// of them the processor's caches are still those of the side before, so that it does not count.
    void Round(size_t parts, double shift, std::vector<Samples>& samples) {
        for (size_t part = 0; part < parts; ++part) {
            for (size_t turn = 0; turn < kSides; ++turn) {
                const size_t side = (turn + part) % kSides;
                pixels_[side] = ground_;
                for (size_t frame = 0; frame < kFramesOfATurn; ++frame) {
                    const double step = shift + static_cast<double>(frame) / kFramesOfATurn;
                    const double moment = (static_cast<double>(part) + FractionOf(step)) / static_cast<double>(parts);
                    const Times times = DrawTimed(side, moment);
                    if (frame > 0) samples[side].Add(part, times);
                }
            }
        }
    }

private:
    static constexpr size_t kFramesOfATurn = 4;

    Times DrawTimed(size_t side, double moment) {
        sides_[side]->Prepare(moment);
        const double processor = SecondsOf(CLOCK_THREAD_CPUTIME_ID), wall = SecondsOf(CLOCK_MONOTONIC);
        sides_[side]->Draw(pixels_[side].data());
        const double wallEnd = SecondsOf(CLOCK_MONOTONIC);
        return {.processor = SecondsOf(CLOCK_THREAD_CPUTIME_ID) - processor, .wall = wallEnd - wall};
    }

    TextLayout layout_;
    std::array<std::unique_ptr<Side>, kSides> sides_;
    std::vector<uint32_t> ground_;
    std::array<std::vector<uint32_t>, kSides> pixels_;  // a frame of its own for each side, drawn over and over
};

}  // namespace

SceneResult MeasureScene(const Scene& scene, const Stage& stage, const std::string& fontFile, double seconds) {
    constexpr size_t kFewParts = 4, kMostParts = 24, kRounds = 5;
    constexpr double kWarmSeconds = 0.3;  // of each side: short runs need libass's glyphs as well
    const double started = SecondsOf(CLOCK_MONOTONIC);
    Race race(scene, stage, fontFile);
    const double perPart = race.Warm(kWarmSeconds);
    const double affordable = (seconds - (SecondsOf(CLOCK_MONOTONIC) - started)) / perPart / kRounds;
    const size_t parts =
        static_cast<size_t>(std::clamp(affordable, static_cast<double>(kFewParts), static_cast<double>(kMostParts)));

    std::vector<Samples> samples(Race::kSides, Samples(parts));
    size_t rounds = 0;
    do {
        race.Round(parts, FractionOf(static_cast<double>(rounds++) * kGoldenRatio), samples);
    } while (SecondsOf(CLOCK_MONOTONIC) - started < seconds);
    return {.scene = &scene,
            .stage = stage,
            .frames = rounds * parts,
            .us = samples[0].Summed(),
            .usOnTwo = samples[1].Summed(),
            .libass = samples[2].Summed(),
            .libassSoft = samples[3].Summed(),
            .cairo = samples[4].Summed()};
}

OpeningResult MeasureOpening(const Scene& scene) {
    constexpr int kTimes = 15;
    std::vector<uint32_t> pixels = MakeGround(k1080);
    const auto measured = [&](Opening opening) {
        std::vector<double> seconds(kTimes);
        for (double& each : seconds) each = OpenAndDraw(scene, k1080, opening, pixels.data());
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
