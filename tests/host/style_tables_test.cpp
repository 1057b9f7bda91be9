// Find-or-add, and dropping the entries that only a range of characters uses.
#include "host/style_tables.h"

#include <gtest/gtest.h>

namespace captionfx::test {
namespace {

MetaFace FaceWithAlpha(int32_t alpha) {
    MetaFace face{};
    face.Alpha = alpha;
    return face;
}

/// A string whose characters use faces of these alphas.
MetaString Using(std::initializer_list<int32_t> alphas) {
    MetaString string;
    for (const int32_t alpha : alphas) {
        MetaCharacter character{};
        character.FaceIndex = InternFace(string, FaceWithAlpha(alpha));
        string.Characters.push_back(character);
    }
    return string;
}

std::vector<int32_t> Indices(const MetaString& string) {
    std::vector<int32_t> indices;
    for (const MetaCharacter& character : string.Characters) indices.push_back(character.FaceIndex);
    return indices;
}

TEST(StyleTablesTest, TheFirstEqualEntryIsFound) {
    MetaString string = Using({7, 8, 7});
    EXPECT_EQ(Indices(string), (std::vector{0, 1, 0}));
    string.Faces.push_back(FaceWithAlpha(8));  // as a loaded title may hold
    EXPECT_EQ(InternFace(string, FaceWithAlpha(8)), 1);
    EXPECT_EQ(InternFace(string, FaceWithAlpha(9)), 3);
}

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

TEST(StyleTablesTest, RangesDropWhatNobodyElseUses) {
    const struct {
        int32_t first, count;
        std::vector<int32_t> indices;  // afterwards
        std::vector<int32_t> alphas;   // of the table
    } cases[] = {
        {1, 1, {0, -1, 0, 1}, {5, 7}},    // the only user of 6: later entries move down
        {0, 1, {0, 1, 0, 2}, {5, 6, 7}},  // shared with a character outside: stays
        {0, 3, {-1, -1, -1, 0}, {7}},     // both users inside
        {0, 4, {-1, -1, -1, -1}, {}},    {2, 0, {0, 1, 0, 2}, {5, 6, 7}},
    };
    for (const auto& c : cases) {
        MetaString string = Using({5, 6, 5, 7});
        EXPECT_EQ(ReleaseFaceRange(string, c.first, c.count), 1);
        EXPECT_EQ(Indices(string), c.indices);
        std::vector<int32_t> alphas;
        for (const MetaFace& face : string.Faces) alphas.push_back(face.Alpha);
        EXPECT_EQ(alphas, c.alphas);
    }
}

TEST(StyleTablesTest, BadRangesAreRejected) {
    MetaString string = Using({5, 6});
    for (const auto& [first, count] : {std::pair{-1, 1}, {2, 0}, {1, 2}, {1, 2147483647}}) {
        EXPECT_EQ(ReleaseFaceRange(string, first, count), 0) << first << ' ' << count;
        EXPECT_EQ(ReleaseFontRange(string, first, count), 0);
        EXPECT_EQ(ReleaseBorderRange(string, first, count), 0);
        EXPECT_EQ(ReleaseShadowRange(string, first, count), 0);
    }
    EXPECT_EQ(string.Faces.size(), 2U);
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
