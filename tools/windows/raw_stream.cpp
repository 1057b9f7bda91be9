#include "tools/windows/raw_stream.h"

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <stdexcept>
#include <string>
#include <string_view>
#include <system_error>

#include "tools/format.h"

namespace captionfx {
namespace {

void WriteOut(const void* bytes, size_t size) {
    if (std::fwrite(bytes, 1, size, stdout) != size)
        throw std::runtime_error("cannot write '-': " + std::generic_category().message(errno));
}

void WriteOut(std::string_view text) {
    WriteOut(text.data(), text.size());
}

void Flush() {
    if (std::fflush(stdout) != 0)
        throw std::runtime_error("cannot write '-': " + std::generic_category().message(errno));
}

/// "25:1", "30000:1001" for 29.97.
std::string RateText(float rate) {
    constexpr double kNtsc = 1.001, kThousand = 1000;
    const auto wide = static_cast<double>(rate);
    const double whole = std::round(wide), ntsc = std::round(wide * kNtsc);
    if (std::abs(wide - whole) < 1e-4) return Format("%.0f:1", whole);
    if (std::abs(wide * kNtsc - ntsc) < 1e-4) return Format("%.0f:1001", ntsc * kThousand);
    return Format("%.0f:1000", wide * kThousand);
}

/// Of one pixel or of the mean of several, 0..255.
struct Color {
    double red, green, blue;

    Color& operator+=(const Color& other) {
        red += other.red;
        green += other.green;
        blue += other.blue;
        return *this;
    }
    [[nodiscard]] Color Times(double factor) const { return {red * factor, green * factor, blue * factor}; }
};

Color ColorOf(uint32_t pixel) {
    const auto channel = [pixel](unsigned shift) { return static_cast<double>(pixel >> shift & 0xFFU); };
    return {channel(16), channel(8), channel(0)};
}

constexpr double kRedWeight = 0.2126, kBlueWeight = 0.0722;  // BT.709

double Luma(const Color& color) {
    return kRedWeight * color.red + (1 - kRedWeight - kBlueWeight) * color.green + kBlueWeight * color.blue;
}

uint8_t LumaByte(const Color& color) {
    return static_cast<uint8_t>(std::lround(16 + Luma(color) * 219 / 255));
}

/// `difference` is a colour less luma, up to 255 * (1 - weight) to both sides.
uint8_t ChromaByte(double difference, double weight) {
    return static_cast<uint8_t>(std::lround(128 + difference / (2 * (1 - weight)) * 224 / 255));
}

/// The colour of two rows by columns x - 1, x and x + 1, in which x counts twice: chroma stands beside the left column
/// of its two.
Color ChromaColor(const uint32_t* pixels, int32_t width, int32_t x, int32_t y) {
    Color sum{};
    for (int32_t row = y; row < y + 2; ++row) {
        const uint32_t* const line = pixels + static_cast<ptrdiff_t>(row) * width;
        sum += ColorOf(line[std::max(x - 1, 0)]);
        sum += ColorOf(line[x]).Times(2);
        sum += ColorOf(line[x + 1]);
    }
    return sum.Times(1.0 / 8);
}

}  // namespace

void BgraStream::Put(const Frame& frame) {
    WriteOut(frame.pixels.data(), frame.pixels.size() * sizeof(uint32_t));
}

void BgraStream::Finish() {
    Flush();
}

Y4mStream::Y4mStream(const FilmSetup& setup) : size_(setup.size) {
    if (setup.isTransparent)
        throw std::runtime_error("y4m cannot be transparent: give --background RRGGBB, or --format bgra");
    if (size_.width % 2 != 0 || size_.height % 2 != 0)
        throw std::runtime_error(
            Format("y4m needs even sides, and the frame is %dx%d: change --frame", size_.width, size_.height));
    WriteOut(Format("YUV4MPEG2 W%d H%d F", size_.width, size_.height) + RateText(setup.rate) +
             " Ip A1:1 C420mpeg2 XYSCSS=420MPEG2 XCOLORRANGE=LIMITED\n");
}

void Y4mStream::Put(const Frame& frame) {
    planes_.clear();
    for (const uint32_t pixel : frame.pixels) planes_.push_back(LumaByte(ColorOf(pixel)));
    const auto addChroma = [&](double Color::*channel, double weight) {
        for (int32_t y = 0; y < size_.height; y += 2) {
            for (int32_t x = 0; x < size_.width; x += 2) {
                const Color color = ChromaColor(frame.pixels.data(), size_.width, x, y);
                planes_.push_back(ChromaByte(color.*channel - Luma(color), weight));
            }
        }
    };
    addChroma(&Color::blue, kBlueWeight);
    addChroma(&Color::red, kRedWeight);
    WriteOut("FRAME\n");
    WriteOut(planes_.data(), planes_.size());
}

void Y4mStream::Finish() {
    Flush();
}

}  // namespace captionfx
