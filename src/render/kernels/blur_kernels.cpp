// Compiled once for each width of vectors.
#include "render/kernels/blur_kernels.h"

#include <algorithm>
#include <bit>
#include <utility>

// The two lines that Highway includes this file again by.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/kernels/blur_kernels.cpp"
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "render/kernels/vector_targets.h"

HWY_BEFORE_NAMESPACE();
namespace captionfx::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

CoverageBlur* Blur() {
    return nullptr;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

// A strip is a row of kBlurLanes values for each pixel along the direction of the blur. Boxes run over it in vectors of
// 32-bit lanes; squares are turned in vectors of 16 bytes.
using Lanes32 = hn::CappedTag<uint32_t, kBlurLanes>;
using Lanes16 = hn::Rebind<uint16_t, Lanes32>;
using Lanes64 = hn::Repartition<uint64_t, Lanes32>;
using LanesI32 = hn::RebindToSigned<Lanes32>;
using Values = hn::Vec<Lanes32>;
using Square8 = hn::FixedTag<uint8_t, 16>;
using Square16 = hn::FixedTag<uint16_t, 8>;

HWY_INLINE Values Quotient(Values n, Values multiplier, int shift) {
    const Lanes32 d32;
    const Lanes64 d64;
    const auto even = hn::MulEven(n, multiplier);
    const auto odd = hn::MulEven(hn::BitCast(d32, hn::ShiftRight<32>(hn::BitCast(d64, n))), multiplier);
    const Values high = hn::OddEven(hn::BitCast(d32, odd), hn::BitCast(d32, hn::ShiftRight<32>(even)));
    return hn::ShiftRightSame(high, shift);
}

template <bool kHasEdges>
HWY_INLINE void RunBox(const uint16_t* in, uint16_t* out, ptrdiff_t length, const BoxStep& box) {
    const Lanes32 d32;
    const Lanes16 d16;
    const auto at = [&](const uint16_t* values) HWY_ATTR { return hn::PromoteTo(d32, hn::LoadU(d16, values)); };
    const Values multiplier = hn::Set(d32, box.Multiplier), half = hn::Set(d32, box.HalfWeight),
                 edgeWeight = hn::Set(d32, box.EdgeWeight), halfOfHalf = hn::Set(d32, box.HalfWeight >> 1U);
    const ptrdiff_t whole = box.Whole * kBlurLanes;
    Values sum = hn::Zero(d32);
    for (ptrdiff_t i = 0; i < whole; i += kBlurLanes) sum = hn::Add(sum, at(in + i));
    for (ptrdiff_t i = 0; i < length * kBlurLanes; i += kBlurLanes) {
        sum = hn::Add(sum, at(in + i + whole));
        Values rounding = halfOfHalf;
        if constexpr (kHasEdges) {
            const Values edges = hn::Add(at(in + i - whole - kBlurLanes), at(in + i + whole + kBlurLanes));
            rounding = hn::ShiftRight<1>(hn::Add(hn::Mul(edges, edgeWeight), half));
        }
        const Values mean = Quotient(hn::Add(hn::ShiftLeft<7>(sum), rounding), multiplier, box.Shift);
        hn::StoreU(hn::DemoteTo(d16, hn::BitCast(LanesI32(), mean)), d16, out + i);
        sum = hn::Sub(sum, at(in + i - whole));
    }
}

/// The strip that holds the result is the first one afterwards.
void RunBoxes(uint16_t*& strip, uint16_t*& other, ptrdiff_t length, std::span<const BoxStep> boxes) {
    for (const BoxStep& box : boxes) {
        for (ptrdiff_t lane = 0; lane < kBlurLanes; lane += static_cast<ptrdiff_t>(hn::Lanes(Lanes32()))) {
            if (box.EdgeWeight == 0) {
                RunBox<false>(strip + lane, other + lane, length, box);
            } else {
                RunBox<true>(strip + lane, other + lane, length, box);
            }
        }
        std::swap(strip, other);
    }
}

/// Turns a square of `kSide` vectors: interleaving the halves of the list, as often as doubling 1 gives the side.
template <int kSide, class Tag>
HWY_INLINE void Turn(Tag tag, hn::Vec<Tag>* rows) {
    hn::Vec<Tag> turned[kSide];
    for (int round = 1; round < kSide; round *= 2) {
        for (int i = 0; i < kSide / 2; ++i) {
            turned[2 * i] = hn::InterleaveLower(tag, rows[i], rows[i + kSide / 2]);
            turned[2 * i + 1] = hn::InterleaveUpper(tag, rows[i], rows[i + kSide / 2]);
        }
        for (int i = 0; i < kSide; ++i) rows[i] = turned[i];
    }
}

/// Sixteen pixels of each of sixteen rows become rows of a strip; what lies beyond the picture is 0.
void LoadSquare(const BlurJob& job, int32_t left, int32_t top, uint16_t* strip) {
    const Square8 d8;
    const int32_t columns = std::min<int32_t>(kBlurLanes, job.Width - left);
    const int32_t rowCount = std::min<int32_t>(kBlurLanes, job.Height - top);
    hn::Vec<Square8> rows[kBlurLanes];
    for (int32_t y = 0; y < kBlurLanes; ++y) {
        const uint8_t* const row = job.Coverage + (top + std::min(y, rowCount - 1)) * job.Pitch + left;
        HWY_ALIGN uint8_t part[kBlurLanes] = {};
        if (columns < kBlurLanes) std::copy_n(row, columns, part);
        rows[y] = y < rowCount ? hn::LoadU(d8, columns < kBlurLanes ? part : row) : hn::Zero(d8);
    }
    Turn<kBlurLanes>(d8, rows);
    const Square16 d16;
    for (ptrdiff_t x = 0; x < kBlurLanes; ++x) {
        uint16_t* const out = strip + x * kBlurLanes;
        hn::StoreU(hn::BitCast(d16, hn::InterleaveLower(d8, hn::Zero(d8), rows[x])), d16, out);
        hn::StoreU(hn::BitCast(d16, hn::InterleaveUpper(d8, hn::Zero(d8), rows[x])), d16, out + 8);
    }
}

/// Eight rows of a strip, from one of its halves, become eight columns of the plane.
HWY_INLINE void StoreSquare(const uint16_t* strip, uint16_t* plane, ptrdiff_t pitch) {
    const Square16 d16;
    hn::Vec<Square16> rows[8];
    for (ptrdiff_t x = 0; x < 8; ++x) rows[x] = hn::LoadU(d16, strip + x * kBlurLanes);
    Turn<8>(d16, rows);
    for (ptrdiff_t y = 0; y < 8; ++y) hn::StoreU(rows[y], d16, plane + y * pitch);
}

void BlurAlongRows(const BlurJob& job) {
    const ptrdiff_t pitch = InBlurLanes(job.Width);
    uint16_t *strip = job.Strip, *other = job.OtherStrip;
    for (int32_t top = 0; top < job.Height; top += kBlurLanes) {
        for (int32_t x = 0; x < job.Width; x += kBlurLanes) LoadSquare(job, x, top, strip + x * kBlurLanes);
        RunBoxes(strip, other, job.Width, job.Boxes);
        for (ptrdiff_t x = 0; x < pitch; x += 8) {
            for (ptrdiff_t y = 0; y < kBlurLanes; y += 8) {
                StoreSquare(strip + x * kBlurLanes + y, job.Plane + (top + y) * pitch + x, pitch);
            }
        }
    }
}

/// Sixteen values, rounded to bytes.
HWY_INLINE void StoreRounded(const uint16_t* values, uint8_t* out) {
    const Square16 d16;
    const hn::Rebind<uint8_t, Square16> d8;
    for (int i = 0; i < kBlurLanes; i += 8) {
        const auto rounded = hn::ShiftRight<8>(hn::Add(hn::LoadU(d16, values + i), hn::Set(d16, 128)));
        hn::StoreU(hn::DemoteTo(d8, hn::BitCast(hn::RebindToSigned<Square16>(), rounded)), d8, out + i);
    }
}

void BlurAlongColumns(const BlurJob& job) {
    const ptrdiff_t pitch = InBlurLanes(job.Width);
    uint16_t *strip = job.Strip, *other = job.OtherStrip;
    for (int32_t left = 0; left < job.Width; left += kBlurLanes) {
        for (ptrdiff_t y = 0; y < job.Height; ++y) {
            std::copy_n(job.Plane + y * pitch + left, kBlurLanes, strip + y * kBlurLanes);
        }
        RunBoxes(strip, other, job.Height, job.Boxes);
        const int32_t columns = std::min<int32_t>(kBlurLanes, job.Width - left);
        for (ptrdiff_t y = 0; y < job.Height; ++y) {
            uint8_t* const out = job.Coverage + y * job.Pitch + left;
            HWY_ALIGN uint8_t part[kBlurLanes];
            StoreRounded(strip + y * kBlurLanes, columns == kBlurLanes ? out : part);
            if (columns < kBlurLanes) std::copy_n(part, columns, out);
        }
    }
}

void BlurPlane(const BlurJob& job) {
    BlurAlongRows(job);
    // Where strips of the other length ended, zeros again.
    for (uint16_t* const strip : {job.Strip, job.OtherStrip}) {
        std::fill(strip + job.Height * kBlurLanes,
                  strip + (InBlurLanes(std::max(job.Width, job.Height)) + job.Reach) * kBlurLanes, uint16_t{0});
    }
    BlurAlongColumns(job);
}

CoverageBlur* Blur() {
    return BlurPlane;
}

#endif

}  // namespace
}  // namespace captionfx::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace captionfx {

