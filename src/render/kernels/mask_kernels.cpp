// Compiled once for each width of vectors.
#include "render/kernels/mask_kernels.h"

#include <algorithm>

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

using Lanes8 = hn::ScalableTag<uint8_t>;
using Lanes16 = hn::Repartition<uint16_t, Lanes8>;
using Bytes = hn::Vec<Lanes8>;
using Halves = hn::Vec<Lanes16>;

constexpr Lanes8 kLanes8;
constexpr Lanes16 kLanes16;

/// out = combine(out, mask): whole vectors where they lie, the rest in vectors beside.
template <class Combine>
HWY_INLINE void ForRow(uint8_t* out, const uint8_t* mask, size_t count, Combine combine) {
    const size_t lanes = hn::Lanes(kLanes8), whole = count / lanes * lanes;
    for (size_t i = 0; i < whole; i += lanes) {
        hn::StoreU(combine(hn::LoadU(kLanes8, out + i), hn::LoadU(kLanes8, mask + i)), kLanes8, out + i);
    }
    if (whole == count) return;
    HWY_ALIGN uint8_t lastOut[hn::MaxLanes(Lanes8())] = {}, lastMask[hn::MaxLanes(Lanes8())] = {};
    std::copy(out + whole, out + count, lastOut);
    std::copy(mask + whole, mask + count, lastMask);
    hn::Store(combine(hn::Load(kLanes8, lastOut), hn::Load(kLanes8, lastMask)), kLanes8, lastOut);
    std::copy_n(lastOut, count - whole, out + whole);
}

// A pair of bytes is a lane of 16 bits: the even one is cut out, the odd one shifted down.
HWY_INLINE Halves EvenBytes(Bytes bytes) {
    return hn::And(hn::BitCast(kLanes16, bytes), hn::Set(kLanes16, 0xFF));
}
HWY_INLINE Halves OddBytes(Bytes bytes) {
    return hn::ShiftRight<8>(hn::BitCast(kLanes16, bytes));
}

HWY_INLINE Bytes Scaled(Bytes mask, Halves weight) {
    const Halves even = hn::ShiftRight<8>(hn::Mul(EvenBytes(mask), weight));
    const Halves odd = hn::AndNot(hn::Set(kLanes16, 0xFF), hn::Mul(OddBytes(mask), weight));
    return hn::BitCast(kLanes8, hn::Or(even, odd));
}

void ScaleMask(uint8_t* out, const uint8_t* mask, size_t count, uint32_t alpha) {
    const Halves weight = hn::Set(kLanes16, static_cast<uint16_t>(alpha + 1));
    ForRow(out, mask, count, [&](Bytes /*before*/, Bytes m) HWY_ATTR { return Scaled(m, weight); });
}

void StampMax(uint8_t* out, const uint8_t* mask, size_t count, uint32_t alpha) {
    const Halves weight = hn::Set(kLanes16, static_cast<uint16_t>(alpha + 1));
    ForRow(out, mask, count, [&](Bytes before, Bytes m) HWY_ATTR { return hn::Max(before, Scaled(m, weight)); });
}

void CoverageOfLevels(uint8_t* out, const uint8_t* mask, size_t count, uint32_t factor) {
    const Halves weight = hn::Set(kLanes16, static_cast<uint16_t>(factor));
    ForRow(out, mask, count, [&](Bytes /*before*/, Bytes m) HWY_ATTR {
        const Halves even = hn::And(hn::Mul(EvenBytes(m), weight), hn::Set(kLanes16, 0xFF));
        const Halves odd = hn::ShiftLeft<8>(hn::Mul(OddBytes(m), weight));
        const Bytes covered = hn::Sub(hn::BitCast(kLanes8, hn::Or(even, odd)), hn::Set(kLanes8, 1));
        return hn::IfThenZeroElse(hn::Eq(m, hn::Zero(kLanes8)), covered);
    });
}

void TakeMask(uint8_t* out, const uint8_t* mask, size_t count) {
    ForRow(out, mask, count, [](Bytes before, Bytes m) HWY_ATTR { return hn::Sub(before, m); });
}

void AddMask(uint8_t* out, const uint8_t* mask, size_t count) {
    ForRow(out, mask, count, [](Bytes before, Bytes m) HWY_ATTR { return hn::SaturatedAdd(before, m); });
}

const MaskKernels* Masks() {
    static constexpr MaskKernels kMasks{.ScaleMask = ScaleMask,
                                        .StampMax = StampMax,
                                        .CoverageOfLevels = CoverageOfLevels,
                                        .TakeMask = TakeMask,
                                        .AddMask = AddMask};
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
    std::vector<const MaskKernels*> all;
    ForEachVectorTarget([&] { all.push_back(HWY_DYNAMIC_DISPATCH(Masks)()); });
    return all;
}

}  // namespace captionfx
#endif
