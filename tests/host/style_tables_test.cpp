// Find-or-add, and dropping the entries that only a range of characters uses.
#include "host/style_tables.h"

#include <gtest/gtest.h>

namespace captionfx::test {
namespace {

TEST(StyleTablesTest, FontsAreComparedAsBytes) {
    MetaString string;
    MetaFont font{};
    EXPECT_EQ(InternFont(string, font), 0);
    font.LogFont.lfFaceName[31] = u'x';  // behind the end of the name, and yet another record
    EXPECT_EQ(InternFont(string, font), 1);
    font = {};
    font.UnderlineSize = -0.0F;
    EXPECT_EQ(InternFont(string, font), 2);
}

TEST(StyleTablesTest, BadRangesAreRejected) {
    MetaString string;
    string.Characters.resize(2);
    for (const auto& [first, count] : {std::pair{-1, 1}, {2, 0}, {1, 2}, {1, 2147483647}}) {
        EXPECT_EQ(ReleaseFaceRange(string, first, count), 0) << first << ' ' << count;
    }
}

TEST(StyleTablesTest, EachTableIsDroppedFromByItsOwnIndex) {
    MetaString string;
    MetaCharacter character{};
    character.FontIndex = InternFont(string, {});
    character.FaceIndex = InternFace(string, {});
    character.BorderIndex = InternBorder(string, {});
    character.ShadowIndex = InternShadow(string, {});
    string.Characters = {character};
    ReleaseBorderRange(string, 0, 1);
    ReleaseFontRange(string, 0, 1);
    EXPECT_EQ(string.Characters[0].BorderIndex + string.Characters[0].FontIndex, -2);
    EXPECT_EQ(string.Fonts.size() + string.Borders.size(), 0U);
    EXPECT_EQ(string.Faces.size() + string.Shadows.size(), 2U);
}

}  // namespace
}  // namespace captionfx::test
