// Films that `captionfx render` writes, decoded again and compared with the same frames as PNG files; films over
// videos; several threads; interruptions.
#include <algorithm>
#include <chrono>
#include <cmath>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/decoded_film.h"
#include "tests/tools/process.h"
#include "tests/tools/scratch_folder.h"
#include "tools/frame_times.h"
#include "tools/png_file.h"

namespace captionfx {
namespace {

using testing::HasSubstr;
using Frames = std::vector<std::vector<uint32_t>>;

constexpr int32_t kWidth = 96, kHeight = 64, kCount = 5;

std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

int Channel(uint32_t pixel, int number) {
    return static_cast<int>(pixel >> (8 * number) & 0xFF);
}

/// The mean difference of a channel of pixels; colours count as much as their pixel is there.
double MeanDifference(const Frames& a, const Frames& b, int channel) {
    constexpr int kAlpha = 3;
    double sum = 0, count = 0;
    for (size_t f = 0; f < a.size(); ++f) {
        for (size_t i = 0; i < a[f].size(); ++i, ++count) {
            const double weight = channel == kAlpha ? 1 : Channel(a[f][i], kAlpha) / 255.0;
            sum += weight * std::abs(Channel(a[f][i], channel) - Channel(b.at(f).at(i), channel));
        }
    }
    return sum / count;
}

class FilmTest : public testing::Test {
protected:
    [[nodiscard]] ProcessResult Run(std::vector<std::string> arguments,
                                    const std::vector<std::string>& more = {}) const {
        arguments.insert(arguments.end(), more.begin(), more.end());
        return RunTool(scratch_, arguments);
    }
    /// Five frames of a text that comes in half there, with soft shadows and borders.
    [[nodiscard]] ProcessResult Render(const std::string& output, std::vector<std::string> more = {}) const {
        more.insert(more.end(), {"--text", "Mg", "--size", "40", "--frame", "96x64", "--key", "0:PATH_FADE:0.3",
                                 "--key", "1:PATH_FADE:1", "--fps", "5", "-o", (scratch_ / output).string()});
        return Run({"render"}, more);
    }
    [[nodiscard]] Frames Pictures(const std::vector<std::string>& more = {}) const {
        EXPECT_EQ(Render("%d.png", more).exitCode, 0);
        Frames frames;
        for (int32_t i = 0; i < kCount; ++i)
            frames.push_back(ReadPng(FrameFile((scratch_ / "%d.png").string(), i)).pixels);
        return frames;
    }
    [[nodiscard]] DecodedFilm Decode(const std::string& name) const {
        return name.ends_with("webp") ? DecodeWebp(scratch_ / name) : DecodeFilm(scratch_ / name);
    }

