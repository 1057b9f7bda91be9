// The loops that draw tiles, of every vector width, against the plain ones and against whole pixels.
#include "render/kernels/channel_kernels.h"

#include <gtest/gtest.h>

#include "render/kernels/pixel_placement.h"
#include "support/random_rows.h"

namespace captionfx::test {
namespace {

constexpr std::ptrdiff_t kRows = 4, kPitch = kTileColumns + kPixelPadding, kChannelPitch = kPitch * kRows;

/// Colours with channels that are equal, 0 or all different.
constexpr uint32_t kColors[] = {0x000000, 0xFFFFFF, 0x0000FF, 0x00FF00, 0xFF8080,
                                0x40FF40, 0x2020A0, 0x010203, 0x00C0C0};

/// Three planes and their numbers.
class Planes {
public:
    explicit Planes(const std::array<uint32_t, 3>& colors) : numbers_(size_t{kChannelPitch} * 12) {
        for (size_t plane = 0; plane < 3; ++plane) {
            ColorSurvey survey;
            survey.Add(colors[plane]);
            stored_[plane] = survey.Stored();
        }
    }

    [[nodiscard]] ChannelPlane Plane(size_t plane) {
        return {numbers_.data() + static_cast<std::ptrdiff_t>(plane) * 4 * kChannelPitch, kPitch, kChannelPitch,
                stored_[plane]};
    }
    [[nodiscard]] ChannelPlanes All() { return {Plane(0), Plane(1), Plane(2)}; }

    /// Some pixels hold coverage of the plane's colour, laid over other such, as drawing leaves them.
    void Fill(RandomRows& random, const std::array<uint32_t, 3>& colors) {
        for (size_t plane = 0; plane < 3; ++plane) {
            const bool isEmpty = random.Byte() == 1;
            for (std::ptrdiff_t at = 0; at < kRows * kTileColumns && !isEmpty; ++at) {
                const ChannelPlane row = Plane(plane).From(at / kTileColumns, at % kTileColumns);
                uint32_t pixel = 0;
                for (const uint32_t a : {random.Byte(), random.Byte() == 1 ? random.Byte() : 0U}) {
                    if (a != 0) pixel = PlacedOver(pixel, ColorTimesCoverage(colors[plane], a), a);
                }
                row.SetPixel(0, pixel);
            }
        }
    }

    [[nodiscard]] bool IsClean(int32_t rows, int32_t columns) {
        for (size_t plane = 0; plane < 3; ++plane) {
            for (std::ptrdiff_t at = 0; at < std::ptrdiff_t{rows} * columns; ++at) {
                if (Plane(plane).From(at / columns, at % columns).Pixel(0) != 0) return false;
            }
        }
        return true;
    }

