// The vector form of the row loops, compiled once for each width.
#include "render/kernels/row_kernels.h"

#include <algorithm>
#include <array>

// The two lines that Highway includes this file again by.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/kernels/row_kernels.cpp"  // NOLINT(cppcoreguidelines-macro-usage): Highway's
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "render/kernels/coverage_lanes-inl.h"
#include "render/kernels/pixel_lanes-inl.h"
#include "render/kernels/vector_targets.h"

HWY_BEFORE_NAMESPACE();
namespace captionfx::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

// A processor without byte shuffles, the oldest of 64 bits.
const RowKernels* Rows() {
    return &PlainRowKernels();
}

#else

/// Every byte of the pixels times `factor`, at most 256, over 256, cut.
HWY_INLINE Pixels Scaled(Pixels pixels, Halves factor) {
    const Halves bytes = hn::BitCast(kLanes16, pixels);
    return FromHighBytes(hn::MulHigh(hn::ShiftLeft<8>(bytes), factor), hn::Mul(hn::ShiftRight<8>(bytes), factor));
}

/// change(pixels) of all pixels of a row: whole vectors where they lie, the rest in a vector beside.
template <class Change>
HWY_INLINE void ForRow(uint32_t* row, size_t count, Change change) {
    const size_t lanes = hn::Lanes(kLanes32);
    size_t i = 0;
    for (; i + lanes <= count; i += lanes) change(row + i, i);
    if (i == count) return;
    HWY_ALIGN uint32_t rest[hn::MaxLanes(Lanes32())] = {};
    std::copy(row + i, row + count, rest);
    change(rest, i);
    std::copy_n(rest, count - i, row + i);
}

/// Like ForRow, for two rows. Where a source of 0 leaves the destination alone, vectors of such are passed over.
template <bool kZeroIsNothing = true, class Blend>
HWY_INLINE void BlendRow(uint32_t* destination, const uint32_t* source, size_t count, Blend blend) {
    const size_t lanes = hn::Lanes(kLanes32);
    const size_t whole = count / lanes * lanes;
    for (size_t i = 0; i < whole; i += lanes) {
        const Pixels above = hn::LoadU(kLanes32, source + i);
        if (kZeroIsNothing && IsAllZero(above)) continue;
        hn::StoreU(blend(above, hn::LoadU(kLanes32, destination + i)), kLanes32, destination + i);
    }
    if (whole == count) return;
    HWY_ALIGN uint32_t above[hn::MaxLanes(Lanes32())] = {}, below[hn::MaxLanes(Lanes32())] = {};
    std::copy(source + whole, source + count, above);
    std::copy(destination + whole, destination + count, below);
    hn::Store(blend(hn::Load(kLanes32, above), hn::Load(kLanes32, below)), kLanes32, below);
    std::copy_n(below, count - whole, destination + whole);
}

// One formula for all cases of PlacedOver: with the target's alpha inverted, v (256 - a) >> 8 is what is left of each
// of its channels. A target without alpha leaves 255 - a of 255, so that its alpha becomes a; an `a` of 255 leaves
// nothing, one of 0 everything.
HWY_INLINE Pixels Placed(Pixels target, Pixels a, Halves colorEven, Halves colorOdd) {
    const Halves a16 = InBothHalves(a), weight = hn::Add(a16, hn::Set(kLanes16, 1));
    const Pixels added = FromHighBytes(hn::MulHigh(colorEven, weight), hn::Mul(colorOdd, weight));
    if (IsAllZero(target)) return hn::Or(added, hn::ShiftLeft<24>(a));
    const Pixels invert = hn::Set(kLanes32, 0xFF000000U);
    const Pixels kept = Scaled(hn::Xor(target, invert), hn::Sub(hn::Set(kLanes16, 256), a16));
    return SaturatedSum(hn::Xor(kept, invert), added);
}

/// The colour of a layer, the bytes of the even halves 8 bits up.
struct ColorLanes {
    explicit ColorLanes(uint32_t color)
        : Even(hn::ShiftLeft<8>(hn::BitCast(kLanes16, hn::Set(kLanes32, color)))),
          Odd(OddBytes(hn::Set(kLanes32, color))) {}

    Halves Even, Odd;
};

