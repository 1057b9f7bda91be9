// Compiled once for each width of vectors.
#include "render/kernels/mask_kernels.h"

#include <bit>
#include <cstring>

// The two lines that Highway includes this file again by.
#undef HWY_TARGET_INCLUDE
#define HWY_TARGET_INCLUDE "render/kernels/mask_kernels.cpp"  // NOLINT(cppcoreguidelines-macro-usage): Highway's
#include <hwy/foreach_target.h>
#include <hwy/highway.h>

#include "render/kernels/vector_targets.h"

HWY_BEFORE_NAMESPACE();
namespace captionfx::HWY_NAMESPACE {
namespace {

#if HWY_TARGET == HWY_SCALAR

const MaskKernels* Masks() {
    return &PlainMaskKernels();
}

#else

namespace hn = hwy::HWY_NAMESPACE;

template <class Bytes>
using HalvesOf = hn::Repartition<uint16_t, Bytes>;
template <class Bytes>
using Vector = hn::Vec<Bytes>;

/// Whole vectors of `d` from byte `i` on; returns where they end.
template <class Bytes, class Combine>
HWY_INLINE size_t ForVectors(Bytes d, uint8_t* out, const uint8_t* mask, size_t i, size_t count, Combine combine) {
    for (; i + hn::Lanes(d) <= count; i += hn::Lanes(d))
        hn::StoreU(combine(d, hn::LoadU(d, out + i), hn::LoadU(d, mask + i)), d, out + i);
    return i;
}

/// out = combine(kind of vector, out, mask), in vectors of half the length for what is left of a row, and the last
/// columns by plain(their rows): rows are short, and a way by other memory would cost more than they do.
template <class Combine, class Plain>
HWY_INLINE void ForRows(const MaskRows& rows, Combine combine, Plain plain) {
    const size_t count = rows.Width, whole = count / 8 * 8;
    for (ptrdiff_t y = 0; y < rows.Height; ++y) {
        uint8_t* const out = rows.Out + y * rows.OutPitch;
        const uint8_t* const mask = rows.Mask + y * rows.MaskPitch;
        size_t i = ForVectors(hn::ScalableTag<uint8_t>(), out, mask, 0, count, combine);
        i = ForVectors(hn::CappedTag<uint8_t, 32>(), out, mask, i, count, combine);
        i = ForVectors(hn::CappedTag<uint8_t, 16>(), out, mask, i, count, combine);
        ForVectors(hn::CappedTag<uint8_t, 8>(), out, mask, i, count, combine);
    }
    if (whole == count) return;
    plain(MaskRows{rows.Out + whole, rows.OutPitch, rows.Mask + whole, rows.MaskPitch, count - whole, rows.Height});
}

// A pair of bytes is a lane of 16 bits: the even one is cut out, the odd one shifted down.
template <class Bytes>
HWY_INLINE Vector<HalvesOf<Bytes> > EvenBytes(Bytes /*d*/, Vector<Bytes> bytes) {
    const HalvesOf<Bytes> d16;
    return hn::And(hn::BitCast(d16, bytes), hn::Set(d16, 0xFF));
}
template <class Bytes>
HWY_INLINE Vector<HalvesOf<Bytes> > OddBytes(Bytes /*d*/, Vector<Bytes> bytes) {
    return hn::ShiftRight<8>(hn::BitCast(HalvesOf<Bytes>(), bytes));
}

template <class Bytes>
HWY_INLINE Vector<Bytes> Scaled(Bytes d, Vector<Bytes> mask, uint32_t alpha) {
    const HalvesOf<Bytes> d16;
    const auto weight = hn::Set(d16, static_cast<uint16_t>(alpha + 1));
    const auto even = hn::ShiftRight<8>(hn::Mul(EvenBytes(d, mask), weight));
    const auto odd = hn::AndNot(hn::Set(d16, 0xFF), hn::Mul(OddBytes(d, mask), weight));
    return hn::BitCast(d, hn::Or(even, odd));
}

void ScaleMask(const MaskRows& rows, uint32_t alpha) {
    ForRows(
        rows, [=](auto d, auto /*before*/, auto m) HWY_ATTR { return Scaled(d, m, alpha); },
        [=](const MaskRows& last) { PlainMaskKernels().ScaleMask(last, alpha); });
}

void StampMax(const MaskRows& rows, uint32_t alpha) {
    ForRows(
        rows, [=](auto d, auto before, auto m) HWY_ATTR { return hn::Max(before, Scaled(d, m, alpha)); },
        [=](const MaskRows& last) { PlainMaskKernels().StampMax(last, alpha); });
}

void CoverageOfLevels(const MaskRows& rows, uint32_t factor) {
    const auto covered = [=](auto d, auto /*before*/, auto m) HWY_ATTR {
        const HalvesOf<decltype(d)> d16;
        const auto weight = hn::Set(d16, static_cast<uint16_t>(factor));
        const auto even = hn::And(hn::Mul(EvenBytes(d, m), weight), hn::Set(d16, 0xFF));
        const auto odd = hn::ShiftLeft<8>(hn::Mul(OddBytes(d, m), weight));
        const auto levels = hn::Sub(hn::BitCast(d, hn::Or(even, odd)), hn::Set(d, 1));
        return hn::IfThenZeroElse(hn::Eq(m, hn::Zero(d)), levels);
    };
    ForRows(rows, covered, [=](const MaskRows& last) { PlainMaskKernels().CoverageOfLevels(last, factor); });
}

void TakeMask(const MaskRows& rows) {
    ForRows(
        rows, [](auto /*d*/, auto before, auto m) HWY_ATTR { return hn::Sub(before, m); }, PlainMaskKernels().TakeMask);
}

void AddMask(const MaskRows& rows) {
    ForRows(
        rows, [](auto /*d*/, auto before, auto m) HWY_ATTR { return hn::SaturatedAdd(before, m); },
        PlainMaskKernels().AddMask);
}

/// A bit for each lane that is not 0.
template <class Bytes>
HWY_INLINE uint32_t FilledLanes(Bytes d, const uint8_t* bytes) {
    static_assert(hn::MaxLanes(Bytes()) <= 32);
    uint8_t bits[8] = {};
    hn::StoreMaskBits(d, hn::Ne(hn::LoadU(d, bytes), hn::Zero(d)), bits);
    uint32_t word = 0;
    std::memcpy(&word, bits, sizeof word);
    return word;
}

ColumnSpan FindSpan(const uint8_t* row, int32_t width) {
    const hn::CappedTag<uint8_t, CoverageLayer::kPadding> d;
    const auto lanes = static_cast<int32_t>(hn::Lanes(d));
    int32_t first = 0;
    uint32_t filled = 0;
    while (first < width && (filled = FilledLanes(d, row + first)) == 0) first += lanes;
    if (first >= width) return {};
    first += std::countr_zero(filled);
    int32_t last = width - lanes;
    while ((filled = FilledLanes(d, row + last)) == 0) last -= lanes;
    return {first, last + static_cast<int32_t>(std::bit_width(filled))};
}

const MaskKernels* Masks() {
    static constexpr MaskKernels kMasks{.ScaleMask = ScaleMask,
                                        .StampMax = StampMax,
                                        .CoverageOfLevels = CoverageOfLevels,
                                        .TakeMask = TakeMask,
                                        .AddMask = AddMask,
                                        .FindSpan = FindSpan};
    return &kMasks;
}

#endif

}  // namespace
}  // namespace captionfx::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#if HWY_ONCE
namespace captionfx {

HWY_EXPORT(Masks);

const MaskKernels& BestMaskKernels() {
    static const MaskKernels& best = *HWY_DYNAMIC_DISPATCH(Masks)();
    return best;
}

std::vector<const MaskKernels*> VectorMaskKernels() {
    return OfEachVectorTarget([] { return HWY_DYNAMIC_DISPATCH(Masks)(); });
}

}  // namespace captionfx
#endif
