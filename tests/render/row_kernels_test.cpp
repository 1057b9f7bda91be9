// The row loops of every vector width against the plain ones.
#include "render/kernels/row_kernels.h"

#include <algorithm>
#include <functional>

#include <gtest/gtest.h>

#include "support/random_rows.h"

namespace captionfx::test {
namespace {

constexpr size_t kMostPixels = 80, kGuard = 3;

/// Runs both on the same row between guards, and says what differs.
void Compare(const std::vector<uint32_t>& row, const std::function<void(uint32_t*)>& plain,
             const std::function<void(uint32_t*)>& vectors, size_t width) {
    std::vector<uint32_t> guarded(kGuard, 0x5A5A5A5A);
    guarded.insert(guarded.end(), row.begin(), row.end());
    guarded.resize(row.size() + 2 * kGuard, 0x5A5A5A5A);
    std::vector<uint32_t> expected = guarded, actual = guarded;
    plain(expected.data() + kGuard);
    vectors(actual.data() + kGuard);
    const auto [want, got] = std::ranges::mismatch(expected, actual);
    ASSERT_EQ(want, expected.end()) << "pixel " << want - expected.begin() - static_cast<int>(kGuard) << " of "
                                    << row.size() << ", width no. " << width << std::hex << ": " << *got
                                    << " instead of " << *want << ", was "
                                    << guarded[static_cast<size_t>(want - expected.begin())];
}

TEST(RowKernelsTest, AllWidthsGiveThePlainBytes) {
    const std::vector<const RowKernels*> all = VectorRowKernels();
    ASSERT_FALSE(all.empty());
    const RowKernels& plain = PlainRowKernels();
    RandomRows random;
    using Blend = void (*RowKernels::*)(uint32_t*, const uint32_t*, size_t);
    using Change = void (*RowKernels::*)(uint32_t*, size_t);
    constexpr Blend kBlends[] = {&RowKernels::MergeFaceOverBorder, &RowKernels::CompositeStraight,
                                 &RowKernels::CompositePremultiplied, &RowKernels::CompositePremultipliedOnto};
    constexpr Change kChanges[] = {&RowKernels::Premultiply, &RowKernels::Unpremultiply};
    for (size_t round = 0; round < 20 * kMostPixels; ++round) {
        const size_t count = round % (kMostPixels + 1);
        const std::vector<uint32_t> row = random.Row(count, false), source = random.Row(count, false);
        for (size_t width = 0; width < all.size(); ++width) {
            const auto compare = [&](const auto& pixels, const auto& run) {
                Compare(
                    pixels, [&](uint32_t* out) { run(plain, out); }, [&](uint32_t* out) { run(*all[width], out); },
                    width);
            };
            for (const Blend blend : kBlends) {
                compare(row, [&](const RowKernels& rows, uint32_t* out) { (rows.*blend)(out, source.data(), count); });
            }
            for (const Change change : kChanges) {
                compare(row, [&](const RowKernels& rows, uint32_t* out) { (rows.*change)(out, count); });
            }
            if (HasFatalFailure()) return;
        }
    }
}

TEST(RowKernelsTest, PlacementsAreThePlainOnes) {
    constexpr int32_t kPadding = 3;
    RandomRows random;
    for (int32_t round = 0; round < 1500; ++round) {
        const int32_t width = 1 + round % 60, height = 1 + round % 5;
        const CoverageLayer layer = RandomCoverage(random, width, height);
        const CoveragePlacement placement = random.Placement();
        // All of the layer, with its fraction, or a part of it.
        const bool isWhole = round % 3 != 0;
        const int32_t left = isWhole ? 0 : round % width, right = isWhole ? width + 1 : left + (width + 1 - left) / 2;
        const auto pitch = static_cast<std::ptrdiff_t>(width) + 1 + kPadding;
        const CoverageRows rows{.Samples = layer.Row(-1),
                                .Spans = layer.PlacedSpans(0),
                                .Pitch = layer.Pitch(),
                                .Count = height + 1,
                                .Left = left,
                                .Right = right,
                                .Column = 0};
        const std::vector<uint32_t> plane = random.Row(static_cast<size_t>(pitch * (height + 1)), true);
        std::vector<uint32_t> expected = plane;
        PlainRowKernels().PlaceCoverage(expected.data(), pitch, rows, placement);
        for (const RowKernels* kernels : VectorRowKernels()) {
            std::vector<uint32_t> actual = plane;
            kernels->PlaceCoverage(actual.data(), pitch, rows, placement);
            const auto [want, got] = std::ranges::mismatch(expected, actual);
            ASSERT_EQ(want, expected.end())
                << "round " << round << ", pixel " << (want - expected.begin()) % pitch << " of row "
                << (want - expected.begin()) / pitch << std::hex << ": " << *got << " instead of " << *want;
        }
    }
}

TEST(RowKernelsTest, UnpremultiplyAllPairs) {
    for (const RowKernels* rows : VectorRowKernels()) {
        for (uint32_t a = 0; a < 256; ++a) {
            std::vector<uint32_t> expected(256), actual;
            for (uint32_t c = 0; c < 256; ++c) expected[c] = a << 24U | c << 16U | (255 - c) << 8U | c;
            actual = expected;
            PlainRowKernels().Unpremultiply(expected.data(), 256);
            rows->Unpremultiply(actual.data(), 256);
            ASSERT_EQ(expected, actual) << a;
        }
    }
}

}  // namespace
}  // namespace captionfx::test