HWY_INLINE void PlaceVector(uint32_t* target, Pixels a, const ColorLanes& color) {
    hn::StoreU(Placed(hn::LoadU(kLanes32, target), a, color.Even, color.Odd), kLanes32, target);
}

/// Two vectors of pixels. Whether a vector is empty is not asked: among letters no processor guesses the answer often
/// enough to pay for it.
HWY_INLINE void PlaceTwo(uint32_t* target, Halves a, const ColorLanes& color) {
    PlaceVector(target, hn::PromoteTo(kLanes32, hn::LowerHalf(a)), color);
    PlaceVector(target + hn::Lanes(kLanes32), hn::PromoteTo(kLanes32, hn::UpperHalf(hn::Half<Lanes16>(), a)), color);
}

template <Sampling kSampling>
HWY_INLINE void PlaceRows(uint32_t* target, std::ptrdiff_t pitch, const CoverageRows& rows,
                          const CoveragePlacement& placement, std::ptrdiff_t largeOffset) {
    constexpr size_t kMostLanes = hn::MaxLanes(Lanes16());
    static_assert(kMostLanes <= CoverageLayer::kPadding);
    const auto lanes = static_cast<int32_t>(hn::Lanes(kLanes16));
    const PlacementWeights weights(placement);
    const ColorLanes color(placement.Color);
    ForFilledRows(rows, [&](int32_t v, const uint8_t* upper, int32_t left, int32_t right) HWY_ATTR {
        const uint8_t* const lower = upper + rows.Pitch;
        uint32_t* const out = target + v * pitch + rows.Column;
        const auto placed = [&](int32_t u) HWY_ATTR {
            return PlacedCoverages<kSampling>(upper + u, lower + u, largeOffset, weights);
        };
        int32_t u = left;
        for (; u + lanes <= right; u += lanes) PlaceTwo(out + u, placed(u), color);
        if (u >= right) return;
        HWY_ALIGN uint32_t rest[kMostLanes] = {};
        std::copy(out + u, out + right, rest);
        PlaceTwo(rest, placed(u), color);
        std::copy_n(rest, right - u, out + u);
    });
}

void PlaceCoverage(uint32_t* target, std::ptrdiff_t pitch, const CoverageRows& rows,
                   const CoveragePlacement& placement) {
    const LargeWeight large(placement, rows.Pitch);
    if (large.Exists) {
        PlaceRows<Sampling::kFourWithLarge>(target, pitch, rows, placement, large.Offset);
    } else {
        PlaceRows<Sampling::kFour>(target, pitch, rows, placement, 0);
    }
}

HWY_INLINE Pixels FaceOverBorderGeneral(Pixels face, Pixels border) {
    const Halves fa = AlphaInBothHalves(face);
    const Halves a = hn::Min(hn::Add(fa, AlphaInBothHalves(border)), hn::Set(kLanes16, 255));
    const Halves left = hn::Sub(hn::Set(kLanes16, 256), fa);
    const Divider byBorderAlpha(hn::Max(Alpha(border), hn::Set(kLanes32, 1)));
    const auto merged = [&](Halves faceChannel, Halves borderChannel) HWY_ATTR {
        return hn::Mul(hn::Add(faceChannel, byBorderAlpha(hn::Mul(left, borderChannel))), a);
    };
    const Pixels color = FromHighBytes(hn::ShiftRight<8>(merged(EvenBytes(face), EvenBytes(border))),
                                       merged(OddBytes(face), OddBytes(border)));
    return WithAlphaOf(color, hn::BitCast(kLanes32, a));
}

HWY_INLINE Pixels MergedPixels(Pixels face, Pixels border) {
    const auto isZero = [](Pixels v) HWY_ATTR { return hn::Eq(v, hn::Zero(kLanes32)); };
    const Pixels fa = Alpha(face), ba = Alpha(border);
    const auto noBorder = isZero(ba), noFace = hn::AndNot(noBorder, isZero(fa));
    const auto onlyFace = hn::Or(noBorder, hn::Eq(fa, hn::Set(kLanes32, 255)));
    if (hn::AllTrue(kLanes32, hn::Or(noFace, onlyFace))) return hn::IfThenElse(noFace, border, face);
    return hn::IfThenElse(noFace, border, hn::IfThenElse(onlyFace, face, FaceOverBorderGeneral(face, border)));
}

