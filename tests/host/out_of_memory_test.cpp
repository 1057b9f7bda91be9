// Memory that runs out at any single allocation: the call says so, and the title is sound and usable. A program of its
// own, since it puts its own operator new in the place of the library's.
#include <cstdlib>
#include <functional>
#include <new>
#include <utility>

#include <gtest/gtest.h>

#include "paths/placement_rows.h"
#include "support/fake_platform.h"
#include "support/title_text.h"

namespace {

int allocationsLeft = -1;  // -1: as many as there are

void* Allocate(size_t bytes) {
    if (allocationsLeft == 0) throw std::bad_alloc();
    if (allocationsLeft > 0) --allocationsLeft;
    void* const block = std::malloc(bytes);
    if (block == nullptr) throw std::bad_alloc();
    return block;
}

}  // namespace

void* operator new(size_t bytes) {
    return Allocate(bytes);
}
void* operator new[](size_t bytes) {
    return Allocate(bytes);
}
void* operator new(size_t bytes, const std::nothrow_t& /*tag*/) noexcept try {
    return Allocate(bytes);
} catch (const std::bad_alloc&) {
    return nullptr;
}
void operator delete(void* block) noexcept {
    std::free(block);
}
void operator delete[](void* block) noexcept {
    std::free(block);
}
void operator delete(void* block, size_t /*bytes*/) noexcept {
    std::free(block);
}
void operator delete[](void* block, size_t /*bytes*/) noexcept {
    std::free(block);
}

