// Compiled once for each width of vectors.
#include "render/kernels/blur_kernels.h"

#include <algorithm>
#include <bit>
#include <utility>

// The two lines that Highway includes this file again by.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/kernels/blur_kernels.cpp"  // NOLINT(cppcoreguidelines-macro-usage): Highway's
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "render/kernels/vector_targets.h"

HWY_BEFORE_NAMESPACE();
namespace captionfx::HWY_NAMESPACE {
namespace {

// The order of lanes in sums of products and in what they are narrowed to is that of x86.
#if HWY_TARGET == HWY_SCALAR || !HWY_ARCH_X86

CoverageBlur* Blur() {
    return nullptr;
}

#else

namespace hn = hwy::HWY_NAMESPACE;

// A strip is a row of kBlurLanes values for each pixel along the direction of the blur. Boxes run over it in vectors of
// 16-bit lanes, whose sums are two vectors of 32; squares are turned in vectors of 16 bytes.
using Lanes16 = hn::CappedTag<int16_t, kBlurLanes>;
using Lanes32 = hn::RepartitionToWide<Lanes16>;
using LanesU32 = hn::RebindToUnsigned<Lanes32>;
using Lanes64 = hn::Repartition<uint64_t, Lanes32>;
using Values = hn::Vec<Lanes16>;
using Sums = hn::Vec<Lanes32>;
using Square8 = hn::FixedTag<uint8_t, 16>;
using Square16 = hn::FixedTag<uint16_t, 8>;

struct Division {
    hn::Vec<LanesU32> Multiplier;
    hn::Vec<Lanes64> EvenShift, OddShift;  // of the even lanes down to theirs, and of the odd ones within theirs
};

/// The quotients, less 2^15.
HWY_INLINE Sums Quotient(Sums sums, const Division& by) {
    const LanesU32 d32;
    const Lanes64 d64;
    const auto n = hn::BitCast(d32, sums);
    const auto odd = hn::MulEven(hn::BitCast(d32, hn::ShiftRight<32>(hn::BitCast(d64, n))), by.Multiplier);
    const auto even = hn::Shr(hn::MulEven(n, by.Multiplier), by.EvenShift);
    const auto both = hn::OddEven(hn::BitCast(d32, hn::Shr(odd, by.OddShift)), hn::BitCast(d32, even));
    return hn::Sub(hn::BitCast(Lanes32(), both), hn::Set(Lanes32(), 1 << 15));
}

/// Adds weighted pairs of `a` and `b` to two vectors of sums.
HWY_INLINE void AddPairs(Values a, Values b, Values weights, Sums& lower, Sums& upper) {
    const Lanes16 d16;
    const Lanes32 d32;
    Sums none = hn::Zero(d32);
    lower = hn::ReorderWidenMulAccumulate(d32, hn::InterleaveLower(d16, a, b), weights, lower, none);
    upper = hn::ReorderWidenMulAccumulate(d32, hn::InterleaveUpper(d16, a, b), weights, upper, none);
}

/// From one pixel to the next the sum changes by 256 - EdgeWeight times the pixel that becomes whole at the front and
/// EdgeWeight times the one after it, less the same of the two at the back.
HWY_INLINE void RunBox(const uint16_t* in, uint16_t* out, ptrdiff_t length, const BoxStep& box) {
    const Lanes16 d16;
    const Lanes32 d32;
    const Lanes64 d64;
    const auto row = [&](ptrdiff_t x)
                         HWY_ATTR { return hn::LoadU(d16, reinterpret_cast<const int16_t*>(in) + x * kBlurLanes); };
    const auto edge = static_cast<int32_t>(box.EdgeWeight), inner = 256 - edge;
    const auto pairs = [&](int32_t first, int32_t second)
                           HWY_ATTR { return hn::BitCast(d16, hn::Set(d32, (first & 0xFFFF) | second * 65536)); };
    const Values front = pairs(inner, edge), back = pairs(-inner, -edge);
    const Division division{hn::Set(LanesU32(), box.Multiplier), hn::Set(d64, 32 + box.Shift), hn::Set(d64, box.Shift)};
    Sums lower = hn::Set(d32, static_cast<int32_t>(box.Weight / 2)), upper = lower;
    const ptrdiff_t whole = box.Whole;
    Values ahead = row(-1), behind = ahead;
    const auto moveFront = [&](ptrdiff_t next) HWY_ATTR {
        const Values entering = ahead;
        ahead = row(next);
        AddPairs(entering, ahead, front, lower, upper);
    };
    const auto moveBack = [&](ptrdiff_t last) HWY_ATTR {
        const Values leaving = row(last);
        AddPairs(leaving, behind, back, lower, upper);
        behind = leaving;
    };
    // From where the window lies before the row.
    for (ptrdiff_t x = 0; x <= whole + 1; ++x) {
        moveFront(x);
        moveBack(-1);
    }
    behind = row(-whole - 1);
    for (ptrdiff_t x = 0; x < length; ++x) {
        const Values mean = hn::ReorderDemote2To(d16, Quotient(lower, division), Quotient(upper, division));
        hn::StoreU(mean, d16, reinterpret_cast<int16_t*>(out) + x * kBlurLanes);
        moveFront(x + whole + 2);
        moveBack(x - whole);
    }
}

/// The strip that holds the result is the first one afterwards.
void RunBoxes(uint16_t*& strip, uint16_t*& other, ptrdiff_t length, std::span<const BoxStep> boxes) {
    for (const BoxStep& box : boxes) {
        for (ptrdiff_t lane = 0; lane < kBlurLanes; lane += static_cast<ptrdiff_t>(hn::Lanes(Lanes16()))) {
            RunBox(strip + lane, other + lane, length, box);
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

constexpr int32_t kSquare = 16;

/// Sixteen pixels of each of sixteen rows become rows of a strip.
HWY_INLINE void TurnSquare(const uint8_t* pixels, ptrdiff_t pitch, uint16_t* strip) {
    const Square8 d8;
    hn::Vec<Square8> rows[kSquare];
    for (ptrdiff_t y = 0; y < kSquare; ++y)
        rows[y] = hn::Xor(hn::LoadU(d8, pixels + y * pitch), hn::Set(d8, kBlurZero >> 8U));
    Turn<kSquare>(d8, rows);
    const Square16 d16;
    for (ptrdiff_t x = 0; x < kSquare; ++x) {
        uint16_t* const out = strip + x * kBlurLanes;
        hn::StoreU(hn::BitCast(d16, hn::InterleaveLower(d8, hn::Zero(d8), rows[x])), d16, out);
        hn::StoreU(hn::BitCast(d16, hn::InterleaveUpper(d8, hn::Zero(d8), rows[x])), d16, out + 8);
    }
}

/// TurnSquare of what lies at (left, top); beyond the picture all is 0.
void LoadSquare(const BlurJob& job, int32_t left, int32_t top, uint16_t* strip) {
    const int32_t columns = std::clamp(job.Width - left, 0, kSquare), rows = std::clamp(job.End - top, 0, kSquare);
    const uint8_t* const pixels = job.Coverage + top * job.Pitch + left;
    if (columns == kSquare && rows == kSquare) return TurnSquare(pixels, job.Pitch, strip);
    HWY_ALIGN uint8_t part[kSquare * kSquare] = {};
    for (int32_t y = 0; y < rows; ++y) std::copy_n(pixels + y * job.Pitch, columns, part + ptrdiff_t{y} * kSquare);
    TurnSquare(part, kSquare, strip);
}

/// Eight values of each of eight rows of a strip become eight columns of the plane.
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
    for (int32_t top = job.First; top < job.End; top += kBlurLanes) {
        for (int32_t x = 0; x < pitch; x += kSquare) {
            for (int32_t y = 0; y < kBlurLanes; y += kSquare) LoadSquare(job, x, top + y, strip + x * kBlurLanes + y);
        }
        RunBoxes(strip, other, job.Width, job.Boxes);
        for (ptrdiff_t x = 0; x < pitch; x += 8) {
            for (ptrdiff_t y = 0; y < kBlurLanes; y += 8) {
                StoreSquare(strip + x * kBlurLanes + y, job.Plane + (top - job.First + y) * pitch + x, pitch);
            }
        }
    }
}

/// A row of a strip, rounded to bytes.
HWY_INLINE void StoreRounded(const uint16_t* values, uint8_t* out) {
    const hn::RebindToUnsigned<Lanes16> d16;
    const hn::Rebind<uint8_t, Lanes16> d8;
    for (size_t i = 0; i < size_t{kBlurLanes}; i += hn::Lanes(d16)) {
        const auto rounded = hn::ShiftRight<8>(hn::Add(hn::LoadU(d16, values + i), hn::Set(d16, kBlurZero + 128)));
        hn::StoreU(hn::DemoteTo(d8, hn::BitCast(Lanes16(), rounded)), d8, out + i);
    }
}

void BlurAlongColumns(const BlurJob& job) {
    const ptrdiff_t pitch = InBlurLanes(job.Width);
    uint16_t *strip = job.Strip, *other = job.OtherStrip;
    for (int32_t left = 0; left < job.Width; left += kBlurLanes) {
        std::fill_n(strip, job.First * kBlurLanes, kBlurZero);
        for (ptrdiff_t y = job.First; y < job.End; ++y) {
            std::copy_n(job.Plane + (y - job.First) * pitch + left, kBlurLanes, strip + y * kBlurLanes);
        }
        std::fill(strip + job.End * kBlurLanes, strip + job.Height * kBlurLanes, kBlurZero);
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
                  strip + (InBlurLanes(std::max(job.Width, job.Height)) + job.Reach) * kBlurLanes, kBlurZero);
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
    constexpr int64_t kMostWhole = 63;
    constexpr uint64_t kLargest = 255U << 8U;
    if (whole > kMostWhole || (whole == 0 && edgeWeight == 0)) return std::nullopt;
    const uint64_t weight = 256 * static_cast<uint64_t>(2 * whole + 1) + 2 * uint64_t{edgeWeight};
    // The largest shift with which the multiplier has 32 bits. It exceeds 2^(32 + shift) / weight by less than 1, and
    // the product is exact while that, times the weight, times the dividend, stays below 2^(32 + shift).
    const auto shift = static_cast<uint32_t>(std::bit_width(weight - 1)) - 1;
    const uint64_t power = uint64_t{1} << (32 + shift), multiplier = power / weight + 1;
    const uint64_t largest = kLargest * weight + weight / 2;
    if ((multiplier * weight - power) * largest >= power) return std::nullopt;
    return BoxStep{static_cast<int32_t>(whole), edgeWeight, static_cast<uint32_t>(weight),
                   static_cast<uint32_t>(multiplier), shift};
}

CoverageBlur* BestCoverageBlur() {
    static CoverageBlur* const best = HWY_DYNAMIC_DISPATCH(Blur)();
    return best;
}

std::vector<CoverageBlur*> VectorCoverageBlurs() {
    return OfEachVectorTarget([] { return HWY_DYNAMIC_DISPATCH(Blur)(); });
}

}  // namespace captionfx
#endif
