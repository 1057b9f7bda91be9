// The vector form of the row loops, compiled once for each width.
#include "render/kernels/row_kernels.h"

#include <algorithm>
#include <array>

#include "render/kernels/pixel_rules.h"

// The two lines that Highway includes this file again by.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/kernels/row_kernels.cpp"  // NOLINT(cppcoreguidelines-macro-usage): Highway's
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

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

namespace hn = hwy::HWY_NAMESPACE;

// A pixel is a lane of 32 bits, or two of 16 with a channel each: blue and red in the even bytes, green and alpha in
// the odd ones.
using Lanes32 = hn::ScalableTag<uint32_t>;
using LanesI32 = hn::RebindToSigned<Lanes32>;
using LanesI16 = hn::Repartition<int16_t, Lanes32>;
using LanesF32 = hn::RebindToFloat<Lanes32>;
using Lanes16 = hn::Repartition<uint16_t, Lanes32>;
using Lanes8 = hn::Repartition<uint8_t, Lanes32>;
using Pixels = hn::Vec<Lanes32>;
using Halves = hn::Vec<Lanes16>;

constexpr Lanes32 kLanes32;
constexpr Lanes16 kLanes16;
constexpr Lanes8 kLanes8;

HWY_INLINE Halves EvenBytes(Pixels pixels) {
    return hn::And(hn::BitCast(kLanes16, pixels), hn::Set(kLanes16, 0xFF));
}
HWY_INLINE Halves OddBytes(Pixels pixels) {
    return hn::ShiftRight<8>(hn::BitCast(kLanes16, pixels));
}
HWY_INLINE Pixels FromBytes(Halves even, Halves odd) {
    return hn::BitCast(kLanes32, hn::Or(even, hn::ShiftLeft<8>(odd)));
}
/// The low byte of each pixel in both of its halves.
HWY_INLINE Halves InBothHalves(Pixels low) {
    return hn::BitCast(kLanes16, hn::Or(low, hn::ShiftLeft<16>(low)));
}
HWY_INLINE Pixels Alpha(Pixels pixels) {
    return hn::ShiftRight<24>(pixels);
}
HWY_INLINE Pixels SaturatedSum(Pixels a, Pixels b) {
    return hn::BitCast(kLanes32, hn::SaturatedAdd(hn::BitCast(kLanes8, a), hn::BitCast(kLanes8, b)));
}
HWY_INLINE bool IsAllZero(Pixels pixels) {
    return hn::AllTrue(kLanes32, hn::Eq(pixels, hn::Zero(kLanes32)));
}
/// Of products of two bytes, rounded to nearest.
HWY_INLINE Halves DividedBy255(Halves products) {
    const Halves biased = hn::Add(products, hn::Set(kLanes16, 128));
    return hn::ShiftRight<8>(hn::Add(biased, hn::ShiftRight<8>(biased)));
}
/// Division by numbers of 1 to 255, cut to a whole number, of dividends below 2^16.
///
/// The reciprocal is a little too large, by less than 2^-22 of it, so that the product is never below the quotient and
/// above it by less than n / d / 2^22, which does not reach the next whole number: that is 1 / d away at least.
class Divider {
public:
    explicit Divider(Pixels divisor) : reciprocal_(hn::Div(hn::Set(LanesF32(), 1.0F + 0x1p-23F), ToFloat(divisor))) {}

    HWY_INLINE Pixels operator()(Pixels n) const {
        return hn::BitCast(kLanes32, hn::ConvertTo(LanesI32(), hn::Mul(ToFloat(n), reciprocal_)));
    }

private:
    static HWY_INLINE hn::Vec<LanesF32> ToFloat(Pixels v) {
        return hn::ConvertTo(LanesF32(), hn::BitCast(LanesI32(), v));
    }

    hn::Vec<LanesF32> reciprocal_;
};

