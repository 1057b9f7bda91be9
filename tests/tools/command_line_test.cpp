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
    const std::vector<std::vector<std::string>> rows{
        {"--size", "-5"},
        {"--size", "1638.5"},
        {"--frame", "0x10"},
        {"--frame", "10x10x10"},
        {"--frame", "4294967297x1"},
        {"--font", "two\nlines\r\nand \x80, a byte that is no text"},
        {"--effect", std::string(260, 'P')},
        {"--color", "red"},
        {"--background", "12345"},
        {"--progress", "1e99"},
        {"--at", "1s"},
        {"--at"},
        {"--position", "1,2,3"},
        {"--text", "\xFF\xFE"},
        {"--colour", "FFFFFF"},
        {"leftover"},
    };
    for (const auto& row : rows) {
        const std::string& named = row.front();
        SCOPED_TRACE(testing::PrintToString(row));
        std::vector<std::string> arguments{"render", "-o", Picture().string()};
        if (named != "--text") arguments.insert(arguments.end(), {"--text", "Hi"});
        arguments.insert(arguments.end(), row.begin(), row.end());
        const ProcessResult result = Run(arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.ErrorLines(), 1) << result.errors;
        EXPECT_THAT(result.errors, StartsWith("captionfx: "));
        EXPECT_THAT(result.errors, HasSubstr(named));
        EXPECT_THAT(result.errors, HasSubstr("--help"));
        EXPECT_FALSE(std::filesystem::exists(Picture()));
    }
}

TEST_F(CommandLine, MissingPartsAreNamed) {
    const struct {
        std::vector<std::string> arguments;
        const char* named;
    } rows[] = {{{}, "command"},
                {{"draw"}, "draw"},
                {{"render", "--text", "a"}, "--output"},
                {{"render", "-o", "a.png"}, "--text"},
                {{"render", "a.xml", "--text", "a", "-o", "a.png"}, "a.xml"},
                {{"render", "--text", "a", "--from", "1", "--to", "2", "--fps", "5", "-o", "a.png"}, "%04d"},
                {{"render", "--text", "a", "--from", "1", "--to", "1", "--fps", "5", "-o", "%d.png"}, "--to"},
                {{"render", "--text", "a", "--from", "1", "--to", "2", "-o", "%d.png"}, "--fps"},
                {{"render", "--text", "a", "--key", "1:PATH_FADE", "-o", "a.png"}, "--key"},
                {{"show"}, "title"}};
    for (const auto& row : rows) {
        const ProcessResult result = Run(row.arguments);
        EXPECT_EQ(result.exitCode, 2);
        EXPECT_EQ(result.ErrorLines(), 1) << result.errors;
        EXPECT_THAT(result.errors, HasSubstr(row.named));
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
