// Compares the scenes of two folders, and says how far apart they are. Characters stand at the same places, to 0.01
// pixel. Where all masks are the same, so are all pixels. Where masks differ, because one system hints a face that has
// no instructions and the other does not, edges may differ by a little.
//
//     captionfx_compare_scenes TITLE FOLDER FOLDER DIFFERENCES     pictures of differences, eight times enlarged
#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "systems/scenes.h"
#include "tools/png_file.h"

namespace captionfx::test {
namespace {

namespace fs = std::filesystem;

constexpr float kSamePlacePx = 0.01F;
// Masks of such faces differ in 1.4 % of their pixels and by 11 of 64 levels at most; every pixel of a character passes
// through two of them, since characters stand between whole pixels.
constexpr double kMostPixels = 0.05;  // of those that the title touches
constexpr int32_t kLargestStep = 64;  // of 255

struct CharacterFacts {
    float x, y, width, height;
    uint64_t mask;
};

std::vector<CharacterFacts> ReadFacts(const fs::path& file) {
    std::ifstream stream(file);
    std::vector<CharacterFacts> facts;
    for (CharacterFacts c{}; stream >> c.x >> c.y >> c.width >> c.height >> c.mask;) facts.push_back(c);
    if (facts.empty()) throw std::runtime_error("nothing in " + file.string());
    return facts;
}

float LargestGap(const CharacterFacts& a, const CharacterFacts& b) {
    return std::max(
        {std::abs(a.x - b.x), std::abs(a.y - b.y), std::abs(a.width - b.width), std::abs(a.height - b.height)});
}

struct PixelGaps {
    size_t different = 0, touched = 0;
    int32_t largest = 0;
};

PixelGaps ComparePixels(const fs::path& one, const fs::path& other, const fs::path& picture) {
    const PngImage a = ReadPng(one), b = ReadPng(other);
    if (a.pixels.size() != b.pixels.size()) throw std::runtime_error("other size: " + one.string());
    PixelGaps gaps;
    std::vector<uint32_t> shown;
    const uint32_t ground = a.pixels.back();
    for (size_t i = 0; i < a.pixels.size(); ++i) {
        uint32_t enlarged = 0xFF000000;
        int32_t largest = 0;
        for (const uint32_t shift : {0U, 8U, 16U}) {
            const int32_t gap = std::abs(static_cast<int32_t>(a.pixels[i] >> shift & 255U) -
                                         static_cast<int32_t>(b.pixels[i] >> shift & 255U));
            largest = std::max(largest, gap);
            enlarged |= static_cast<uint32_t>(std::min(gap * 8, 255)) << shift;
        }
        gaps.different += largest > 0 ? 1 : 0;
        gaps.touched += a.pixels[i] != ground || b.pixels[i] != ground ? 1 : 0;
        gaps.largest = std::max(gaps.largest, largest);
        shown.push_back(enlarged);
    }
    if (gaps.touched == 0) throw std::runtime_error("nothing is drawn: " + one.string());
    if (gaps.different > 0) WritePng(picture, shown, a.width, a.height);
    return gaps;
}

/// Prints the line of a scene. Whether the two agree.
bool Agree(const std::string& scene, const fs::path& one, const fs::path& other, const fs::path& differences) {
    const std::vector<CharacterFacts> a = ReadFacts(one / (scene + ".txt")), b = ReadFacts(other / (scene + ".txt"));
    if (a.size() != b.size()) throw std::runtime_error("other text: " + scene);
    float place = 0;
    size_t masks = 0;
    for (size_t i = 0; i < a.size(); ++i) {
        place = std::max(place, LargestGap(a[i], b[i]));
        masks += a[i].mask != b[i].mask ? 1 : 0;
    }
    const PixelGaps gaps =
        ComparePixels(one / (scene + ".png"), other / (scene + ".png"), differences / (scene + ".png"));
    const double share = static_cast<double>(gaps.different) / static_cast<double>(gaps.touched);
    const bool isSameWhereItMustBe = masks > 0 || gaps.different == 0;
    const bool agrees =
        place <= kSamePlacePx && isSameWhereItMustBe && share <= kMostPixels && gaps.largest <= kLargestStep;
    std::printf("  %-11s %3zu   %7.4f   %3zu   %6.2f %%   %3d   %s\n", scene.c_str(), a.size(),
                static_cast<double>(place), masks, share * 100, gaps.largest, agrees ? "" : "TOO FAR APART");
    return agrees;
}

}  // namespace
}  // namespace captionfx::test

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    using namespace captionfx::test;
    if (argc != 5) return 2;
    try {
        fs::create_directories(argv[4]);
        std::printf("%s\n  scene     characters  apart px  masks  pixels  largest step\n", argv[1]);
        bool agree = true;
        for (const Scene& scene : Scenes()) agree = Agree(scene.name, argv[2], argv[3], argv[4]) && agree;
        return agree ? 0 : 1;
    } catch (const std::exception& error) {
        std::fprintf(stderr, "captionfx_compare_scenes: %s\n", error.what());
        return 1;
    }
}
