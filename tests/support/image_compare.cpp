#include "support/image_compare.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>

#include "tools/png_file.h"

namespace captionfx::test {
namespace {

constexpr uint32_t kOpaque = 0xFF000000, kEnlarged = 8;

struct Difference {
    size_t Count = 0, First = 0;
    uint32_t Largest = 0;
    std::vector<uint32_t> Picture;
};

Difference Compare(std::span<const uint32_t> expected, std::span<const uint32_t> actual) {
    Difference difference;
    for (size_t i = 0; i < actual.size(); ++i) {
        uint32_t shown = kOpaque, largest = 0;
        for (const uint32_t shift : {0U, 8U, 16U, 24U}) {
            const auto a = static_cast<int32_t>(expected[i] >> shift & 255U);
            const auto b = static_cast<int32_t>(actual[i] >> shift & 255U);
            const auto gap = static_cast<uint32_t>(std::abs(a - b));
            largest = std::max(largest, gap);
            shown |= std::min(gap * kEnlarged, 255U) << (shift == 24 ? 0U : shift);  // alpha shows as blue
        }
        difference.Picture.push_back(shown);
        if (largest == 0) continue;
        if (difference.Count++ == 0) difference.First = i;
        difference.Largest = std::max(difference.Largest, largest);
    }
    return difference;
}

}  // namespace

testing::AssertionResult MatchesGolden(const std::string& name, std::span<const uint32_t> pixels, int32_t width,
                                       int32_t height) {
    namespace fs = std::filesystem;
    const fs::path golden = fs::path(CAPTIONFX_GOLDEN_FRAMES) / (name + ".png");
    if (std::getenv("CAPTIONFX_ACCEPT_GOLDEN") != nullptr) {
        WritePng(golden, pixels, width, height);
        return testing::AssertionFailure() << golden << " was written: look at it, and run again without the variable";
    }
    const fs::path output(CAPTIONFX_TEST_OUTPUT);
    fs::create_directories(output);
    const fs::path actual = output / (name + ".actual.png");
    if (!fs::exists(golden)) {
        WritePng(actual, pixels, width, height);
        return testing::AssertionFailure() << "no golden frame " << golden << "; the frame is in " << actual;
    }
    const PngImage expected = ReadPng(golden);
    if (expected.width != width || expected.height != height) {
        return testing::AssertionFailure() << golden << " is " << expected.width << " by " << expected.height;
    }
    const Difference difference = Compare(expected.pixels, pixels);
    if (difference.Count == 0) return testing::AssertionSuccess();
    WritePng(actual, pixels, width, height);
    WritePng(output / (name + ".difference.png"), difference.Picture, width, height);
    return testing::AssertionFailure() << difference.Count << " pixels differ from " << golden << ", by "
                                       << difference.Largest << " at most, first at ("
                                       << difference.First % static_cast<size_t>(width) << ", "
                                       << difference.First / static_cast<size_t>(width) << "): see " << actual;
}

}  // namespace captionfx::test