namespace captionfx::test {
namespace {

/// Runs `call` on fresh titles, failing at the first allocation, the second and so on until it needs no more, and
/// checks the title each time.
void FailEverywhere(const std::function<int32_t(TestTitle&)>& call,
                    const std::function<void(TestTitle&, int32_t)>& check) {
    for (int n = 0; n < 2000; ++n) {
        TestTitle owner;
        owner.Add(u"ab\r\ncd");
        allocationsLeft = n;
        const int32_t result = call(owner);
        const bool ranOut = allocationsLeft == 0;
        allocationsLeft = -1;
        for (const MetaString& string : owner.Title.Strings())
            ASSERT_EQ(StructureFault(string), "") << "allocation " << n;
        check(owner, result);
        std::vector<uint32_t> frame(320UL * 240);
        ASSERT_GT(owner.Title.InsertText(0, 0, u"x\r\ny"), 0);
        ASSERT_EQ(owner.Title.RenderFrame(frame.data(), 0), kTitleOk);
        ASSERT_EQ(StructureFault(owner.String()), "") << "allocation " << n;
        if (!ranOut) return;
    }
    FAIL() << "more allocations than anybody needs";
}

TEST(OutOfMemoryTest, InsertionIsWholeOrNotAtAll) {
    FailEverywhere([](TestTitle& owner) { return owner.Title.InsertText(0, 3, u"1\r\n\u4e00\r\n2"); },
                   [](TestTitle& owner, int32_t result) {
                       EXPECT_TRUE(result == 13 || result == kTitleOutOfMemory);
                       EXPECT_EQ(owner.Title.GetCharCount(0), result == 13 ? 13 : 6);
                       EXPECT_EQ(owner.String().Fonts.size(), result == 13 ? 2U : 1U) << "no style that nobody uses";
                   });
}

TEST(OutOfMemoryTest, SoIsDeletion) {
    for (const auto& [first, count] : {std::pair{1, 2}, {0, 6}}) {
        FailEverywhere(
            [first = first, count = count](TestTitle& owner) { return owner.Title.DeleteText(0, first, count); },
            [count = count](TestTitle& owner, int32_t result) {
                EXPECT_EQ(owner.Title.GetCharCount(0), result == kTitleOutOfMemory ? 6 : 6 - count);
            });
    }
}

TEST(OutOfMemoryTest, AStringIsThereOrNot) {
    FailEverywhere([](TestTitle& owner) { return owner.Title.AddString(); },
                   [](TestTitle& owner, int32_t result) {
                       EXPECT_EQ(owner.Title.GetStringCount(), result == kTitleOutOfMemory ? 1 : 2);
                   });
}

TEST(OutOfMemoryTest, ATitleIsLoadedWholeOrNotAtAll) {
    TestTitle other;
    other.Add(u"1\r\n\u4e00");
    const std::string text = SavedText(other.Title);
    const std::u16string wide(text.begin(), text.end());
    FailEverywhere([&](TestTitle& owner) { return owner.Title.LoadFromBuffer(wide.c_str()); },
                   [](TestTitle& owner, int32_t result) {
                       EXPECT_TRUE(result == kTitleOk || result == kTitleOutOfMemory);
                       EXPECT_EQ(owner.Title.GetStringCount(), result == kTitleOk ? 1 : 0);
                       if (result != kTitleOk) owner.Title.AddString();
                   });
    FailEverywhere(
        [](TestTitle& owner) {
            uint32_t size = 0;
            return owner.Title.SaveToBuffer(nullptr, &size);
        },
        [](TestTitle&, int32_t result) { EXPECT_TRUE(result == kTitleOk || result == kTitleOutOfMemory); });
}

TEST(OutOfMemoryTest, AFrameThatFailedLeavesNoTraces) {
    const auto fill = [](TestTitle& owner) {
        owner.Add(u"ab\r\ncd");
        // Two that share their face, but not their shadow, which alone is then missing when memory runs out.
        for (const float offset : {2.0F, 5.0F}) {
            MetaShadow shadow{};
            shadow.EnableFace = 1;
            shadow.OffsetX = offset;
            shadow.Alpha = 200;
            owner.Title.SetDefaultShadow(&shadow);
            owner.Title.InsertText(0, owner.Title.GetCharCount(0), u"e");
        }
    };
    TestTitle whole;
    fill(whole);
    const auto frameOf = [](TestTitle& owner) {
        std::vector<uint32_t> frame(320UL * 240, 0xFF000000);
        EXPECT_EQ(owner.Title.RenderFrame(frame.data(), 0), kTitleOk);
        return frame;
    };
    const std::vector<uint32_t> expected = frameOf(whole);
    for (int n = 0; n < 400; ++n) {
        TestTitle owner;
        fill(owner);
        std::vector<uint32_t> scratch(320UL * 240, 0xFF000000);
        allocationsLeft = n;
        const int32_t status = owner.Title.RenderFrame(scratch.data(), 0);
        const bool ranOut = allocationsLeft == 0;
        allocationsLeft = -1;
        EXPECT_TRUE(status == kTitleOk || status == kTitleOutOfMemory);
        ASSERT_EQ(frameOf(owner), expected) << "after the allocation " << n << " failed";
        if (!ranOut) return;
    }
}

TEST(OutOfMemoryTest, ResettingSaysSo) {
    FailEverywhere([](TestTitle& owner) { return owner.Title.ResetDefaults(); },
                   [](TestTitle& owner, int32_t result) {
                       FontSpec font{};
                       owner.Title.GetCharFont(-1, 0, &font);
                       EXPECT_EQ(font.Size, result == kTitleOk ? 24 : 64);
                       if (result == kTitleOk) owner.Title.AddString();
                   });
}

TEST(OutOfMemoryTest, PlacingACharacterNeedsNone) {
    for (const PathCatalogEntry& row : PathCatalog()) {
        if (row.Make == nullptr || row.ImageBased != 0) continue;
        const std::unique_ptr<CPathBase> path = Bound(row.Make, kTwoLines);
        CharPlacement at{};
        allocationsLeft = 1000;
        for (int32_t step = 0; step < 20; ++step) path->CalcCharacter(step % 2, 1, static_cast<float>(step) / 19, &at);
        EXPECT_EQ(std::exchange(allocationsLeft, -1), 1000) << row.PathName;
    }
}

}  // namespace
}  // namespace captionfx::test
