// Eight pixels at a time with AVX2, 16 bits a channel; eight of no coverage are passed over.
#include "peers/blend.h"

#include <algorithm>
#include <array>
#include <immintrin.h>

namespace captionfx::peers {
namespace {

constexpr int32_t kStep = 8;  // pixels

/// (x + 127) / 255 or nearly so, for x up to 255 * 255, in each of 16 lanes.
__m256i DividedBy255(__m256i x) {
    const __m256i rounded = _mm256_add_epi16(x, _mm256_set1_epi16(128));
    return _mm256_srli_epi16(_mm256_add_epi16(rounded, _mm256_srli_epi16(rounded, 8)), 8);
}

struct Ink {
    __m256i color;  // of four pixels, a channel in 16 bits
    __m256i alpha;  // in 16 lanes
};

/// Four pixels in 16-bit channels, `weight` in each channel of its pixel.
__m256i Mixed(__m256i pixels, __m256i weight, const Ink& ink) {
    const __m256i rest = _mm256_sub_epi16(_mm256_set1_epi16(255), weight);
    return DividedBy255(_mm256_add_epi16(_mm256_mullo_epi16(pixels, rest), _mm256_mullo_epi16(ink.color, weight)));
}

void BlendEight(uint32_t* pixels, const uint8_t* coverage, const Ink& ink) {
    const __m128i bytes = _mm_loadl_epi64(reinterpret_cast<const __m128i*>(coverage));
    if (_mm_testz_si128(bytes, bytes) != 0) return;
    // Pixels 0, 1, 4, 5 go into the lower unpacking, 2, 3, 6, 7 into the upper one: unpacking works in halves.
    const __m256i spread = _mm256_broadcastq_epi64(bytes);
    const __m256i each = _mm256_setr_epi8(0, 0, 0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3, 3, 3, 4, 4, 4, 4, 5, 5, 5, 5, 6, 6,
                                          6, 6, 7, 7, 7, 7);
    const __m256i channels = _mm256_shuffle_epi8(spread, each), zero = _mm256_setzero_si256();
    const auto weightOf = [&](__m256i wide) { return DividedBy255(_mm256_mullo_epi16(wide, ink.alpha)); };
    auto* const at = reinterpret_cast<__m256i*>(pixels);
    const __m256i before = _mm256_loadu_si256(at);
    const __m256i low = Mixed(_mm256_unpacklo_epi8(before, zero), weightOf(_mm256_unpacklo_epi8(channels, zero)), ink);
    const __m256i high = Mixed(_mm256_unpackhi_epi8(before, zero), weightOf(_mm256_unpackhi_epi8(channels, zero)), ink);
    _mm256_storeu_si256(at, _mm256_packus_epi16(low, high));
}

}  // namespace

void BlendCoverage(uint32_t* pixels, ptrdiff_t pixelStride, const Coverage& coverage, uint32_t color, uint32_t alpha) {
    const __m128i opaque = _mm_cvtsi32_si128(static_cast<int32_t>(color | 0xFF000000U));
    const Ink ink{_mm256_cvtepu8_epi16(_mm_broadcastd_epi32(opaque)), _mm256_set1_epi16(static_cast<int16_t>(alpha))};
    for (int32_t y = 0; y < coverage.height; ++y) {
        uint32_t* const row = pixels + y * pixelStride;
        const uint8_t* const in = coverage.bytes + y * coverage.stride;
        int32_t x = 0;
        for (; x + kStep <= coverage.width; x += kStep) BlendEight(row + x, in + x, ink);
        if (x == coverage.width) continue;
        // The last row of a bitmap may end with its last pixel.
        std::array<uint8_t, kStep> lastCoverage{};
        std::array<uint32_t, kStep> lastPixels{};
        const auto rest = static_cast<size_t>(coverage.width - x);
        std::copy_n(in + x, rest, lastCoverage.begin());
        std::copy_n(row + x, rest, lastPixels.begin());
        BlendEight(lastPixels.data(), lastCoverage.data(), ink);
        std::copy_n(lastPixels.begin(), rest, row + x);
    }
}

}  // namespace captionfx::peers
