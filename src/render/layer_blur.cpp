#include "render/layer_blur.h"

#include <algorithm>
#include <cmath>
#include <memory>
#include <new>
#include <optional>
#include <vector>

#include "render/exact_divider.h"
#include "render/kernels/blur_kernels.h"
#include "render/pixel.h"

namespace captionfx {
namespace {

// Between passes values keep bits of fraction, so that the roundings of six passes cannot be seen: alpha has 8. The
// colours of a picture of several colours are blurred as colour times alpha, with 8, and divided by an alpha of their
// own, with 16: the mean of equal colours then rounds to just that colour, which is what makes the short cut for
// pictures of one colour exact.
constexpr uint32_t kAlphaFraction = 8;
constexpr uint32_t kColorFraction = 8;
constexpr uint32_t kWeightFraction = 16;
constexpr uint64_t kLargestValue = uint64_t{255} << kWeightFraction;

constexpr uint32_t kWholeWeight = 256;   // of a pixel that lies wholly in a box
constexpr float kLargestRadius = 65536;  // beyond any layer's side

/// Samples of a picture, row by row.
struct Plane {
    std::vector<uint32_t> Samples;
    size_t Width, Height;
};

/// A box of a radius that need not be whole: `whole` pixels to each side and a share of the next one.
class Box {
public:
    explicit Box(double radius)
        : whole_(static_cast<int64_t>(radius)),
          edgeWeight_(static_cast<uint32_t>((radius - static_cast<double>(whole_)) * kWholeWeight)),
          weight_(kWholeWeight * static_cast<uint64_t>(2 * whole_ + 1) + 2 * uint64_t{edgeWeight_}),
          mean_(weight_, (kLargestValue + 1) * weight_) {}

    [[nodiscard]] bool ChangesNothing() const { return weight_ == kWholeWeight; }

    /// For vectors; nothing for a box that is too wide for them.
    [[nodiscard]] std::optional<BoxStep> Step() const { return MakeBoxStep(whole_, edgeWeight_); }

