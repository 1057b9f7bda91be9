// Laying coverage over planes of single channels, in vectors.
//
// Part of files that Highway compiles once for each width, and included by them again each time.
#if defined(CAPTIONFX_CHANNEL_LANES_INL_H_) == defined(HWY_TARGET_TOGGLE)
#ifdef CAPTIONFX_CHANNEL_LANES_INL_H_
#undef CAPTIONFX_CHANNEL_LANES_INL_H_
#else
#define CAPTIONFX_CHANNEL_LANES_INL_H_
#endif

#include <hwy/highway.h>

#include "render/kernels/pixel_lanes-inl.h"

HWY_BEFORE_NAMESPACE();
namespace captionfx::HWY_NAMESPACE {

#if HWY_TARGET != HWY_SCALAR

// PlacedOver, channel by channel, where coverage a is laid over a plane: `left` is 256 - a, `weight` is a + 1. Alpha,
// there 255 less what is left of 255 less it, is a sum that is cut once. No colour is above its alpha, so that no sum
// exceeds 255.
HWY_INLINE void PlaceAlpha(uint16_t* alpha, Halves left, Halves weight) {
    const Halves full = hn::Sub(hn::ShiftLeft<8>(weight), weight);
    hn::StoreU(hn::ShiftRight<8>(hn::Add(hn::Mul(hn::LoadU(kLanes16, alpha), left), full)), kLanes16, alpha);
}
HWY_INLINE void PlaceColor(uint16_t* channel, Halves left, Halves weight, Halves value) {
    const Halves kept = hn::ShiftRight<8>(hn::Mul(hn::LoadU(kLanes16, channel), left));
    hn::StoreU(hn::Add(kept, hn::MulHigh(value, weight)), kLanes16, channel);
}

#endif

}  // namespace captionfx::HWY_NAMESPACE
HWY_AFTER_NAMESPACE();

#endif
