// Title files on the command line: drawn, shown, and refused with the place and the reason.
#include <fstream>
#include <iterator>
#include <string>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/process.h"
#include "tests/tools/scratch_folder.h"
#include "tools/png_file.h"

namespace captionfx {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

class TitleFileTest : public testing::Test {
protected:
    /// Saves a title that fades in during the first second; returns its file.
    std::string Save() const {
        std::string file = (scratch_ / "title.xml").string();
        const ProcessResult result =
            RunTool(scratch_, {"render", "--text", "Fade \xE4\xB8\x96\\nin", "--size", "32", "--color", "FFCC00",
                               "--key", "1:PATH_FADE:1", "--key", "0:PATH_FADE:0", "--frame", "96x64", "--save", file});
        EXPECT_EQ(result.exitCode, 0) << result.errors;
        return file;
    }
    /// Writes the saved title in UTF-8 with `from` replaced.
    std::string Damaged(const std::string& from, const std::string& to) const {
        std::ifstream in(Save(), std::ios::binary);
        std::string text;
        for (const char c : std::string{std::istreambuf_iterator<char>(in), {}}) {
            if (c > 0) text += c;  // ASCII in UTF-16: every other byte is 0, and the mark is not ASCII
        }
        text.erase(0, text.find("?>") + 2);
        const size_t at = text.find(from);
        EXPECT_NE(at, std::string::npos) << from;
        std::ofstream(scratch_ / "damaged.xml") << text.replace(at, from.size(), to);
        return (scratch_ / "damaged.xml").string();
    }
    [[nodiscard]] std::vector<uint32_t> Frame(const std::string& name) const { return ReadPng(scratch_ / name).pixels; }
    [[nodiscard]] static int Strongest(const std::vector<uint32_t>& pixels) {
        uint32_t strongest = 0;
        for (const uint32_t pixel : pixels) strongest = std::max(strongest, pixel >> 24U);
        return static_cast<int>(strongest);
    }

    ScratchFolder scratch_;
};

TEST_F(TitleFileTest, SequencesAreTheirFramesOneByOne) {
    const std::string file = Save();
    const std::string pattern = (scratch_ / "frames").string() + "/%02d.png";
    ASSERT_EQ(RunTool(scratch_,
                      {"render", file, "--frame", "96x64", "--from", "0", "--to", "1.25", "--fps", "4", "-o", pattern})
                  .exitCode,
              0);
    EXPECT_FALSE(std::filesystem::exists(scratch_ / "frames/05.png"));
    EXPECT_EQ(Strongest(Frame("frames/00.png")), 0);
    EXPECT_NEAR(Strongest(Frame("frames/02.png")), 160, 35) << "half way: the face at 127, over border and shadow";
    EXPECT_GE(Strongest(Frame("frames/04.png")), 254);
    ASSERT_EQ(
        RunTool(scratch_, {"render", file, "--frame", "96x64", "--at", "0.5", "-o", (scratch_ / "at.png").string()})
            .exitCode,
        0);
    EXPECT_EQ(Frame("at.png"), Frame("frames/02.png"));
}

TEST_F(TitleFileTest, ShowTellsWhatAPersonAsks) {
    const ProcessResult shown = RunTool(scratch_, {"show", Save()});
    EXPECT_EQ(shown.exitCode, 0);
    EXPECT_THAT(shown.errors, IsEmpty());
    for (const char* part : {"title.xml: 1 string, 1 s\n", "\"Fade \xE4\xB8\x96\\r\\nin\"", "2 lines, 2 paragraphs",
                             "DejaVu Sans 32, characters 0 to 4\n", "Droid Sans Fallback 32, characters 5 to 5\n",
                             "face      #FFCC00, characters 0 to 9\n", "border    size 3, #FF0000",
                             "shadow    cast by (3, 3), #000000, alpha 128, blur 3",
                             "key       0 s: PATH_FADE at 0\n  key       1 s: PATH_FADE at 1\n"})
        EXPECT_THAT(shown.output, HasSubstr(part));
    // D, e, j become M, i, j inside the font's record.
    const ProcessResult replaced = RunTool(scratch_, {"show", Damaged("440065006A00", "4D0069006A00")});
    EXPECT_THAT(replaced.output, HasSubstr(" 32 (stands in for 'MijaVu Sans'), characters 0 to 4\n"));
}

TEST_F(TitleFileTest, WrongFilesGiveOneLineWithReason) {
    std::ofstream(scratch_ / "empty.xml").flush();
    const struct {
        std::string file, from, to, place, reason;  // no file: the saved one, with `from` replaced
    } rows[] = {
        {(scratch_ / "none.xml").string(), "", "", "none.xml: ", "No such file or directory\n"},
        {scratch_.Path().string(), "", "", ": ", "is a folder, not a title\n"},
        {(scratch_ / "empty.xml").string(), "", "", "empty.xml: ", "is empty\n"},
        {"", "FaceIndex=\"0\"", "FaceIndex=\"7\"",
         "string 0, MetaCharacter 0: ", "FaceIndex '7' names none of the 1 items of its list\n"},
        {"", "KeyFrame=\"1.000000\"", "KeyFrame=\"1e99\"",
         "string 0, MetaPath 1: ", "KeyFrame '1e99' is no finite number\n"},
    };
    for (const auto& row : rows) {
        const std::string file = row.file.empty() ? Damaged(row.from, row.to) : row.file;
        for (const char* command : {"show", "render"}) {
            std::vector<std::string> arguments{command, file};
            if (arguments[0] == "render") arguments.insert(arguments.end(), {"-o", (scratch_ / "x.png").string()});
            const ProcessResult result = RunTool(scratch_, arguments);
            EXPECT_EQ(result.exitCode, 1);
            EXPECT_EQ(result.ErrorLines(), 1) << result.errors;
            EXPECT_THAT(result.errors, HasSubstr(row.place));
            EXPECT_THAT(result.errors, EndsWith(row.reason));
        }
    }
}

TEST_F(TitleFileTest, FaultsAreToldWithTheirLine) {
    const std::string notClosed = RunTool(scratch_, {"show", Damaged("CCaptionFx ", "Caption ")}).errors;
    EXPECT_THAT(notClosed, HasSubstr("damaged.xml:2:"));
    EXPECT_THAT(notClosed, EndsWith("mismatch: Caption line 2 and CCaptionFx\n"));
    EXPECT_THAT(RunTool(scratch_, {"show", Damaged("FaceIndex=\"0\"", "FaceIndex=\"7\"")}).errors,
                HasSubstr("damaged.xml:2: string 0, MetaCharacter 0: "));
}

}  // namespace
}  // namespace captionfx