    /// One row; beyond its ends all is 0. Each step is two additions: the sum moves on by a pixel.
    void Blur(const uint32_t* in, uint32_t* out, int64_t length) const {
        const auto at = [&](int64_t x) { return x >= 0 && x < length ? uint64_t{in[x]} : 0; };
        uint64_t sum = 0;
        for (int64_t x = 0; x < std::min(whole_, length); ++x) sum += in[x];
        for (int64_t x = 0; x < length; ++x) {
            sum += at(x + whole_);
            const uint64_t edges = at(x - whole_ - 1) + at(x + whole_ + 1);
            out[x] = static_cast<uint32_t>(mean_(sum * kWholeWeight + edges * edgeWeight_ + weight_ / 2));
            sum -= at(x - whole_);
        }
    }

private:
    int64_t whole_;
    uint32_t edgeWeight_;  // of the pixel at each end, 0 to 255
    uint64_t weight_;
    ExactDivider mean_;
};

/// The boxes of a blur. Three share the radius so that their reaches, each rounded up, add up to the radius rounded up.
std::vector<Box> BoxesOf(float radius, BlurKind kind) {
    const double reach = std::ceil(static_cast<double>(radius));
    const auto steps = static_cast<int64_t>(reach);
    std::vector<int64_t> shares = {steps};
    if (kind == BlurKind::kThreeBoxes) shares = {(steps + 2) / 3, (steps + 1) / 3, steps / 3};
    std::vector<Box> boxes;
    for (const int64_t share : shares) {
        const Box box(static_cast<double>(radius) * static_cast<double>(share) / reach);
        if (!box.ChangesNothing()) boxes.push_back(box);
    }
    return boxes;
}

void BlurRows(Plane& plane, const std::vector<Box>& boxes) {
    std::vector<uint32_t> result(plane.Width);
    for (size_t y = 0; y < plane.Height; ++y) {
        uint32_t* const row = plane.Samples.data() + y * plane.Width;
        for (const Box& box : boxes) {
            box.Blur(row, result.data(), static_cast<int64_t>(plane.Width));
            std::ranges::copy(result, row);
        }
    }
}

/// Rows become columns, in squares that fit the cache.
Plane Transposed(const Plane& plane) {
    constexpr size_t kSquare = 16;
    Plane turned{std::vector<uint32_t>(plane.Samples.size()), plane.Height, plane.Width};
    for (size_t top = 0; top < plane.Height; top += kSquare) {
        for (size_t left = 0; left < plane.Width; left += kSquare) {
            for (size_t y = top; y < std::min(top + kSquare, plane.Height); ++y) {
                for (size_t x = left; x < std::min(left + kSquare, plane.Width); ++x) {
                    turned.Samples[x * plane.Height + y] = plane.Samples[y * plane.Width + x];
                }
            }
        }
    }
    return turned;
}

/// The blur of sampleAt(index) over a picture.
template <class SampleAt>
std::vector<uint32_t> Blurred(size_t width, size_t height, const std::vector<Box>& boxes, SampleAt sampleAt) {
    Plane plane{std::vector<uint32_t>(width * height), width, height};
    for (size_t i = 0; i < plane.Samples.size(); ++i) plane.Samples[i] = sampleAt(i);
    BlurRows(plane, boxes);
    plane = Transposed(plane);
    BlurRows(plane, boxes);
    return Transposed(plane).Samples;
}

uint32_t RoundedAlpha(uint32_t alpha) {
    return (alpha + (1U << (kAlphaFraction - 1))) >> kAlphaFraction;
}

/// A plane of alphas and how it is blurred.
struct CoverageJob {
    uint8_t* Coverage;
    int32_t Width, Height;
    std::ptrdiff_t Pitch;
    std::vector<Box> Boxes;
};

void BlurCoverageByRows(const CoverageJob& job) {
    const auto width = static_cast<size_t>(job.Width), height = static_cast<size_t>(job.Height);
    const auto at = [&](size_t i) -> uint8_t& {
        return job
            .Coverage[static_cast<std::ptrdiff_t>(i / width) * job.Pitch + static_cast<std::ptrdiff_t>(i % width)];
    };
    const std::vector<uint32_t> alpha =
        Blurred(width, height, job.Boxes, [&](size_t i) { return uint32_t{at(i)} << kAlphaFraction; });
    for (size_t i = 0; i < alpha.size(); ++i) at(i) = static_cast<uint8_t>(RoundedAlpha(alpha[i]));
}

bool IsEmptyRow(const CoverageJob& job, int32_t y) {
    const uint8_t* const row = job.Coverage + y * job.Pitch;
    uint8_t any = 0;  // without an early end, so that compilers take vectors
    for (int32_t x = 0; x < job.Width; ++x) any |= row[x];
    return any == 0;
}

/// In vectors; false if a box is too wide for them.
bool BlurCoverageByVectors(const CoverageJob& job, CoverageBlur* blur) {
    std::vector<BoxStep> steps;
    int32_t widest = 0;
    for (const Box& box : job.Boxes) {
        const std::optional<BoxStep> step = box.Step();
        if (!step) return false;
        widest = std::max(widest, step->Whole);
        steps.push_back(*step);
    }
    int32_t first = 0, end = job.Height;
    while (first < end && IsEmptyRow(job, first)) ++first;
    while (end > first && IsEmptyRow(job, end - 1)) --end;
    if (first == end) return true;
    const std::ptrdiff_t reach = widest + 2, length = InBlurLanes(std::max(job.Width, job.Height)) + 2 * reach;
    std::vector<uint16_t> strips(static_cast<size_t>(2 * length * kBlurLanes), kBlurZero);
    const auto plane = std::make_unique_for_overwrite<uint16_t[]>(
        static_cast<size_t>(InBlurLanes(job.Width) * InBlurLanes(end - first)));
    blur({.Coverage = job.Coverage,
          .Width = job.Width,
          .Height = job.Height,
          .Pitch = job.Pitch,
          .First = first,
          .End = end,
          .Boxes = steps,
          .Plane = plane.get(),
          .Strip = strips.data() + reach * kBlurLanes,
          .OtherStrip = strips.data() + (length + reach) * kBlurLanes,
          .Reach = reach});
    return true;
}

void BlurCoverageBest(const CoverageJob& job, CoverageBlur* blur) {
    if (blur == nullptr || !BlurCoverageByVectors(job, blur)) BlurCoverageByRows(job);
}

/// A picture and how it is blurred.
struct Job {
    uint32_t* Pixels;
    size_t Width, Height;
    std::vector<Box> Boxes;

    [[nodiscard]] size_t Count() const { return Width * Height; }

