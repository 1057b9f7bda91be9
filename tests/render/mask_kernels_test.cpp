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
    Row row(count);
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
        const size_t width = round % (kMostBytes + 1), height = 1 + round % 3;
        const size_t outPitch = width + kGuard, maskPitch = width + 2 * kGuard;
        const Row mask = RandomRow(random, kGuard + maskPitch * height),
                  before = RandomRow(random, kGuard + outPitch * height);
        const auto rowsOf = [&](Row& out) {
            return MaskRows{.Out = out.data() + kGuard,
                            .OutPitch = static_cast<ptrdiff_t>(outPitch),
                            .Mask = mask.data() + kGuard,
                            .MaskPitch = static_cast<ptrdiff_t>(maskPitch),
                            .Width = width,
                            .Height = static_cast<int32_t>(height)};
        };
        const uint32_t alpha = round % 3 == 0 ? 255 : static_cast<uint32_t>(random() % 256);
        const uint32_t factor = 1 + static_cast<uint32_t>(random() % 256);
        using Change = std::function<void(const MaskKernels&, const MaskRows&)>;
        const Change changes[] = {
            [&](const MaskKernels& k, const MaskRows& rows) { k.ScaleMask(rows, alpha); },
            [&](const MaskKernels& k, const MaskRows& rows) { k.StampMax(rows, alpha); },
            [&](const MaskKernels& k, const MaskRows& rows) { k.CoverageOfLevels(rows, factor); },
            [&](const MaskKernels& k, const MaskRows& rows) { k.TakeMask(rows); },
            [&](const MaskKernels& k, const MaskRows& rows) { k.AddMask(rows); },
        };
        for (size_t change = 0; change < std::size(changes); ++change) {
            Row expected = before;
            changes[change](PlainMaskKernels(), rowsOf(expected));
            for (size_t kind = 0; kind < all.size(); ++kind) {
                Row actual = before;
                changes[change](*all[kind], rowsOf(actual));
                ASSERT_EQ(actual, expected) << "loop no. " << change << ", width no. " << kind << ", rows of " << width
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
    const auto rows = [&] { return MaskRows{out.data(), 0, mask.data(), 0, 5, 1}; };
    kernels.CoverageOfLevels(rows(), 16);
    EXPECT_EQ(out, (Row{0, 15, 255, 15, 239}));  // 17 levels of 16 are one too many: 271 wraps, 4079 as well
    kernels.ScaleMask(rows(), 127);
    EXPECT_EQ(out, (Row{0, 0, 8, 8, 127}));  // the half of it, cut
    out = {7, 7, 7, 7, 200};
    kernels.StampMax(rows(), 127);
    EXPECT_EQ(out, (Row{7, 7, 8, 8, 200}));
    kernels.TakeMask(rows());
    EXPECT_EQ(out, (Row{7, 6, 248, 247, 201}));
    kernels.AddMask(rows());
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