    ScratchFolder scratch_;
};

// What is lossless comes back to the byte; of a pixel that is not there no colour is asked.
TEST_F(FilmTest, HoldsTheFramesAndTheirAlpha) {
    const struct {
        const char* name;
        std::vector<std::string> more;
        double alphaBound, colorBound;  // mean differences; 0 is exact. Halved chroma blurs a red border
    } rows[] = {
        {"a.apng", {}, 0, 0},
        {"a.webp", {}, 0, 0},
        {"a.mov", {"--format", "animation"}, 0, 0},
        {"b.mov", {"--format", "prores"}, 0.3, 1.5},
        {"a.webm", {}, 1.0, 4.0},
        {"b.apng", {"--background", "205080"}, 0, 0},
        {"b.webm", {"--background", "205080"}, 0, 8.0},
        {"a.mp4", {"--background", "205080"}, 0, 8.0},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(row.name);
        const Frames wanted =
            Pictures(row.more.empty() || row.more[0] == "--format" ? std::vector<std::string>{} : row.more);
        const ProcessResult result = Render(row.name, row.more);
        ASSERT_EQ(result.exitCode, 0) << result.errors;
        const DecodedFilm film = Decode(row.name);
        ASSERT_EQ(film.frames.size(), wanted.size());
        EXPECT_EQ(film.width, kWidth);
        EXPECT_EQ(film.height, kHeight);
        for (int32_t i = 0; i < kCount; ++i) EXPECT_NEAR(film.seconds[static_cast<size_t>(i)], i / 5.0, 0.001);
        EXPECT_LE(MeanDifference(wanted, film.frames, 3), row.alphaBound);
        for (const int channel : {0, 1, 2}) EXPECT_LE(MeanDifference(wanted, film.frames, channel), row.colorBound);
        // The ground is flat, so that it has no fault but that of a wrong matrix or range.
        for (const int channel : {0, 1, 2}) {
            EXPECT_NEAR(Channel(film.frames[0][0], channel), Channel(wanted[0][0], channel),
                        Channel(wanted[0][0], 3) == 255 ? 3 : 255);
        }
        const bool isYuv = row.colorBound > 0;
        EXPECT_TRUE(!isYuv || film.colors == "tv bt709 bt709 bt709") << film.colors;
    }
}

// One bit of alpha: what is at least half there is solid, in colours near its own.
TEST_F(FilmTest, GifHasWholePixelsAndSaysSo) {
    const ProcessResult result = Render("a.gif", {"--to", "0.4"});
    EXPECT_THAT(result.errors, HasSubstr("half-transparent"));
    Frames wanted = Pictures();
    wanted.resize(2);  // before 0.4 s
    for (auto& frame : wanted) {
        for (uint32_t& pixel : frame) pixel = pixel >> 24 >= 128 ? pixel | 0xFF000000 : 0;
    }
    const DecodedFilm film = Decode("a.gif");
    ASSERT_EQ(film.frames.size(), wanted.size());
    EXPECT_EQ(MeanDifference(wanted, film.frames, 3), 0);
    for (const int channel : {0, 1, 2}) EXPECT_LE(MeanDifference(wanted, film.frames, channel), 0.5);
    EXPECT_THAT(Render("b.gif", {"--to", "0.2", "--background", "000000"}).errors, Not(HasSubstr("half-transparent")));
}

// Two strings that rest together and one that rests in two effects: the library's kept frame would show the last string
// alone, or as the first effect left it.
TEST_F(FilmTest, FramesDoNotDependOnTheFramesBeforeNorOnTheThreads) {
    const auto save = [&](const char* name, const char* text, const char* position, const char* second) {
        EXPECT_EQ(Run({"render", "--text", text, "--size", "30", "--position", position, "--key", "0:PATH_FADE:0",
                       "--key", "1:PATH_FADE:1", "--key", std::string("2:") + second + ":1", "--key",
                       std::string("3:") + second + ":1", "--save", (scratch_ / name).string()})
                      .exitCode,
                  0);
        std::string text8;
        for (const char c : ReadAll(scratch_ / name)) {
            if (c > 0) text8 += c;  // ASCII in UTF-16
        }
        return text8.substr(text8.find("?>") + 2);
    };
    std::string one = save("one.xml", "Up", "4,0", "PATH_WIPELEFT");
    const std::string two = save("two.xml", "Do", "4,30", "PATH_SCROLLUP");
    const size_t begin = two.find("<MetaString "),
                 end = two.find("</MetaString>") + std::string("</MetaString>").size();
    one.insert(one.find("</StringList>"), two.substr(begin, end - begin));
    std::ofstream(scratch_ / "both.xml") << one;
    for (const char* const name : {"one.xml", "both.xml"}) {
        const auto raw = [&](std::vector<std::string> more) {
            more.insert(more.begin(), {"render", (scratch_ / name).string(), "--frame", "96x64", "--to", "3", "--quiet",
                                       "--format", "bgra", "-o", "-", "--fps"});
            return Run(more).output;
        };
        const std::string inOrder = raw({"8", "--jobs", "1"});
        ASSERT_EQ(inOrder.size(), size_t{24} * kWidth * kHeight * 4);
        EXPECT_TRUE(inOrder == raw({"8", "--jobs", "3"})) << name;
        for (size_t i = 0; i < 24; i += 3) {
            const std::filesystem::path still = scratch_ / "still.png";
            ASSERT_EQ(Run({"render", (scratch_ / name).string(), "--frame", "96x64", "--at",
                           std::to_string(static_cast<double>(i) / 8), "-o", still.string()})
                          .exitCode,
                      0);
            const auto pixels = ReadPng(still).pixels;
            const std::string bytes(reinterpret_cast<const char*>(pixels.data()), pixels.size() * 4);
            EXPECT_TRUE(inOrder.compare(i * bytes.size(), bytes.size(), bytes) == 0) << name << ", frame " << i;
        }
    }
}

// The clip has uneven times, sound, and colours of standard definition; its left half is red, its right half blue.
TEST_F(FilmTest, OverAVideoKeepsItsTimesSoundAndColors) {
    const std::filesystem::path clip = std::filesystem::path(CAPTIONFX_TEST_DATA) / "clip.mp4";
    const DecodedFilm before = DecodeFilm(clip);
    // A block of one colour from 0.15 s on, which is after the third frame.
    const std::vector<std::string> block{
        "render", "--text", "\xE2\x96\x88",      "--size", "40",         "--color", "20C040", "--position",
        "34,2",   "--key",  "0:PATH_NOEFFECT:0", "--over", clip.string()};
    ASSERT_EQ(Run(block, {"-o", (scratch_ / "out.mp4").string(), "--quiet"}).errors, "");
    const DecodedFilm after = DecodeFilm(scratch_ / "out.mp4");
    EXPECT_EQ(after.seconds, before.seconds);
    EXPECT_THAT(after.seconds, testing::SizeIs(6));
    EXPECT_EQ(after.colors, before.colors);
    EXPECT_EQ(after.soundBytes, before.soundBytes);
    const auto expectNear = [](uint32_t pixel, uint32_t wanted) {
        for (const int channel : {0, 1, 2})
            EXPECT_NEAR(Channel(pixel, channel), Channel(wanted, channel), 12) << std::hex << pixel;
    };
    const auto& first = after.frames.front();
    expectNear(first[60 * 96 / 2 + 4], 0xFF0000);
    expectNear(first[24 * 96 + 92], 0x0000FF);
    expectNear(first[24 * 96 + 46], 0x20C040);

    const ProcessResult noPlace = Run(block, {"-o", (scratch_ / "out.webm").string()});
    EXPECT_EQ(noPlace.exitCode, 1);
    EXPECT_THAT(noPlace.errors, testing::AllOf(HasSubstr("aac"), HasSubstr("--no-audio")));
    EXPECT_EQ(Run(block, {"-o", (scratch_ / "out.webm").string(), "--no-audio"}).exitCode, 0);
}

TEST_F(FilmTest, RefusesInOneLineAndLeavesNothing) {
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
        const char* named;
    } rows[] = {
        {{"--to", "1", "-o", "a.png"}, 2, "%04d"},
        {{"--to", "1", "-o", "a.avi"}, 2, ".webm"},
        {{"--to", "1", "-o", "a.mov", "--format", "vp9"}, 2, "prores or animation"},
        {{"--to", "1", "-o", "-"}, 2, "bgra or y4m"},
        {{"--to", "1", "-o", "a.gif", "--jobs", "0"}, 2, "--jobs"},
        {{"--to", "1", "-o", "a.gif", "--at", "1"}, 2, "--at"},
        {{"-o", "a.gif"}, 1, "--to"},
        {{"--to", "1", "-o", "a.mp4"}, 1, "--background"},
        {{"--to", "1", "-o", "a.mp4", "--background", "000000", "--frame", "63x48"}, 1, "63x48"},
        {{"--over", "missing.mp4", "-o", "a.mp4"}, 1, "missing.mp4"},
        {{"--over", CAPTIONFX_TEST_DATA "/font_masks.csv", "-o", "a.mp4"}, 1, "font_masks.csv"},
        {{"--over", "a.mp4", "--fps", "5", "-o", "b.mp4"}, 2, "--over"},
        {{"--to", "1", "-o", "missing/a.gif"}, 1, "missing/a.gif"},
    };
    const std::filesystem::path here = std::filesystem::current_path();
    std::filesystem::create_directory(scratch_ / "work");
    std::filesystem::current_path(scratch_ / "work");
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.arguments));
        const ProcessResult result = Run({"render", "--text", "Hi", "--size", "20", "--quiet"}, row.arguments);
        EXPECT_EQ(result.exitCode, row.exitCode);
        EXPECT_EQ(result.ErrorLines(), 1) << result.errors;
        EXPECT_THAT(result.errors, HasSubstr(row.named));
        EXPECT_TRUE(std::filesystem::is_empty(scratch_ / "work"));
    }
    std::filesystem::current_path(here);
}

