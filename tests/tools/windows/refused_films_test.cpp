// This build has no video libraries.
#include <filesystem>
#include <string>
#include <vector>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "tests/tools/process.h"
#include "tests/tools/scratch_folder.h"

namespace captionfx {
namespace {

TEST(RefusedFilms, AreToldInOneLineWithWhatElseThereIs) {
    const ScratchFolder scratch;
    const std::filesystem::path work = scratch / "work";
    std::filesystem::create_directory(work);
    const std::string film = (work / "a.mp4").string(), pictures = (work / "%d.png").string();
    const struct {
        std::vector<std::string> arguments;
        int exitCode;
    } rows[] = {{{"render", "--text", "a", "--to", "1", "-o", film}, 2},
                {{"render", "--text", "a", "--over", film, "-o", pictures}, 1},
                {{"effects", "--gallery", (work / "gallery").string()}, 1}};
    for (const auto& row : rows) {
        const ProcessResult result = RunTool(scratch, row.arguments);
        EXPECT_EQ(result.exitCode, row.exitCode);
        EXPECT_EQ(result.ErrorLines(), 1) << result.errors;
        EXPECT_THAT(result.errors, testing::AllOf(testing::HasSubstr("films"), testing::HasSubstr("%04d.png")));
        EXPECT_TRUE(std::filesystem::is_empty(work));
    }
}

}  // namespace
}  // namespace captionfx
