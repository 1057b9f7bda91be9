// The blur of a plane of alphas as vectors. Values have 8 bits of fraction between the boxes, so that they fit 16 bits
// and their sums 32.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace captionfx {

/// A box in 32 bits. Of a window, `sum` of its whole pixels and `edges` of the two at its ends, the mean is rounded:
/// floor(halfOf(sum, edges) / (weight / 2)), which is one multiplication, as ExactDivider explains.
struct BoxStep {
    int32_t Whole;        ///< pixels to each side, at most 127
    uint32_t EdgeWeight;  ///< of the next one, in parts of 256
    uint32_t HalfWeight;  ///< of the whole box: 128 (2 Whole + 1) + EdgeWeight
    uint32_t Multiplier;
    int32_t Shift;

    [[nodiscard]] uint32_t Mean(uint32_t sum, uint32_t edges) const {
        return Quotient((sum << 7U) + ((edges * EdgeWeight + HalfWeight) >> 1U));
    }
    [[nodiscard]] uint32_t Quotient(uint32_t n) const {
        return static_cast<uint32_t>((uint64_t{n} * Multiplier) >> 32U) >> static_cast<uint32_t>(Shift);
    }
};

/// Nothing for a box that is too wide for 32 bits, or too narrow to blur.
[[nodiscard]] std::optional<BoxStep> MakeBoxStep(int64_t whole, uint32_t edgeWeight);

/// So many rows or columns are blurred at once, side by side.
inline constexpr ptrdiff_t kBlurLanes = 16;

/// A whole number of strips.
[[nodiscard]] constexpr ptrdiff_t InBlurLanes(ptrdiff_t count) {
    return (count + kBlurLanes - 1) / kBlurLanes * kBlurLanes;
}

struct BlurJob {
    uint8_t* Coverage;
    int32_t Width, Height;
    ptrdiff_t Pitch;
    std::span<const BoxStep> Boxes;
    uint16_t* Plane;  ///< InBlurLanes(Width) by InBlurLanes(Height), of any content
    /// Two strips, all 0: InBlurLanes of the longer side times kBlurLanes, and so many rows of zeros around them as the
    /// widest box reaches, rounded up.
    uint16_t *Strip, *OtherStrip;
    ptrdiff_t Reach;
};

using CoverageBlur = void(const BlurJob&);

/// The widest that this processor has; null where vectors bring nothing.
[[nodiscard]] CoverageBlur* BestCoverageBlur();

/// Those of all vector widths that this processor has, for tests.
[[nodiscard]] std::vector<CoverageBlur*> VectorCoverageBlurs();

}  // namespace captionfx
