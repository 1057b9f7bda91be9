// The tool's promises to scripts: exit codes, one line for every error, nothing left behind.
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/process.h"
#include "tests/tools/scratch_folder.h"

namespace captionfx {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::StartsWith;

class CommandLine : public testing::Test {
protected:
    [[nodiscard]] ProcessResult Run(const std::vector<std::string>& arguments) const {
        return RunTool(scratch_, arguments);
    }

    /// A small frame of a short text with `more` arguments.
    [[nodiscard]] ProcessResult Render(const std::vector<std::string>& more = {}) const {
        std::vector<std::string> arguments{"render", "--text", "Hi", "--size", "20", "--frame", "64x48"};
        arguments.insert(arguments.end(), {"-o", Picture().string()});
        arguments.insert(arguments.end(), more.begin(), more.end());
        return Run(arguments);
    }

    [[nodiscard]] std::filesystem::path Picture() const { return scratch_ / "out.png"; }

    ScratchFolder scratch_;
};

TEST_F(CommandLine, HelpAndVersionAreAnswers) {
    const ProcessResult version = Run({"--version"});
    EXPECT_EQ(version.exitCode, 0);
    EXPECT_EQ(version.output, "captionfx " CAPTIONFX_VERSION "\n");

    for (const std::vector<std::string>& arguments : {std::vector<std::string>{"--help"}, {"render", "--help"}}) {
        const ProcessResult help = Run(arguments);
        EXPECT_EQ(help.exitCode, 0);
        EXPECT_THAT(help.output, HasSubstr(arguments.size() == 1 ? "render" : "--background"));
        EXPECT_THAT(help.errors, IsEmpty());
    }
}

TEST_F(CommandLine, WrongArgumentsGiveOneLineThatNamesThemAndNoFile) {
    const std::string out = Picture().string();
    const struct {
        std::vector<std::string> arguments;  // a first one with dashes: after a whole `render`
        const char* named;
    } rows[] = {
        {{"--size", "-5"}, "--size"},
        {{"--size", "1638.5"}, "--size"},
        {{"--frame", "0x10"}, "--frame"},
        {{"--frame", "10x10x10"}, "--frame"},
        {{"--frame", "4294967297x1"}, "--frame"},
        {{"--font", "two\nlines\r\nand \x80, a byte that is no text"}, "--font"},
        {{"--effect", "wipe-off"}, "captionfx effects"},
        {{"--color", "red"}, "--color"},
        {{"--background", "12345"}, "--background"},
        {{"--progress", "1e99"}, "--progress"},
        {{"--at", "1s"}, "--at"},
        {{"--at"}, "--at"},
        {{"--position", "1,2,3"}, "--position"},
        {{"--colour", "FFFFFF"}, "--colour"},
        {{"--key", "1:PATH_FADE"}, "--key"},
        {{}, "command"},
        {{"draw"}, "draw"},
        {{"show"}, "title"},
        {{"render", "--text", "a"}, "--output"},
        {{"render", "-o", out}, "--text"},
        {{"render", "-o", out, "--text", "\xFF\xFE"}, "--text"},
        {{"render", "a.xml", "--text", "a", "-o", out}, "a.xml"},
        {{"render", "--text", "a", "--from", "1", "--to", "1", "--fps", "5", "-o", "%d.png"}, "--to"},
        {{"render", "--text", "a", "--from", "1", "--to", "2", "--fps", "5", "-o", out}, "%04d"},
        {{"preview", "a.xml"}, "--output"},
        {{"preview", "a.xml", "-o", out, "--at", "1,,2"}, "--at"},
        {{"fonts", "--font", "a"}, "--text"},
    };
    for (const auto& row : rows) {
        SCOPED_TRACE(testing::PrintToString(row.arguments));
        const bool isRest = !row.arguments.empty() && row.arguments[0].starts_with("--");
        const ProcessResult result = isRest ? Render(row.arguments) : Run(row.arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.ErrorLines(), 1) << result.errors;
        EXPECT_THAT(result.errors, StartsWith("captionfx: "));
        EXPECT_THAT(result.errors, HasSubstr(row.named));
        EXPECT_THAT(result.errors, HasSubstr("--help"));
        EXPECT_FALSE(std::filesystem::exists(Picture()));
    }
}

TEST_F(CommandLine, TextIsTakenAsItIs) {
    // Each of these means something to some command-line parser.
    for (const char* text : {"-5", "--help", "[a,b]", "{}", "%%", "@file", "'quoted'"}) {
        std::filesystem::remove(Picture());
        const ProcessResult result =
            Run({"render", "--text", text, "--size", "20", "--frame", "200x48", "-o", Picture().string()});
        EXPECT_EQ(result.exitCode, 0) << text;
        EXPECT_EQ(result.output + result.errors, "") << "silent when all went well";
        EXPECT_TRUE(std::filesystem::exists(Picture())) << text;
    }
}

TEST_F(CommandLine, UnwritableFileIsAFailureThatLeavesNothingBehind) {
    const auto missingFolder = scratch_ / "missing" / "out.png";
    const auto folder = scratch_ / "folder.png";
    std::filesystem::create_directory(folder);
    for (const auto& target : {missingFolder, folder}) {
        const ProcessResult result =
            Run({"render", "--text", "Hi", "--size", "20", "--frame", "64x48", "-o", target.string()});
        EXPECT_EQ(result.exitCode, 1);
        EXPECT_EQ(result.ErrorLines(), 1) << result.errors;
        EXPECT_THAT(result.errors, HasSubstr(target.filename().string()));
    }
    EXPECT_TRUE(std::filesystem::is_empty(folder));
    EXPECT_FALSE(std::filesystem::exists(scratch_ / "missing"));
}

TEST_F(CommandLine, WhatMayBeUnexpectedIsNotedAndStillAPicture) {
    const struct {
        std::vector<std::string> arguments;
        const char* note;
    } rows[] = {{{"--font", "No Such Face"}, "'No Such Face' is not installed"},
                {{"--effect", "PATH_FADE", "--progress", "0"}, "nothing was drawn\n"},
                {{"--position", "-5000,0"}, "nothing was drawn\n"}};
    for (const auto& row : rows) {
        std::filesystem::remove(Picture());
        const ProcessResult result = Render(row.arguments);
        EXPECT_EQ(result.exitCode, 0);
        EXPECT_EQ(result.ErrorLines(), 1) << result.errors;
        EXPECT_THAT(result.errors, HasSubstr(row.note));
        EXPECT_TRUE(std::filesystem::exists(Picture()));
    }
}

}  // namespace
}  // namespace captionfx
