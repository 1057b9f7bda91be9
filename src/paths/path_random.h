// The random numbers of the effects. The frame seeds them with 1 before every pass, so that a string draws the same
// sequence in every frame; the state belongs to the thread, since titles may be drawn on several at once.
#pragma once

#include <cstdint>

namespace captionfx {

inline constexpr uint32_t kPathRandomMax = 32767;

namespace detail {
inline thread_local uint32_t pathRandomState = 1;
}

inline void SeedPathRandom(uint32_t seed) {
    detail::pathRandomState = seed;
}

/// The next number, 0 to kPathRandomMax, of the linear congruential generator s = 214013 s + 2531011.
[[nodiscard]] inline int32_t NextPathRandom() {
    detail::pathRandomState = detail::pathRandomState * 214013U + 2531011U;
    return static_cast<int32_t>((detail::pathRandomState >> 16U) & kPathRandomMax);
}

}  // namespace captionfx