/// channel(shift) for the three colours, each at most 255, without alpha.
template <int kShift>
HWY_INLINE Pixels Channel(Pixels pixels) {
    return hn::And(hn::ShiftRight<kShift>(pixels), hn::Set(kLanes32, 0xFF));
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

/// Like ForRow, for several rows that are all changed.
template <size_t kRows, class Change>
HWY_INLINE void ForRows(const std::array<uint32_t*, kRows>& rows, size_t count, Change change) {
    const size_t lanes = hn::Lanes(kLanes32), whole = count / lanes * lanes;
    const auto at = [&](size_t i) HWY_ATTR {
        std::array<uint32_t*, kRows> places = rows;
        for (uint32_t*& place : places) place += i;
        return places;
    };
    for (size_t i = 0; i < whole; i += lanes) change(at(i));
    if (whole == count) return;
    HWY_ALIGN uint32_t rest[kRows][hn::MaxLanes(Lanes32())] = {};
    std::array<uint32_t*, kRows> places;
    for (size_t row = 0; row < kRows; ++row) {
        places[row] = rest[row];
        std::copy(rows[row] + whole, rows[row] + count, rest[row]);
    }
    change(places);
    for (size_t row = 0; row < kRows; ++row) std::copy_n(rest[row], count - whole, rows[row] + whole);
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
    const Pixels invert = hn::Set(kLanes32, 0xFF000000U);
    const Halves a16 = InBothHalves(a);
    const Halves left = hn::Sub(hn::Set(kLanes16, 256), a16), weight = hn::Add(a16, hn::Set(kLanes16, 1));
    const Pixels added =
        FromBytes(hn::ShiftRight<8>(hn::Mul(colorEven, weight)), hn::ShiftRight<8>(hn::Mul(colorOdd, weight)));
    if (IsAllZero(target)) return hn::Or(added, hn::ShiftLeft<24>(a));
    const Pixels inverted = hn::Xor(target, invert);
    const Pixels kept = FromBytes(hn::ShiftRight<8>(hn::Mul(EvenBytes(inverted), left)),
                                  hn::ShiftRight<8>(hn::Mul(OddBytes(inverted), left)));
    return SaturatedSum(hn::Xor(kept, invert), added);
}

/// Sums of the products of neighbours, added to `sums`: what this operation does on the processors that we build for.
HWY_INLINE hn::Vec<LanesI32> AddPairs(hn::Vec<Lanes16> samples, hn::Vec<LanesI16> weights, hn::Vec<LanesI32> sums) {
    hn::Vec<LanesI32> unused = hn::Zero(LanesI32());
    return hn::ReorderWidenMulAccumulate(LanesI32(), hn::BitCast(LanesI16(), samples), weights, sums, unused);
}

/// Two weights of 16 bits for pairs of samples, as two terms of 15 bits.
struct PairWeights {
    PairWeights(uint32_t first, uint32_t second)
        : Low(Pair(first / 2, second / 2)), High(Pair(first - first / 2, second - second / 2)) {}

    static hn::Vec<LanesI16> Pair(uint32_t first, uint32_t second) {
        return hn::BitCast(LanesI16(), hn::Set(kLanes32, first | second << 16U));
    }

    hn::Vec<LanesI16> Low, High;
};

/// A placement in the form that vectors want it.
struct PlacementLanes {
    explicit PlacementLanes(const CoveragePlacement& p)
        : Above(p.W00, p.W10),
          Here(p.W01, p.W11),
          Alpha(hn::Set(kLanes16, static_cast<uint16_t>(p.Alpha + 1))),
          ColorEven(EvenBytes(hn::Set(kLanes32, p.Color))),
          ColorOdd(OddBytes(hn::Set(kLanes32, p.Color))) {}

    PairWeights Above, Here;
    Halves Alpha;
    Halves ColorEven, ColorOdd;
};

/// Of each second pixel, from samples that begin left of the first.
HWY_INLINE Pixels WeighedPairs(Halves above, Halves here, const PlacementLanes& p) {
    const auto upper = AddPairs(above, p.Above.Low, AddPairs(above, p.Above.High, hn::Zero(LanesI32())));
    return hn::BitCast(kLanes32, AddPairs(here, p.Here.Low, AddPairs(here, p.Here.High, upper)));
}

HWY_INLINE void PlaceVector(uint32_t* target, Pixels a, const PlacementLanes& p) {
    hn::StoreU(Placed(hn::LoadU(kLanes32, target), a, p.ColorEven, p.ColorOdd), kLanes32, target);
}

/// Two vectors of pixels, as many as one of half as wide lanes has. Whether a vector is empty is not asked: among
/// letters no processor guesses the answer often enough to pay for it.
HWY_INLINE void PlaceTwo(uint32_t* target, const uint8_t* upper, const uint8_t* lower, const PlacementLanes& p) {
    const auto samples = [](const uint8_t* at) HWY_ATTR {
        return hn::PromoteTo(kLanes16, hn::LoadU(hn::Rebind<uint8_t, Lanes16>(), at));
    };
    const Halves leftAbove = samples(upper - 1), above = samples(upper), left = samples(lower - 1),
                 here = samples(lower);
    const Pixels even = WeighedPairs(leftAbove, left, p), odd = WeighedPairs(above, here, p);
    const Pixels coverage = hn::Or(hn::ShiftRight<16>(even), hn::And(odd, hn::Set(kLanes32, 0xFFFF0000U)));
    const Halves a = hn::ShiftRight<8>(hn::Mul(hn::BitCast(kLanes16, coverage), p.Alpha));
    PlaceVector(target, hn::PromoteTo(kLanes32, hn::LowerHalf(a)), p);
    PlaceVector(target + hn::Lanes(kLanes32), hn::PromoteTo(kLanes32, hn::UpperHalf(hn::Half<Lanes16>(), a)), p);
}

void PlaceCoverage(uint32_t* target, std::ptrdiff_t pitch, const CoverageRows& rows,
                   const CoveragePlacement& placement) {
    constexpr size_t kMostLanes = hn::MaxLanes(Lanes16());
    static_assert(kMostLanes <= CoverageLayer::kPadding && kMostLanes <= kPixelPadding);
    const PlacementLanes p(placement);
    const auto lanes = static_cast<int32_t>(hn::Lanes(kLanes16));
    const uint8_t* upper = rows.Samples;
    for (int32_t v = 0; v < rows.Count; ++v, target += pitch, upper += rows.Pitch) {
        const ColumnSpan above = rows.Spans[v], here = rows.Spans[v + 1];
        if (above.First == above.End && here.First == here.End) continue;
        // An empty span begins and ends at 0, which is no bound for the other one.
        const int32_t first = above.First == above.End ? here.First
                              : here.First == here.End ? above.First
                                                       : std::min(above.First, here.First);
        const int32_t left = std::max(rows.Left, first),
                      right = std::min(rows.Right, std::max(above.End, here.End) + 1);
        const uint8_t* const lower = upper + rows.Pitch;
        uint32_t* const out = target + rows.Column + left;
        const int32_t whole = rows.MayOverrun ? right : right - lanes + 1;
        int32_t u = left;
        for (; u < whole; u += lanes) PlaceTwo(out + (u - left), upper + u, lower + u, p);
        if (u >= right) continue;
        HWY_ALIGN uint32_t rest[kMostLanes] = {};
        std::copy(out + (u - left), out + (right - left), rest);
        PlaceTwo(rest, upper + u, lower + u, p);
        std::copy_n(rest, right - u, out + (u - left));
    }
}

HWY_INLINE Pixels FaceOverBorderGeneral(Pixels face, Pixels border) {
    const Pixels fa = Alpha(face), ba = hn::Max(Alpha(border), hn::Set(kLanes32, 1));
    const Pixels a = hn::Min(hn::Add(fa, ba), hn::Set(kLanes32, 255));
    const Pixels left = hn::Sub(hn::Set(kLanes32, 256), fa);
    const Divider byBorderAlpha(ba);
    const auto merged = [&](Pixels faceChannel, Pixels borderChannel) HWY_ATTR {
        const Pixels sum = hn::Add(faceChannel, byBorderAlpha(hn::Mul(left, borderChannel)));
        return hn::And(hn::ShiftRight<8>(hn::Mul(sum, a)), hn::Set(kLanes32, 0xFF));
    };
    const Pixels blue = merged(Channel<0>(face), Channel<0>(border)),
                 green = merged(Channel<8>(face), Channel<8>(border)),
                 red = merged(Channel<16>(face), Channel<16>(border));
    return hn::Or(hn::Or(blue, hn::ShiftLeft<8>(green)), hn::Or(hn::ShiftLeft<16>(red), hn::ShiftLeft<24>(a)));
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

HWY_INLINE Pixels OverPremultipliedPixels(Pixels source, Pixels destination) {
    const Halves left = hn::Sub(hn::Set(kLanes16, 255), InBothHalves(Alpha(source)));
    const Pixels kept = FromBytes(DividedBy255(hn::Mul(EvenBytes(destination), left)),
                                  DividedBy255(hn::Mul(OddBytes(destination), left)));
    return SaturatedSum(source, kept);
}

HWY_INLINE bool IsOpaque(Pixels pixels) {
    return hn::AllTrue(kLanes32, hn::Eq(Alpha(pixels), hn::Set(kLanes32, 255)));
}

/// One by one, for what is rare.
template <uint32_t (*Blend)(uint32_t, uint32_t)>
HWY_NOINLINE Pixels OneByOne(Pixels source, Pixels destination) {
    constexpr size_t kLanes = hn::MaxLanes(Lanes32());
    HWY_ALIGN uint32_t above[kLanes], below[kLanes];
    hn::Store(source, kLanes32, above);
    hn::Store(destination, kLanes32, below);
    for (size_t i = 0; i < hn::Lanes(kLanes32); ++i) below[i] = Blend(above[i], below[i]);
    return hn::Load(kLanes32, below);
}

// On an opaque destination A is 65025, and both kinds of over become a sum with one division by 255.
HWY_INLINE Pixels PremultipliedOverStraight(Pixels source, Pixels destination) {
    return IsOpaque(destination) ? OverPremultipliedPixels(source, destination)
                                 : OneByOne<OverStraight<true> >(source, destination);
}

void CompositePremultiplied(uint32_t* destination, const uint32_t* source, size_t count) {
    BlendRow(destination, source, count, [](Pixels s, Pixels d) HWY_ATTR { return PremultipliedOverStraight(s, d); });
}

/// The pixels of three planes as one image.
HWY_INLINE Pixels Merged(Pixels face, Pixels border, Pixels shadow) {
    if (IsAllZero(hn::Or(face, border))) return shadow;
    return OverPremultipliedPixels(MergedPixels(face, border), shadow);
}

void MergePlanes(uint32_t* face, uint32_t* border, uint32_t* shadow, size_t count) {
    ForRows(std::array{face, border, shadow}, count, [](const std::array<uint32_t*, 3>& rows) HWY_ATTR {
        const auto [f, b, s] = rows;
        hn::StoreU(Merged(hn::LoadU(kLanes32, f), hn::LoadU(kLanes32, b), hn::LoadU(kLanes32, s)), kLanes32, s);
        hn::StoreU(hn::Zero(kLanes32), kLanes32, f);
        hn::StoreU(hn::Zero(kLanes32), kLanes32, b);
    });
}

template <class Composite>
HWY_INLINE void Finish(const std::array<uint32_t*, 4>& rows, size_t count, Composite composite) {
    ForRows(rows, count, [&](const std::array<uint32_t*, 4>& places) HWY_ATTR {
        const auto [destination, face, border, shadow] = places;
        const Pixels f = hn::LoadU(kLanes32, face), b = hn::LoadU(kLanes32, border), s = hn::LoadU(kLanes32, shadow);
        if (IsAllZero(hn::Or(hn::Or(f, b), s))) return;
        hn::StoreU(composite(Merged(f, b, s), hn::LoadU(kLanes32, destination)), kLanes32, destination);
        hn::StoreU(hn::Zero(kLanes32), kLanes32, face);
        hn::StoreU(hn::Zero(kLanes32), kLanes32, border);
        hn::StoreU(hn::Zero(kLanes32), kLanes32, shadow);
    });
}

void FinishStraight(uint32_t* destination, uint32_t* face, uint32_t* border, uint32_t* shadow, size_t count) {
    Finish({destination, face, border, shadow}, count,
           [](Pixels s, Pixels d) HWY_ATTR { return PremultipliedOverStraight(s, d); });
}

void FinishPremultiplied(uint32_t* destination, uint32_t* face, uint32_t* border, uint32_t* shadow, size_t count) {
    Finish({destination, face, border, shadow}, count,
           [](Pixels s, Pixels d) HWY_ATTR { return OverPremultipliedPixels(s, d); });
}

void CompositeStraight(uint32_t* destination, const uint32_t* source, size_t count) {
    BlendRow(destination, source, count, [](Pixels s, Pixels d) HWY_ATTR {
        if (!IsOpaque(d)) return OneByOne<OverStraight<false> >(s, d);
        const Halves sa = InBothHalves(Alpha(s)), left = hn::Sub(hn::Set(kLanes16, 255), sa);
        const auto mixed = [&](Halves sc, Halves dc)
                               HWY_ATTR { return DividedBy255(hn::Add(hn::Mul(sc, sa), hn::Mul(dc, left))); };
        const Pixels color = FromBytes(mixed(EvenBytes(s), EvenBytes(d)), mixed(OddBytes(s), OddBytes(d)));
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
        const Halves alpha = InBothHalves(Alpha(straight));
        const Pixels color = FromBytes(DividedBy255(hn::Mul(EvenBytes(straight), alpha)),
                                       DividedBy255(hn::Mul(OddBytes(straight), alpha)));
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
        const Pixels half = hn::ShiftRight<1>(alpha);
        const auto straight = [&](Pixels channel) HWY_ATTR {
            const Pixels scaled = hn::Sub(hn::ShiftLeft<8>(channel), channel);
            return hn::Min(byAlpha(hn::Add(scaled, half)), hn::Set(kLanes32, 255));
        };
        const Pixels color = hn::Or(straight(Channel<0>(premultiplied)),
                                    hn::Or(hn::ShiftLeft<8>(straight(Channel<8>(premultiplied))),
                                           hn::ShiftLeft<16>(straight(Channel<16>(premultiplied)))));
        hn::StoreU(hn::IfThenZeroElse(isClear, hn::Or(color, hn::ShiftLeft<24>(alpha))), kLanes32, out);
    });
}

const RowKernels* Rows() {
    static constexpr RowKernels kRows{.PlaceCoverage = PlaceCoverage,
                                      .MergePlanes = MergePlanes,
                                      .FinishStraight = FinishStraight,
                                      .FinishPremultiplied = FinishPremultiplied,
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
    std::vector<const RowKernels*> all;
    ForEachVectorTarget([&] { all.push_back(HWY_DYNAMIC_DISPATCH(Rows)()); });
    return all;
}

}  // namespace captionfx
#endif
