// The shared library as a host loads it, beside an image utility of the host's own and without one.
#include <string>
#include <vector>

#include <captionfx/caption_fx.h>
#include <gtest/gtest.h>

#include "support/loaded_library.h"

namespace {

using captionfx::test::LoadedLibrary;

std::vector<uint32_t> FrameOf(IKVT_CaptionFx& title) {
    title.AddString();
    title.InsertText(0, 0, u"Hello");
    std::vector<uint32_t> frame(320UL * 240, 0xFF000000);
    EXPECT_EQ(title.RenderFrame(frame.data(), 0), kTitleOk);
    return frame;
}

TEST(LibraryTest, MakesAndReleasesTitles) {
    EXPECT_EQ(ReleaseTitleHost(nullptr), 0);
    IKVT_CaptionFx* const title = GetTitleHost();
    ASSERT_NE(title, nullptr);
    const std::vector<uint32_t> frame = FrameOf(*title);
    EXPECT_NE(frame, std::vector<uint32_t>(320UL * 240, 0xFF000000));
    EXPECT_EQ(ReleaseTitleHost(title), 0);

    IKVT_CaptionFx* const rebuilt = GetTitleHost();
    EXPECT_EQ(FrameOf(*rebuilt), frame) << "the same title gives the same bytes";
    ReleaseTitleHost(rebuilt);
}

TEST(LibraryTest, TakesTheImageUtilityThatLiesBesideIt) {
    const std::string folder = CAPTIONFX_LIBRARY_BESIDE_MODULE;
    const LoadedLibrary module(folder, "ImageUtility"), library(folder, "captionfx");
    ASSERT_TRUE(module.IsLoaded());
    ASSERT_TRUE(library.IsLoaded());
    auto* const count = module.Find<int()>("CountAttachedAndReleased");
    IKVT_CaptionFx* const title = library.Find<IKVT_CaptionFx*()>("GetTitleHost")();
    EXPECT_EQ(count(), 10) << "attached once";
    const std::vector<uint32_t> frame = FrameOf(*title);
    TitleRect dirty{};
    title->GetFrameDirtyRect(&dirty);
    EXPECT_EQ(frame[static_cast<size_t>(dirty.top * 320 + dirty.left)], 0xFF123456U) << "the module's composite";
    library.Find<int32_t(IKVT_CaptionFx*)>("ReleaseTitleHost")(title);
    EXPECT_EQ(count(), 11) << "and handed back";
}

}  // namespace
