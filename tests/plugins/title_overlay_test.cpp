// What plugins rely on in a title that is drawn onto the frames of others, apart from what the hosts themselves show.
#include "tools/title_overlay.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <string>
#include <vector>

#include <gtest/gtest.h>
#include <libxml/parser.h>

namespace captionfx {
namespace {

constexpr FrameSize kFrame{64, 36};
constexpr size_t kPixels = 64 * 36;
constexpr ptrdiff_t kRow = 64 * 4;
constexpr uint32_t kOpaque = 0xFF306080, kHalf = 0x80306080;

/// One string, and one of two: the library keeps the picture of either at rest, from second 1 on, and of the second it
/// keeps the last string alone.
const ScriptText kOneString{R"({"frame": "64x36", "strings": [
    {"text": "one", "size": 20, "shadow": {"blur": 5}, "in": {"effect": "fade"}}]})"};
const ScriptText kTitle{R"({"frame": "64x36", "strings": [
    {"text": "one", "size": 20, "anchor": "top", "shadow": {"blur": 5}, "in": {"effect": "fade"}},
    {"text": "two", "size": 20, "anchor": "bottom", "face": {"color": "#FFCC00", "opacity": 0.5}}]})"};

std::vector<uint32_t> DrawOn(TitleOverlay& title, uint32_t ground, float seconds) {
    std::vector<uint32_t> pixels(kPixels, ground);
    title.Draw(seconds, {reinterpret_cast<uint8_t*>(pixels.data()), kRow});
    return pixels;
}

TEST(TitleOverlay, DrawsEachFrameAsIfItWereTheFirst) {
    // Opaque and clear grounds are composited in two ways, and a picture that was kept for the one is not for the
    // other.
    for (const ScriptText& script : {kOneString, kTitle}) {
        TitleOverlay title(script, {.frame = kFrame});
        for (const uint32_t ground : {kOpaque, kHalf, kHalf, kOpaque, 0U, kOpaque}) {
            for (const float seconds : {2.0F, 0.5F, 2.5F, 3.0F}) {
                TitleOverlay fresh(script, {.frame = kFrame});
                EXPECT_EQ(DrawOn(title, ground, seconds), DrawOn(fresh, ground, seconds))
                    << ground << " at " << seconds;
            }
        }
    }
}

TEST(TitleOverlay, KeepsOpaqueFramesOpaqueAndShowsInHolesOfOthers) {
    TitleOverlay title(kTitle, {.frame = kFrame});
    for (const uint32_t pixel : DrawOn(title, kOpaque, 2.0F)) ASSERT_EQ(pixel >> 24, 255U);
    // One clear pixel under a letter makes the frame one with alpha: there the title is what it is on clear ground.
    const std::vector<uint32_t> clear = DrawOn(title, 0, 2.0F);
    const auto letter = std::ranges::find_if(clear, [](uint32_t p) { return p >> 24 > 100 && p >> 24 < 200; });
    ASSERT_NE(letter, clear.end());
    const auto hole = static_cast<size_t>(letter - clear.begin());
    std::vector<uint32_t> pixels(kPixels, kOpaque);
    pixels[hole] = 0;
    title.Draw(2.0F, {reinterpret_cast<uint8_t*>(pixels.data()), kRow});
    EXPECT_EQ(pixels[hole], *letter);
}

TEST(TitleOverlay, TakesRowsAtAnyAddress) {
    TitleOverlay title(kTitle, {.frame = kFrame});
    const std::vector<uint32_t> wanted = DrawOn(title, kOpaque, 2.0F);
    std::vector<uint8_t> bytes(1 + kPixels * 4);
    const std::vector<uint32_t> ground(kPixels, kOpaque);
    std::memcpy(bytes.data() + 1, ground.data(), kPixels * 4);
    title.Draw(2.0F, {bytes.data() + 1, kRow});
    EXPECT_EQ(std::memcmp(bytes.data() + 1, wanted.data(), kPixels * 4), 0);
}

TEST(TitleOverlay, FitsTheFrameThatItIsMadeFor) {
    // At twice the size the whole title is twice as large: its extent doubles, and so do its strings' places.
    constexpr FrameSize kTwice{128, 72};
    TitleOverlay small(kTitle, {.frame = kFrame}), large(kTitle, {.frame = kTwice});
    TitleOverlay scaled(kTitle, {.frame = kFrame, .scale = 2.0F});
    TitleRectF once{}, twice{}, scaledBox{};
    small.Title().GetStringRect(1, &once);
    large.Title().GetStringRect(1, &twice);
    scaled.Title().GetStringRect(1, &scaledBox);
    EXPECT_FLOAT_EQ(twice.x, 2 * once.x);
    EXPECT_FLOAT_EQ(twice.height, 2 * once.height);
    EXPECT_FLOAT_EQ(scaledBox.y, 2 * once.y);
    EXPECT_EQ(TitleOverlay(kTitle, {}).Frame().width, 64);
}

TEST(TitleOverlay, LeavesTheHostsErrorHandlerOfXml) {
    int context = 0;
    const xmlStructuredErrorFunc handler = [](void* /*context*/, xmlError* /*error*/) {};
    xmlSetStructuredErrorFunc(&context, handler);
    const std::filesystem::path damaged = std::filesystem::path(testing::TempDir()) / "captionfx_damaged.xml";
    std::ofstream(damaged) << "<CCaptionFx><StringList>";
    EXPECT_THROW(TitleOverlay(damaged, {}), std::runtime_error);
    std::filesystem::remove(damaged);
    const std::filesystem::path good = CAPTIONFX_SOURCE_DIR "/examples/titles/opener.xml";
    EXPECT_GT(TitleOverlay(good, {}).Duration(), 0.0F);
    EXPECT_EQ(xmlStructuredError, handler);
    EXPECT_EQ(xmlStructuredErrorContext, &context);
    xmlSetStructuredErrorFunc(nullptr, nullptr);
}

}  // namespace
}  // namespace captionfx