    /// The blur of sample(pixel) over the picture.
    template <class Sample>
    [[nodiscard]] std::vector<uint32_t> BlurredSamples(Sample sample) const {
        return Blurred(Width, Height, Boxes, [&](size_t i) { return sample(Pixels[i]); });
    }
};

void BlurInOneColor(const Job& job, uint32_t color) {
    std::vector<uint8_t> alpha(job.Count());
    for (size_t i = 0; i < job.Count(); ++i) alpha[i] = static_cast<uint8_t>(AlphaOf(job.Pixels[i]));
    const auto width = static_cast<int32_t>(job.Width), height = static_cast<int32_t>(job.Height);
    BlurCoverageBest({alpha.data(), width, height, width, job.Boxes}, BestCoverageBlur());
    for (size_t i = 0; i < job.Count(); ++i) job.Pixels[i] = alpha[i] == 0 ? 0 : WithAlpha(color, alpha[i]);
}

void BlurInManyColors(const Job& job) {
    const std::vector<uint32_t> alpha =
        job.BlurredSamples([](uint32_t pixel) { return AlphaOf(pixel) << kAlphaFraction; });
    const std::vector<uint32_t> weight =
        job.BlurredSamples([](uint32_t pixel) { return AlphaOf(pixel) << kWeightFraction; });
    std::vector<uint32_t> result(job.Count());
    for (size_t i = 0; i < job.Count(); ++i) result[i] = RoundedAlpha(alpha[i]) << kAlphaShift;
    for (const uint32_t shift : kColorShifts) {
        const std::vector<uint32_t> color = job.BlurredSamples(
            [=](uint32_t pixel) { return ChannelOf(pixel, shift) * AlphaOf(pixel) << kColorFraction; });
        for (size_t i = 0; i < job.Count(); ++i) {
            if (result[i] >> kAlphaShift == 0 || weight[i] == 0) continue;
            const uint64_t scaled = uint64_t{color[i]} << (kWeightFraction - kColorFraction);
            result[i] |= std::min(static_cast<uint32_t>((scaled + weight[i] / 2) / weight[i]), 255U) << shift;
        }
    }
    std::ranges::copy(result, job.Pixels);
}

/// The colour that all pixels with alpha share, if they do.
std::optional<uint32_t> OneColorOf(const Job& job) {
    std::optional<uint32_t> color;
    for (size_t i = 0; i < job.Count(); ++i) {
        const uint32_t pixel = job.Pixels[i];
        if (AlphaOf(pixel) == 0) continue;
        if (color && *color != (pixel & kColorMask)) return std::nullopt;
        color = pixel & kColorMask;
    }
    return color;
}

bool IsBlur(int32_t width, int32_t height, float radius) {
    return width > 0 && height > 0 && radius > 0;
}

std::optional<Job> JobOf(uint32_t* pixels, int32_t width, int32_t height, float radius, BlurKind kind) {
    if (pixels == nullptr || !IsBlur(width, height, radius)) return std::nullopt;
    return Job{pixels, static_cast<size_t>(width), static_cast<size_t>(height),
               BoxesOf(std::min(radius, kLargestRadius), kind)};
}

}  // namespace

void BlurLayer(uint32_t* pixels, int32_t width, int32_t height, float radius, BlurKind kind) noexcept try {
    const std::optional<Job> job = JobOf(pixels, width, height, radius, kind);
    if (!job) return;
    if (const std::optional<uint32_t> color = OneColorOf(*job)) {
        BlurInOneColor(*job, *color);
    } else {
        BlurInManyColors(*job);
    }
} catch (const std::bad_alloc&) {
    // The layer stays sharp: a picture that is less soft is better than none.
}

void BlurCoverage(uint8_t* coverage, int32_t width, int32_t height, std::ptrdiff_t pitch, float radius,
                  BlurKind kind) noexcept try {
    BlurCoverageWith(coverage, width, height, pitch, radius, kind, BestCoverageBlur());
} catch (const std::bad_alloc&) {
    // As above.
}

void BlurCoverageWith(uint8_t* coverage, int32_t width, int32_t height, std::ptrdiff_t pitch, float radius,
                      BlurKind kind, CoverageBlur* blur) {
    if (coverage == nullptr || !IsBlur(width, height, radius)) return;
    BlurCoverageBest({coverage, width, height, pitch, BoxesOf(std::min(radius, kLargestRadius), kind)}, blur);
}

void BlurLayerPlain(uint32_t* pixels, int32_t width, int32_t height, float radius, BlurKind kind) {
    if (const std::optional<Job> job = JobOf(pixels, width, height, radius, kind)) BlurInManyColors(*job);
}

}  // namespace captionfx
