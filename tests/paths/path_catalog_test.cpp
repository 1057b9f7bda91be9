// The catalogue and the manager of effects.
#include "paths/path_catalog.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "paths/path_manager.h"
#include "paths/reveal_paths.h"
#include "paths/travel_paths.h"

namespace captionfx::test {
namespace {

// Names, classes, passes and kinds are held to the list of the tool by its own test.
TEST(PathCatalogTest, RowsAreWhatHostsRelyOn) {
    const std::span<const PathCatalogEntry> rows = PathCatalog();
    ASSERT_EQ(rows.size(), 65U);
    EXPECT_STREQ(rows[0].PathName, "PATH_AMPLIFYH");
    EXPECT_STREQ(rows[15].PathName, "PATH_NOEFFECT");
    EXPECT_STREQ(rows[57].PathName, "PATH_FLIP");
    EXPECT_STREQ(rows[64].PathName, "PATH_GLOW");
    EXPECT_STREQ(rows[47].NameKey, "IDS_FXS_Ti_TranceUp_Name");
    EXPECT_STREQ(rows[3].DescKey, "IDS_FXS_Ti_DoubleVisionH_Desc");
    EXPECT_STREQ(FindPath("PATH_SCROLLUP")->ClassKey, "CLASS_ROLLNCRAWL");
    EXPECT_EQ(std::ranges::count_if(rows, [](const auto& r) { return r.ListGroup == 1; }), 39);
}

TEST(PathCatalogTest, NamesAreComparedWholeAndCaseSensitively) {
    CPathManager manager;
    for (const std::string_view unknown : {"", "path_fade", "PATH_FAD", "PATH_FADER", "PATH_SCROLLNRESIZE"}) {
        EXPECT_EQ(manager.GetPassCount(unknown), 0) << unknown;
        EXPECT_EQ(manager.IsImageBased(unknown), 0) << unknown;
    }
    for (const std::string_view unknown : {"", "path_fade"}) EXPECT_EQ(manager.CreatePath(unknown), nullptr) << unknown;
    EXPECT_EQ(manager.PathCount(), 0U);
    EXPECT_NE(dynamic_cast<CPathFade*>(manager.CreatePath("PATH_FADE")), nullptr);
    EXPECT_NE(dynamic_cast<CPathNoEffect*>(manager.CreatePath("PATH_NOEFFECT")), nullptr);
    EXPECT_NE(dynamic_cast<CPathScrollNResize*>(manager.CreatePath("PATH_SCROLLNRESIZE")), nullptr) << "without a row";
    EXPECT_EQ(manager.PathCount(), 3U);
}

TEST(PathCatalogTest, EffectsAreHandedBack) {
    CPathManager manager;
    CPathBase* const first = manager.CreatePath("PATH_FADE");
    EXPECT_NE(manager.CreatePath("PATH_FADE"), first);
    EXPECT_EQ(manager.DeletePath(first), 1);
    EXPECT_EQ(manager.DeletePath(nullptr), 1);
    EXPECT_EQ(manager.DeletePath(std::make_unique<CPathFade>().release()), 1)
        << "not made here, destroyed all the same";
    EXPECT_EQ(manager.PathCount(), 1U);
    { const PathHandle handle = MakePath(manager, "PATH_FADE"); }
    EXPECT_EQ(manager.PathCount(), 1U);
}

}  // namespace
}  // namespace captionfx::test