    /// All pixels of a plane, without what lies behind its rows.
    [[nodiscard]] std::vector<uint32_t> Pixels(size_t plane) {
        std::vector<uint32_t> pixels;
        for (std::ptrdiff_t y = 0; y < kRows; ++y) {
            for (std::ptrdiff_t x = 0; x < kTileColumns; ++x) pixels.push_back(Plane(plane).From(y, x).Pixel(0));
        }
        return pixels;
    }

private:
    std::vector<uint16_t> numbers_;
    std::array<StoredColors, 3> stored_;
};

std::vector<const ChannelKernels*> AllKernels() {
    std::vector<const ChannelKernels*> all = VectorChannelKernels();
    all.push_back(&PlainChannelKernels());
    return all;
}

TEST(ChannelKernelsTest, StoresEachColourOnce) {
    const auto stored = [](std::initializer_list<uint32_t> colors) {
        ColorSurvey survey;
        for (const uint32_t color : colors) survey.Add(color);
        return survey.Stored();
    };
    EXPECT_EQ(stored({0}).Count, 0);
    EXPECT_EQ(stored({0xFFFFFF, 0x808080, 0}).Count, 1);
    EXPECT_EQ(stored({0xFF0000}).Count, 1);
    EXPECT_EQ(stored({0xFF0000, 0x00FF00}).Count, 2);
    EXPECT_EQ(stored({0xFF00FF, 0x800080}).Of, (std::array<uint8_t, 3>{0, StoredColors::kNone, 0}));
    EXPECT_EQ(stored({0xFFFFFF, 0x0000FF}).Count, 2);
    EXPECT_EQ(stored({0x102030}).ValuesOf(0x102030), (std::array<uint16_t, 3>{0x30, 0x20, 0x10}));
}

TEST(ChannelKernelsTest, PlacementsAreThoseOfPixels) {
    RandomRows random;
    for (int32_t round = 0; round < 1500; ++round) {
        const std::array<uint32_t, 3> colors{kColors[static_cast<size_t>(round) % std::size(kColors)], 0, 0};
        const int32_t width = 1 + round % 70;
        const CoverageLayer layer = RandomCoverage(random, width, kRows - 1);
        CoveragePlacement placement = random.Placement();
        placement.Color = colors[0];
        // Somewhere in the tile, or cut by one of its sides.
        const int32_t column = round % 3 == 0 ? -width / 2 : kTileColumns - 1 - round % 90;
        const CoverageRows rows{.Samples = layer.Row(-1),
                                .Spans = layer.PlacedSpans(0),
                                .Pitch = layer.Pitch(),
                                .Count = kRows,
                                .Left = std::max(0, -column),
                                .Right = std::min(width + 1, kTileColumns - column),
                                .Column = column};
        Planes before(colors);
        before.Fill(random, colors);
        std::vector<uint32_t> expected = before.Pixels(0);
        PlainRowKernels().PlaceCoverage(expected.data(), kTileColumns, rows, placement);
        for (const ChannelKernels* kernels : AllKernels()) {
            Planes planes = before;
            kernels->Place(planes.Plane(0), rows, placement);
            const std::vector<uint32_t> actual = planes.Pixels(0);
            const auto [want, got] = std::ranges::mismatch(expected, actual);
            ASSERT_EQ(want, expected.end()) << "round " << round << ", pixel " << (want - expected.begin()) << std::hex
                                            << ": " << *got << " instead of " << *want;
        }
    }
}

TEST(ChannelKernelsTest, PlacementsOfManyColoursAreThePlainOnes) {
    RandomRows random;
    const std::array<uint32_t, 3> colors{0x102030, 0, 0};
    for (int32_t round = 0; round < 500; ++round) {
        const int32_t width = 1 + round % 70, height = 1 + round % 3;
        const std::vector<uint32_t> bitmap =
            random.Row(static_cast<size_t>(width) * static_cast<size_t>(height), false);
        CoveragePlacement placement = random.Placement();
        if (placement.W11 == kWholeSample) placement.W11 = 65356;
        const int32_t column = round % 3 == 0 ? -width / 2 : kTileColumns - 1 - round % 90;
        const PixelRows rows{.Pixels = bitmap.data(),
                             .Width = width,
                             .Height = height,
                             .First = round % 2,
                             .Count = height + 1 - round % 2,
                             .Left = std::max(0, -column),
                             .Right = std::min(width + 1, kTileColumns - column),
                             .Column = column};
        Planes before(colors);
        before.Fill(random, colors);
        Planes plain = before;
        PlacePixelsPlain(plain.Plane(0), rows, placement);
        for (PixelPlacement* const place : VectorPixelPlacements()) {
            Planes planes = before;
            place(planes.Plane(0), rows, placement);
            ASSERT_EQ(planes.Pixels(0), plain.Pixels(0)) << "round " << round;
        }
    }
}

TEST(ChannelKernelsTest, FinishedTilesAreThoseOfThreeSteps) {
    RandomRows random;
    for (size_t round = 0; round < 600; ++round) {
        const auto color = [&] { return kColors[random.Byte() % std::size(kColors)]; };
        const std::array<uint32_t, 3> colors{color(), color(), color()};
        const auto columns = static_cast<int32_t>(round % 7 == 0 ? size_t{kTileColumns} : 1 + round % 80);
        const int32_t rows = 1 + static_cast<int32_t>(round % kRows);
        Planes before(colors);
        before.Fill(random, colors);
        const std::vector<uint32_t> face = before.Pixels(0), border = before.Pixels(1), shadow = before.Pixels(2);
        const auto count = static_cast<size_t>(columns);
        const std::vector<uint32_t> below = random.Row(count * static_cast<size_t>(rows) + 1, false);
        std::vector<uint32_t> image(below.size(), below.back()), straight = below, premultiplied = below;
        for (size_t y = 0; y < static_cast<size_t>(rows); ++y) {
            const size_t inPlane = y * kTileColumns, at = y * count;
            std::copy_n(shadow.data() + inPlane, count, image.data() + at);
            std::vector<uint32_t> body(border.data() + inPlane, border.data() + inPlane + count);
            PlainRowKernels().MergeFaceOverBorder(body.data(), face.data() + inPlane, count);
            PlainRowKernels().CompositePremultipliedOnto(image.data() + at, body.data(), count);
        }
        const size_t pixels = count * static_cast<size_t>(rows);
        PlainRowKernels().CompositePremultiplied(straight.data(), image.data(), pixels);
        PlainRowKernels().CompositePremultipliedOnto(premultiplied.data(), image.data(), pixels);
        for (const ChannelKernels* kernels : AllKernels()) {
            const auto expect = [&](auto finish, const std::vector<uint32_t>& expected) {
                Planes planes = before;
                std::vector<uint32_t> actual = below;
                finish(actual.data(), columns, planes.All(), rows, columns);
                const auto [want, got] = std::ranges::mismatch(expected, actual);
                ASSERT_EQ(want, expected.end())
                    << "round " << round << ", pixel " << (want - expected.begin()) << " of rows of " << columns
                    << std::hex << ": " << *got << " instead of " << *want;
                ASSERT_TRUE(planes.IsClean(rows, columns)) << "for the next string";
            };
            expect(kernels->Merge, image);
            expect(kernels->FinishStraight, straight);
            expect(kernels->FinishPremultiplied, premultiplied);
            if (HasFatalFailure()) return;
        }
    }
}

TEST(ChannelKernelsTest, MergesAllPairsOfFaceAndBorder) {
    // A border of gray is divided by its alpha, one of white need not be.
    for (const uint32_t borderColor : {0x7F7F7FU, 0xFFFFFFU}) {
        const std::array<uint32_t, 3> colors{0xFFFFFF, borderColor, 0};
        for (const ChannelKernels* kernels : VectorChannelKernels()) {
            for (uint32_t fa = 0; fa < 256; ++fa) {
                Planes planes(colors);
                std::vector<uint32_t> expected(256), actual(256);
                for (uint32_t ba = 0; ba < 256; ++ba) {
                    const uint32_t face = WithAlpha(ColorTimesCoverage(colors[0], fa), fa),
                                   border = ba == 0 ? 0 : WithAlpha(ColorTimesCoverage(colors[1], ba), ba);
                    planes.Plane(0).SetPixel(ba, fa == 0 ? 0 : face);
                    planes.Plane(1).SetPixel(ba, border);
                    expected[ba] = FaceOverBorder(fa == 0 ? 0 : face, border);
                }
                kernels->Merge(actual.data(), 256, planes.All(), 1, 256);
                ASSERT_EQ(actual, expected) << "face of " << fa;
            }
        }
    }
}

}  // namespace
}  // namespace captionfx::test
