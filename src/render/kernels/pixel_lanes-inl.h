// Pixels in vectors: their bytes, their alpha, division, and how one lies over another.
//
// Part of files that Highway compiles once for each width, and included by them again each time.
#if defined(CAPTIONFX_PIXEL_LANES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef CAPTIONFX_PIXEL_LANES_INL_H_
#undef CAPTIONFX_PIXEL_LANES_INL_H_
#else
#define CAPTIONFX_PIXEL_LANES_INL_H_
#endif

#include <hwy/highway.h>

#include "render/kernels/pixel_rules.h"

HWY_BEFORE_NAMESPACE();
namespace captionfx::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

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
/// The bytes of a pixel moved to places where sums and products of 16 bits want them; 0x80 is a byte of 0.
HWY_INLINE Halves Moved(Pixels pixels, const uint8_t (&order)[16]) {
    return hn::BitCast(kLanes16, hn::TableLookupBytesOr0(hn::BitCast(kLanes8, pixels), hn::LoadDup128(kLanes8, order)));
}
/// Numbers of 16 bits in both halves of their pixels.
HWY_INLINE Halves InBothHalves(Pixels low) {
    HWY_ALIGN static constexpr uint8_t kOrder[16] = {0, 1, 0, 1, 4, 5, 4, 5, 8, 9, 8, 9, 12, 13, 12, 13};
    return Moved(low, kOrder);
}
HWY_INLINE Halves AlphaInBothHalves(Pixels pixels) {
    HWY_ALIGN static constexpr uint8_t kOrder[16] = {3,  0x80, 3,  0x80, 7,  0x80, 7,  0x80,
                                                     11, 0x80, 11, 0x80, 15, 0x80, 15, 0x80};
    return Moved(pixels, kOrder);
}
/// Pixels of even bytes below 256 and of odd bytes that are the high ones of `odd`.
HWY_INLINE Pixels FromHighBytes(Halves even, Halves odd) {
    return hn::BitCast(kLanes32, hn::OrAnd(even, odd, hn::Set(kLanes16, 0xFF00)));
}
HWY_INLINE Pixels Alpha(Pixels pixels) {
    return hn::ShiftRight<24>(pixels);
}
HWY_INLINE Pixels WithAlphaOf(Pixels color, Pixels alpha) {
    return hn::OrAnd(hn::ShiftLeft<24>(alpha), color, hn::Set(kLanes32, kColorMask));
}
HWY_INLINE Pixels SaturatedSum(Pixels a, Pixels b) {
    return hn::BitCast(kLanes32, hn::SaturatedAdd(hn::BitCast(kLanes8, a), hn::BitCast(kLanes8, b)));
}
HWY_INLINE bool IsAllZero(Pixels pixels) {
    return hn::AllTrue(kLanes32, hn::Eq(pixels, hn::Zero(kLanes32)));
}

/// Every byte of the pixels times `factor`, at most 255, over 255, rounded to nearest: (v + 128) 257 / 65536, cut.
HWY_INLINE Pixels ScaledBy255(Halves even, Halves odd) {
    const Halves half = hn::Set(kLanes16, 128);
    const Halves biased = hn::Add(odd, half);
    return FromHighBytes(hn::MulHigh(hn::Add(even, half), hn::Set(kLanes16, 257)),
                         hn::Add(biased, hn::ShiftRight<8>(biased)));
}

/// 65535.5 / d, cut, in the low half of each pixel, for d of 1 to 255. That quotient is never so near to a whole number
/// that a float would round it there; the sum's unit is 1 and it is rounded to nearest, so that its low bits are the
/// whole part.
HWY_INLINE Pixels Reciprocal(Pixels divisor) {
    const auto d = hn::ConvertTo(LanesF32(), hn::BitCast(LanesI32(), divisor));
    const auto quotient = hn::Div(hn::Set(LanesF32(), 65535.5F), d);
    return hn::BitCast(kLanes32, hn::Add(quotient, hn::Set(LanesF32(), 0x1p23F - 0.5F)));
}

/// Division of numbers of 16 bits by such of 1 to 255, cut to a whole number: the product with the reciprocal is the
/// quotient or 1 less, which the remainder tells.
class Divider {
public:
    Divider(Halves divisor, Halves reciprocal)
        : divisor_(divisor), last_(hn::Sub(divisor, hn::Set(kLanes16, 1))), reciprocal_(reciprocal) {}

    /// By a number for each pixel.
    explicit Divider(Pixels divisor) : Divider(InBothHalves(divisor), InBothHalves(Reciprocal(divisor))) {}

    HWY_INLINE Halves operator()(Halves n) const {
        const Halves q = hn::MulHigh(n, reciprocal_);
        const Halves rest = hn::Sub(n, hn::Mul(q, divisor_));
        return hn::Add(q, hn::ShiftRight<15>(hn::Sub(last_, rest)));
    }

private:
    Halves divisor_, last_, reciprocal_;
};

HWY_INLINE Pixels OverPremultipliedPixels(Pixels source, Pixels destination) {
    const Halves left = hn::Sub(hn::Set(kLanes16, 255), AlphaInBothHalves(source));
    return SaturatedSum(source,
                        ScaledBy255(hn::Mul(EvenBytes(destination), left), hn::Mul(OddBytes(destination), left)));
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

#endif

}  // namespace captionfx::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
