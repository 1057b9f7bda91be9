// The row loops over masks, of every vector width, against the plain ones.
#include "render/kernels/mask_kernels.h"

#include <functional>
#include <random>

#include <gtest/gtest.h>

namespace captionfx::test {
namespace {

using Row = std::vector<uint8_t>;

constexpr size_t kMostBytes = 200, kGuard = 5;  // several of the widest vectors, and none of them aligned

Row RandomRow(std::mt19937& random, size_t count) {
    constexpr uint8_t kExtreme[] = {0, 0, 1, 64, 127, 128, 254, 255};
    Row row(count + 2 * kGuard);
    for (uint8_t& byte : row) {
        byte = random() % 2 == 0 ? kExtreme[random() % std::size(kExtreme)] : static_cast<uint8_t>(random());
    }
    return row;
}

TEST(MaskKernelsTest, AllWidthsGiveThePlainBytes) {
    const std::vector<const MaskKernels*> all = VectorMaskKernels();
    ASSERT_FALSE(all.empty());
    std::mt19937 random(3);
    for (size_t round = 0; round < 5 * kMostBytes; ++round) {
        const size_t count = round % (kMostBytes + 1);
        const Row mask = RandomRow(random, count), before = RandomRow(random, count);
        const uint32_t alpha = round % 3 == 0 ? 255 : static_cast<uint32_t>(random() % 256);
        const uint32_t factor = 1 + static_cast<uint32_t>(random() % 256);
        using Change = std::function<void(const MaskKernels&, uint8_t* out, const uint8_t* mask)>;
        const Change changes[] = {
            [&](const MaskKernels& k, uint8_t* out, const uint8_t* m) { k.ScaleMask(out, m, count, alpha); },
            [&](const MaskKernels& k, uint8_t* out, const uint8_t* m) { k.StampMax(out, m, count, alpha); },
            [&](const MaskKernels& k, uint8_t* out, const uint8_t* m) { k.CoverageOfLevels(out, m, count, factor); },
            [&](const MaskKernels& k, uint8_t* out, const uint8_t* m) { k.TakeMask(out, m, count); },
            [&](const MaskKernels& k, uint8_t* out, const uint8_t* m) { k.AddMask(out, m, count); },
        };
        for (size_t change = 0; change < std::size(changes); ++change) {
            Row expected = before;
            changes[change](PlainMaskKernels(), expected.data() + kGuard, mask.data() + kGuard);
            for (size_t width = 0; width < all.size(); ++width) {
                Row actual = before;
                changes[change](*all[width], actual.data() + kGuard, mask.data() + kGuard);
                ASSERT_EQ(actual, expected) << "loop no. " << change << ", width no. " << width << ", " << count
                                            << " bytes, alpha " << alpha << ", factor " << factor;
            }
        }
    }
}

TEST(MaskKernelsTest, SpansAreThePlainOnes) {
    constexpr size_t kZeros = CoverageLayer::kPadding;
    std::mt19937 random(5);
    for (size_t round = 0; round < 2000; ++round) {
        const auto width = static_cast<int32_t>(1 + random() % 100);
        Row row(static_cast<size_t>(width) + 2 * kZeros);
        const size_t first = random() % static_cast<size_t>(width),
                     count = random() % (static_cast<size_t>(width) - first + 1);
        for (size_t i = 0; i < count; ++i) row[kZeros + first + i] = static_cast<uint8_t>(random() % 3);
        const ColumnSpan expected = PlainMaskKernels().FindSpan(row.data() + kZeros, width);
        for (const MaskKernels* kernels : VectorMaskKernels()) {
            const ColumnSpan actual = kernels->FindSpan(row.data() + kZeros, width);
            ASSERT_EQ(actual.First, expected.First) << width;
            ASSERT_EQ(actual.End, expected.End) << width;
        }
    }
}

TEST(MaskKernelsTest, WhatTheLoopsMean) {
    const MaskKernels& kernels = BestMaskKernels();
    const Row mask = {0, 1, 16, 17, 255};
    Row out(5);
    kernels.CoverageOfLevels(out.data(), mask.data(), 5, 16);
    EXPECT_EQ(out, (Row{0, 15, 255, 15, 239}));  // 17 levels of 16 are one too many: 271 wraps, 4079 as well
    kernels.ScaleMask(out.data(), mask.data(), 5, 127);
    EXPECT_EQ(out, (Row{0, 0, 8, 8, 127}));  // the half of it, cut
    out = {7, 7, 7, 7, 200};
    kernels.StampMax(out.data(), mask.data(), 5, 127);
    EXPECT_EQ(out, (Row{7, 7, 8, 8, 200}));
    kernels.TakeMask(out.data(), mask.data(), 5);
    EXPECT_EQ(out, (Row{7, 6, 248, 247, 201}));
    kernels.AddMask(out.data(), mask.data(), 5);
    EXPECT_EQ(out, (Row{7, 7, 255, 255, 255}));
    const Row padded = [] {
        Row row(2 * CoverageLayer::kPadding + 5);
        row[CoverageLayer::kPadding + 1] = row[CoverageLayer::kPadding + 3] = 9;
        return row;
    }();
    const ColumnSpan span = kernels.FindSpan(padded.data() + CoverageLayer::kPadding, 5);
    EXPECT_EQ(span.First, 1);
    EXPECT_EQ(span.End, 4);
}

}  // namespace
}  // namespace captionfx::test