HWY_EXPORT(Blur);

std::optional<BoxStep> MakeBoxStep(int64_t whole, uint32_t edgeWeight) {
    constexpr int64_t kMostWhole = 127;
    constexpr uint64_t kLargest = 255U << 8U;
    if (whole > kMostWhole || (whole == 0 && edgeWeight == 0)) return std::nullopt;
    const uint64_t half = 128 * static_cast<uint64_t>(2 * whole + 1) + edgeWeight;
    // The largest shift with which the multiplier has 32 bits. It exceeds 2^(32 + shift) / half by less than 1, and the
    // product is exact while that, times half, times the dividend, stays below 2^(32 + shift).
    const auto shift = static_cast<uint32_t>(std::bit_width(half - 1)) - 1;
    const uint64_t power = uint64_t{1} << (32 + shift), multiplier = power / half + 1;
    const uint64_t largest = kLargest * half + half / 2;
    if ((multiplier * half - power) * largest >= power) return std::nullopt;
    return BoxStep{static_cast<int32_t>(whole), edgeWeight, static_cast<uint32_t>(half),
                   static_cast<uint32_t>(multiplier), static_cast<int32_t>(shift)};
}

CoverageBlur* BestCoverageBlur() {
    static CoverageBlur* const best = HWY_DYNAMIC_DISPATCH(Blur)();
    return best;
}

std::vector<CoverageBlur*> VectorCoverageBlurs() {
    std::vector<CoverageBlur*> all;
    ForEachVectorTarget([&] {
        if (CoverageBlur* const blur = HWY_DYNAMIC_DISPATCH(Blur)()) all.push_back(blur);
    });
    return all;
}

}  // namespace captionfx
#endif
