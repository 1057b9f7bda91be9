// The tool's own list of effects against the library's catalogue, which hosts do not see.
#include "tools/effect_list.h"

#include <gtest/gtest.h>

#include "paths/path_catalog.h"

namespace captionfx {
namespace {

TEST(EffectListTest, IsTheCatalogue) {
    const std::span<const PathCatalogEntry> catalog = PathCatalog();
    const std::span<const EffectInfo> list = EffectList();
    ASSERT_EQ(list.size(), catalog.size());
    for (size_t i = 0; i < list.size(); ++i) {
        EXPECT_EQ(list[i].name, catalog[i].PathName);
        EXPECT_EQ(list[i].effectClass, catalog[i].ClassKey) << list[i].name;
        EXPECT_EQ(list[i].passes, catalog[i].PassCount) << list[i].name;
        EXPECT_EQ(list[i].isImageBased, catalog[i].ImageBased == 1) << list[i].name;
    }
}

}  // namespace
}  // namespace captionfx