void MergeFaceOverBorder(uint32_t* border, const uint32_t* face, size_t count) {
    BlendRow<false>(border, face, count, [](Pixels f, Pixels b) HWY_ATTR { return MergedPixels(f, b); });
}

void CompositePremultiplied(uint32_t* destination, const uint32_t* source, size_t count) {
    BlendRow(destination, source, count, [](Pixels s, Pixels d) HWY_ATTR { return PremultipliedOverStraight(s, d); });
}

void CompositeStraight(uint32_t* destination, const uint32_t* source, size_t count) {
    BlendRow(destination, source, count, [](Pixels s, Pixels d) HWY_ATTR {
        if (!IsOpaque(d)) return OneByOne<OverStraight<false> >(s, d);
        const Halves sa = AlphaInBothHalves(s), left = hn::Sub(hn::Set(kLanes16, 255), sa);
        const auto mixed = [&](Halves sc, Halves dc) HWY_ATTR { return hn::Add(hn::Mul(sc, sa), hn::Mul(dc, left)); };
        const Pixels color = ScaledBy255(mixed(EvenBytes(s), EvenBytes(d)), mixed(OddBytes(s), OddBytes(d)));
        return hn::Or(color, hn::Set(kLanes32, 0xFF000000U));
    });
}

void CompositePremultipliedOnto(uint32_t* destination, const uint32_t* source, size_t count) {
    BlendRow(destination, source, count, [](Pixels s, Pixels d) HWY_ATTR { return OverPremultipliedPixels(s, d); });
}

void Premultiply(uint32_t* pixels, size_t count) {
    const Pixels opaque = hn::Set(kLanes32, 0xFF000000U);
    ForRow(pixels, count, [&](uint32_t* out, size_t /*i*/) HWY_ATTR {
        const Pixels straight = hn::LoadU(kLanes32, out);
        const Halves alpha = AlphaInBothHalves(straight);
        const Pixels color = ScaledBy255(hn::Mul(EvenBytes(straight), alpha), hn::Mul(OddBytes(straight), alpha));
        hn::StoreU(hn::Or(hn::AndNot(opaque, color), hn::And(straight, opaque)), kLanes32, out);
    });
}

void Unpremultiply(uint32_t* pixels, size_t count) {
    ForRow(pixels, count, [&](uint32_t* out, size_t /*i*/) HWY_ATTR {
        const Pixels premultiplied = hn::LoadU(kLanes32, out);
        const Pixels alpha = Alpha(premultiplied);
        if (hn::AllTrue(kLanes32, hn::Eq(alpha, hn::Set(kLanes32, 255)))) return;
        const auto isClear = hn::Eq(alpha, hn::Zero(kLanes32));
        const Divider byAlpha(hn::Max(alpha, hn::Set(kLanes32, 1)));
        const Halves half = InBothHalves(hn::ShiftRight<1>(alpha));
        const auto straight = [&](Halves channel) HWY_ATTR {
            const Halves scaled = hn::Sub(hn::ShiftLeft<8>(channel), channel);
            return hn::Min(byAlpha(hn::Add(scaled, half)), hn::Set(kLanes16, 255));
        };
        const Pixels color = FromBytes(straight(EvenBytes(premultiplied)), straight(OddBytes(premultiplied)));
        hn::StoreU(hn::IfThenZeroElse(isClear, WithAlphaOf(color, alpha)), kLanes32, out);
    });
}

const RowKernels* Rows() {
    static constexpr RowKernels kRows{.PlaceCoverage = PlaceCoverage,
                                      .MergeFaceOverBorder = MergeFaceOverBorder,
                                      .CompositeStraight = CompositeStraight,
                                      .CompositePremultiplied = CompositePremultiplied,
                                      .CompositePremultipliedOnto = CompositePremultipliedOnto,
                                      .Premultiply = Premultiply,
                                      .Unpremultiply = Unpremultiply};
    return &kRows;
}

#endif

}  // namespace
}  // namespace captionfx::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace captionfx {

HWY_EXPORT(Rows);

const RowKernels& BestRowKernels() {
    static const RowKernels& best = *HWY_DYNAMIC_DISPATCH(Rows)();
    return best;
}

std::vector<const RowKernels*> VectorRowKernels() {
    return OfEachVectorTarget([] { return HWY_DYNAMIC_DISPATCH(Rows)(); });
}

}  // namespace captionfx
#endif
