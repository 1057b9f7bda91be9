// Samples of coverage in vectors: four of them weighed for each pixel, and the rows that hold any.
//
// Part of files that Highway compiles once for each width, and included by them again each time.
#if defined(CAPTIONFX_COVERAGE_LANES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef CAPTIONFX_COVERAGE_LANES_INL_H_
#undef CAPTIONFX_COVERAGE_LANES_INL_H_
#else
#define CAPTIONFX_COVERAGE_LANES_INL_H_
#endif

#include <algorithm>
#include <iterator>

#include <hwy/highway.h>

#include "render/kernels/coverage_placement.h"
#include "render/kernels/pixel_lanes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace captionfx::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

/// Sums of the products of neighbours, added to `sums`: what this operation does on the processors that we build for.
HWY_INLINE hn::Vec<LanesI32> AddPairs(hn::Vec<Lanes16> samples, hn::Vec<LanesI16> weights, hn::Vec<LanesI32> sums) {
    hn::Vec<LanesI32> unused = hn::Zero(LanesI32());
    return hn::ReorderWidenMulAccumulate(LanesI32(), hn::BitCast(LanesI16(), samples), weights, sums, unused);
}

/// The weights of a placement as 16 bits with a sign: one of 2^15 and more, of which there is one at most, counts 2^16
/// too little, so that its sample is missing from the sum, 16 bits up.
struct PlacementWeights {
    explicit PlacementWeights(const CoveragePlacement& p)
        : Above(Pair(p.W00, p.W10)),
          Here(Pair(p.W01, p.W11)),
          Alpha(hn::Set(kLanes16, static_cast<uint16_t>(p.Alpha + 1))) {}

    static hn::Vec<LanesI16> Pair(uint32_t first, uint32_t second) {
        return hn::BitCast(LanesI16(), hn::Set(kLanes32, first | second << 16U));
    }

    hn::Vec<LanesI16> Above, Here;
    Halves Alpha;
};

/// Whether a weight is too large for its sign, and where its sample lies from that of row `upper` and column u.
struct LargeWeight {
    LargeWeight(const CoveragePlacement& p, size_t pitch) {
        const uint32_t weights[] = {p.W00, p.W10, p.W01, p.W11};
        const auto down = static_cast<std::ptrdiff_t>(pitch);
        const std::ptrdiff_t offsets[] = {-1, 0, down - 1, down};
        for (size_t i = 0; i < std::size(weights); ++i) {
            if (weights[i] < 0x8000) continue;
            Exists = true;
            Offset = offsets[i];
        }
    }

    bool Exists = false;
    std::ptrdiff_t Offset = 0;
};

HWY_INLINE Halves Samples(const uint8_t* at) {
    return hn::PromoteTo(kLanes16, hn::LoadU(hn::Rebind<uint8_t, Lanes16>(), at));
}

/// What makes up a pixel: four samples, of which one may have a large weight, or one alone.
enum class Sampling { kFour, kFourWithLarge, kOne };

[[nodiscard]] inline Sampling SamplingOf(const CoveragePlacement& p, const LargeWeight& large) {
    if (p.W11 == kWholeSample) return Sampling::kOne;
    return large.Exists ? Sampling::kFourWithLarge : Sampling::kFour;
}

/// PlacedCoverage of as many pixels as there are lanes of 16 bits.
template <Sampling kSampling>
HWY_INLINE Halves PlacedCoverages(const uint8_t* upper, const uint8_t* lower, std::ptrdiff_t largeOffset,
                                  const PlacementWeights& w) {
    if (kSampling == Sampling::kOne) return hn::ShiftRight<8>(hn::Mul(Samples(lower), w.Alpha));
    // Pairs that begin left of the first pixel make up every second one, the others begin at it.
    const auto sums = [&](std::ptrdiff_t at) HWY_ATTR {
        const auto above = AddPairs(Samples(upper + at), w.Above, hn::Zero(LanesI32()));
        return hn::BitCast(kLanes32, AddPairs(Samples(lower + at), w.Here, above));
    };
    Halves coverage =
        hn::BitCast(kLanes16, hn::OrAnd(hn::ShiftRight<16>(sums(-1)), sums(0), hn::Set(kLanes32, 0xFFFF0000U)));
    if (kSampling == Sampling::kFourWithLarge) coverage = hn::Add(coverage, Samples(upper + largeOffset));
    return hn::ShiftRight<8>(hn::Mul(coverage, w.Alpha));
}

/// Calls use(row of the plane, its samples of the upper row, left, right) for the rows that hold something, with the
/// columns in which they do.
template <class Use>
HWY_INLINE void ForFilledRows(const CoverageRows& rows, Use use) {
    const uint8_t* upper = rows.Samples;
    for (int32_t v = 0; v < rows.Count; ++v, upper += rows.Pitch) {
        const ColumnSpan span = rows.Spans[v];
        if (span.First == span.End) continue;
        use(v, upper, std::max(rows.Left, span.First), std::min(rows.Right, span.End));
    }
}

#endif

}  // namespace captionfx::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
