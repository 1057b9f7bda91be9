// The blur of a plane of alphas as vectors. Values have 8 bits of fraction between the boxes, so that they fit 16 bits
// and their sums 32.
#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

namespace captionfx {

/// A box in 32 bits: the mean of a window is its sum, 256 times that of its whole pixels and EdgeWeight times the two
/// at its ends, and half the weight, divided by the weight. One multiplication does it, as ExactDivider explains.
struct BoxStep {
    int32_t Whole;        ///< pixels to each side, at most 63
    uint32_t EdgeWeight;  ///< of the next one, 0 to 255
    uint32_t Weight;      ///< of the whole box: 256 (2 Whole + 1) + 2 EdgeWeight
    uint32_t Multiplier;
    uint32_t Shift;

    /// floor(n / Weight)
    [[nodiscard]] uint32_t Quotient(uint32_t n) const {
        return static_cast<uint32_t>((uint64_t{n} * Multiplier) >> (32U + Shift));
    }
};

/// Nothing for a box that is too wide for 32 bits, or too narrow to blur.
[[nodiscard]] std::optional<BoxStep> MakeBoxStep(int64_t whole, uint32_t edgeWeight);

/// So many rows or columns are blurred at once, side by side.
inline constexpr ptrdiff_t kBlurLanes = 32;

/// Values are kept less 2^15, so that signed multiplications take them: this is 0.
inline constexpr uint16_t kBlurZero = 0x8000;

/// A whole number of strips.
[[nodiscard]] constexpr ptrdiff_t InBlurLanes(ptrdiff_t count) {
    return (count + kBlurLanes - 1) / kBlurLanes * kBlurLanes;
}

struct BlurJob {
    uint8_t* Coverage;
    int32_t Width, Height;
    ptrdiff_t Pitch;
    int32_t First, End;  ///< Rows outside are 0.
    std::span<const BoxStep> Boxes;
    uint16_t* Plane;  ///< InBlurLanes(Width) by InBlurLanes(End - First), of any content
    /// Two strips, all kBlurZero: InBlurLanes of the longer side rows of kBlurLanes, and `Reach` rows to both sides,
    /// two more than the widest box has pixels.
    uint16_t *Strip, *OtherStrip;
    ptrdiff_t Reach;
};

using CoverageBlur = void(const BlurJob&);

/// The widest that this processor has; null where vectors bring nothing.
[[nodiscard]] CoverageBlur* BestCoverageBlur();

/// Those of all vector widths that this processor has, for tests.
[[nodiscard]] std::vector<CoverageBlur*> VectorCoverageBlurs();

}  // namespace captionfx