TEST_F(FilmTest, InterruptionLeavesNoFileAndIsSeen) {
    std::filesystem::create_directory(scratch_ / "work");
    for (const int number : {SIGINT, SIGTERM}) {
        const pid_t tool =
            StartTool(scratch_, {"render", "--text", "Hi", "--frame", "320x180", "--background", "000000", "--to",
                                 "100000", "-o", (scratch_ / "work/long.mp4").string()});
        const auto isEmpty = [&] { return std::filesystem::is_empty(scratch_ / "work"); };
        for (int tries = 0; isEmpty() && tries < 1000; ++tries)
            std::this_thread::sleep_for(std::chrono::milliseconds(10));
        EXPECT_FALSE(isEmpty()) << "it has not begun";
        kill(tool, number);
        EXPECT_EQ(EndingSignal(tool), number);
        EXPECT_TRUE(isEmpty());
    }
}

TEST_F(FilmTest, ProgressIsOneLineOnALogAndNoneWhenQuiet) {
    EXPECT_THAT(Render("a.apng").errors, testing::MatchesRegex("captionfx: 5 frames, [0-9.]+ a second, [0-9.]+ s\n"));
    EXPECT_EQ(Render("a.apng", {"--quiet"}).errors, "");
}

}  // namespace
}  // namespace captionfx
