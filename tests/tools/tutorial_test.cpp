// The tutorial as a newcomer follows it: its files are saved, its commands run as they stand on the page, one after
// another in one folder. What they print is what the page says, and what they draw is there.
#include <algorithm>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <regex>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/wait.h>

#include "tests/tools/decoded_film.h"
#include "tests/tools/scratch_folder.h"
#include "tools/png_file.h"

namespace captionfx {
namespace {

const std::filesystem::path kDocs = CAPTIONFX_SOURCE_DIR "/docs";

/// A fenced part of the page: "sh" is run, "sh fails" is run and must fail, "text" is what the part before it prints,
/// anything else is a file, "json name".
struct Fence {
    std::string kind, content;
};

std::string ReadAll(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::vector<Fence> FencesOf(const std::string& page) {
    constexpr std::string_view kMark = "```";
    std::vector<Fence> fences;
    std::istringstream lines(page);
    bool isInside = false;
    size_t indent = 0;
    for (std::string line; std::getline(lines, line);) {
        const size_t begin = std::min(line.find_first_not_of(' '), line.size());
        if (line.compare(begin, kMark.size(), kMark) == 0) {
            isInside = !isInside;
            indent = begin;
            if (isInside) fences.push_back({line.substr(begin + kMark.size()), ""});
        } else if (isInside) {
            fences.back().content += line.substr(std::min(indent, begin)) + "\n";
        }
    }
    return fences;
}

/// What follows `pattern`'s first group, for each of its places in a text.
std::vector<std::string> AllOf(const std::string& text, const char* pattern) {
    const std::regex regex(pattern);
    std::vector<std::string> found;
    for (std::sregex_iterator at(text.begin(), text.end(), regex), end; at != end; ++at) found.push_back((*at)[1]);
    return found;
}

class Tutorial : public testing::Test {
protected:
    /// The exit code of a shell in the folder, with the built tool on its path, and all that it prints; how fast films
    /// were drawn is no part of the page.
    int Run(const std::string& commands, std::string& printed) const {
        const std::string folder = std::filesystem::path(CAPTIONFX_TOOL).parent_path().string();
        std::ofstream(scratch_ / "commands")
            << "exec 2>&1\ncd '" << Folder().string() << "'\nPATH='" << folder << "':$PATH\n"
            << commands;
        const std::string shell = "bash -euo pipefail '" + (scratch_ / "commands").string() + "'";
        FILE* const pipe = popen(shell.c_str(), "r");
        if (pipe == nullptr) return -1;
        std::string output;
        for (int c = 0; (c = std::fgetc(pipe)) != EOF;) output += static_cast<char>(c);
        const int status = pclose(pipe);
        printed = std::regex_replace(output, std::regex("captionfx: [0-9]+ frames, [0-9.]+ a second, [0-9.]+ s\n"), "");
        return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    }
    [[nodiscard]] std::filesystem::path Folder() const { return scratch_ / "work"; }
    [[nodiscard]] DecodedFilm Film(const char* name) const { return DecodeFilm(Folder() / name); }

    void FollowThePage(const std::vector<Fence>& fences) const {
        std::filesystem::create_directory(Folder());
        for (size_t i = 0; i < fences.size(); ++i) {
            const auto& [kind, content] = fences[i];
            if (kind == "text") continue;
            if (!kind.starts_with("sh")) {
                std::ofstream(Folder() / kind.substr(kind.find(' ') + 1), std::ios::binary) << content;
                continue;
            }
            std::string printed;
            EXPECT_EQ(Run(content, printed), kind == "sh" ? 0 : 1) << content << printed;
            const bool isTold = i + 1 < fences.size() && fences[i + 1].kind == "text";
            EXPECT_EQ(printed, isTold ? fences[i + 1].content : "") << content;
            for (const std::string& output : AllOf(content, "-o ([^ \n%]+)\n"))
                EXPECT_EQ(std::filesystem::exists(Folder() / output), kind == "sh") << output;
        }
    }

    ScratchFolder scratch_;
};

/// The part of pixels that differ by more than what encoding does.
double Difference(const std::vector<uint32_t>& a, const std::vector<uint32_t>& b) {
    constexpr int kVisible = 48;
    size_t count = 0;
    for (size_t i = 0; i < std::min(a.size(), b.size()); ++i) {
        const auto differs = [&](int channel) {
            return std::abs(static_cast<int>(a[i] >> channel & 0xFF) - static_cast<int>(b[i] >> channel & 0xFF)) >
                   kVisible;
        };
        if (differs(0) || differs(8) || differs(16)) ++count;
    }
    return static_cast<double>(count) / static_cast<double>(std::max(a.size(), b.size()));
}

TEST_F(Tutorial, EveryCommandDoesWhatThePageSays) {
    const std::string page = ReadAll(kDocs / "tutorial.md");
    const std::vector<Fence> fences = FencesOf(page);
    ASSERT_GE(std::ranges::count(fences, "sh", &Fence::kind), 10);
    FollowThePage(fences);
    if (HasFailure()) return;

    // The pictures of the page are what its commands draw. A film that was encoded twice may differ by a trifle.
    const std::vector<std::string> pictures = AllOf(page, "\\(tutorial/([^)]+)\\)");
    EXPECT_GE(pictures.size(), 3U);
    for (const std::string& name : pictures) {
        const PngImage shown = ReadPng(kDocs / "tutorial" / name), drawn = ReadPng(Folder() / name);
        ASSERT_EQ(shown.pixels.size(), drawn.pixels.size()) << name;
        EXPECT_LT(Difference(shown.pixels, drawn.pixels), 0.001) << name;
    }

    const struct {
        const char* name;
        int32_t width, height;
        size_t frames, showing;  // a frame that shows something
    } films[] = {{"hello.mp4", 640, 360, 50, 40},   {"opening.mov", 640, 360, 75, 40},
                 {"opening.gif", 320, 180, 30, 15}, {"sea.mp4", 640, 360, 60, 30},
                 {"opened.mp4", 640, 360, 60, 24},  {"finished.mp4", 640, 360, 60, 44}};
    for (const auto& [name, width, height, frames, showing] : films) {
        const DecodedFilm film = Film(name);
        EXPECT_EQ(film.width, width) << name;
        EXPECT_EQ(film.height, height) << name;
        ASSERT_EQ(film.frames.size(), frames) << name;
        const std::vector<uint32_t> ground(film.frames[0].size(), film.frames[0][0]);
        EXPECT_GT(Difference(film.frames[showing], ground), 0.005) << name;
    }
    EXPECT_EQ(Film("opening.mov").frames[40][0] >> 24, 0U) << "alpha";

    // At 2 s the opening stands over the sea, and no subtitle; at 3.67 s there is a subtitle alone.
    const DecodedFilm sea = Film("sea.mp4"), opened = Film("opened.mp4"), finished = Film("finished.mp4");
    EXPECT_GT(Difference(sea.frames[24], opened.frames[24]), 0.03);
    EXPECT_LT(Difference(opened.frames[24], finished.frames[24]), 0.001);
    EXPECT_LT(Difference(sea.frames[44], opened.frames[44]), 0.001);
    EXPECT_GT(Difference(opened.frames[44], finished.frames[44]), 0.005);

    const auto countIn = [&](const char* folder) {
        return std::distance(std::filesystem::directory_iterator(Folder() / folder), {});
    };
    EXPECT_EQ(countIn("finished"), 60);
    std::string rotations;
    EXPECT_EQ(Run("captionfx effects --class CLASS_ROTATE", rotations), 0);
    EXPECT_EQ(countIn("spins"), std::ranges::count(rotations, '\n')) << "a picture an effect, and the page";
}

}  // namespace
}  // namespace captionfx
