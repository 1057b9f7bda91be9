// A host's thread with and without COM. A program of its own, whose main thread has none.
#include <windows.h>
#include <objbase.h>
#include <thread>

#include <captionfx/caption_fx.h>
#include <gtest/gtest.h>

namespace {

TEST(ComTest, WithoutItCallsFailAndTheTitleStaysUsable) {
    IKVT_CaptionFx* const title = GetTitleHost();
    ASSERT_NE(title, nullptr);
    EXPECT_EQ(title->AddString(), 0);
    EXPECT_EQ(title->InsertText(0, 0, u"text"), 0) << "the count as it was";
    uint32_t size = 0;
    EXPECT_LT(title->SaveToBuffer(nullptr, &size), 0);
    EXPECT_LT(title->SaveToFile(u"without_com.xml"), 0);
    EXPECT_LT(title->LoadFromBuffer(u"<CCaptionFx/>"), 0);
    EXPECT_LT(title->LoadFromFile(u"none.xml"), 0);
    EXPECT_LT(title->SaveToNode(&size), 0) << "the node is not looked at";
    FontSpec font{};
    EXPECT_EQ(title->GetCharFont(9, 9, &font), kTitleInvalidArgument);

    // Both kinds of apartments will do; each thread opens its own.
    for (const DWORD kind : {DWORD{COINIT_APARTMENTTHREADED}, DWORD{COINIT_MULTITHREADED}}) {
        std::thread([&] {
            ASSERT_TRUE(SUCCEEDED(CoInitializeEx(nullptr, kind)));
            const int32_t string = title->AddString();
            EXPECT_EQ(title->InsertText(string, 0, u"text"), 4);
            EXPECT_EQ(title->SaveToBuffer(nullptr, &size), kTitleOk);
            EXPECT_EQ(title->LoadFromBuffer(u"<CCaptionFx/>"), kTitleOk);
            CoUninitialize();
        }).join();
    }
    ReleaseTitleHost(title);
}

}  // namespace
