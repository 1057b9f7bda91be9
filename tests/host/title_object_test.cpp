// The interface as a host sees it: defaults, read-back, clearing, refusals.
#include "host/title_object.h"

#include <bit>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

constexpr int32_t kBadIndices[] = {-1, 1, 2147483647, -2147483647 - 1};

TEST(TitleObjectTest, StartsWithTheBuiltInDefaults) {
    FakePlatform platform;
    CCaptionFx title(platform);
    TitleRenderSettings s{};
    EXPECT_EQ(title.GetRenderSettings(&s), kTitleOk);
    EXPECT_EQ(s.Reserved, 0x3F800000U);
    EXPECT_EQ(s.AntialiasMode, 1);
    EXPECT_EQ(s.Width, 320);
    EXPECT_EQ(s.ClipRect.bottom, 240);
    EXPECT_EQ(s.GlyphCacheEnabled, 1);
    EXPECT_EQ(s.MaxThreads, 1);

    // The getters fill their output with the defaults for a bad index.
    FontSpec font{};
    EXPECT_EQ(title.GetCharFont(0, 0, &font), kTitleInvalidArgument);
    EXPECT_EQ(TextOf(font.FaceName), u"Box") << "Arial is not installed here";
    EXPECT_EQ(font.Size, 24);
    MetaBorder border{};
    EXPECT_EQ(title.GetCharBorder(0, 0, &border), kTitleInvalidArgument);
    EXPECT_EQ(border.Size, 3);
    EXPECT_EQ(border.Color1, 0xFFU);
    MetaShadow shadow{};
    EXPECT_EQ(title.GetCharShadow(0, 0, &shadow), kTitleInvalidArgument);
    EXPECT_EQ(shadow.Alpha, 128);
    EXPECT_EQ(shadow.OffsetY, 3);
    MetaFace face{};
    EXPECT_EQ(title.GetCharFace(-1, 0, &face), kTitleInvalidArgument);
    EXPECT_EQ(face.Color2, 0xFFFFFFU);
    CharSpacing spacing{};
    EXPECT_EQ(title.GetCharSpacing(0, 0, &spacing), kTitleInvalidArgument);
    EXPECT_EQ(spacing.WidthScale, 1);
    StringSpec string{};
    EXPECT_EQ(title.GetStringSettings(0, &string), kTitleInvalidArgument);
    EXPECT_EQ(string.Left, 100);
    EXPECT_EQ(string.WidthLimit, 1e9F);
    EXPECT_STREQ(string.PathID, "PATH_NOEFFECT");
    EXPECT_EQ(string.PathProgress, 1);
}

TEST(TitleObjectTest, ReadsStylesBack) {
    TestTitle owner;
    CCaptionFx& title = owner.Title;
    FontSpec font = Font(u"Tall", 2000);
    font.Bold = 5;
    font.Italic = 1;
    title.SetDefaultFont(&font);
    const ParagraphSpec paragraph{
        .Align = 6, .LineSpace = 1, .BeforeSpace = 2, .AfterSpace = 3, .LeftIndent = 4, .RightIndent = 5};
    title.SetDefaultParagraph(&paragraph);
    const CharSpacing spacing{.WidthScale = 2, .Spacing = 7};
    title.SetDefaultCharSpacing(&spacing);
    owner.Add(u"a");
    FontSpec back{};
    EXPECT_EQ(title.GetCharFont(0, 0, &back), kTitleOk);
    EXPECT_EQ(TextOf(back.FaceName), u"Tall");
    EXPECT_EQ(back.Size, 1638) << "cut to the largest size";
    EXPECT_EQ(back.Bold, 1);
    EXPECT_EQ(back.Italic, 1);
    ParagraphSpec paragraphBack{};
    EXPECT_EQ(title.GetCharParagraph(0, 0, &paragraphBack), kTitleOk);
    EXPECT_EQ(std::memcmp(&paragraph, &paragraphBack, sizeof paragraph), 0);
    CharSpacing spacingBack{};
    EXPECT_EQ(title.GetCharSpacing(0, 0, &spacingBack), kTitleOk);
    EXPECT_EQ(spacingBack.Spacing, 7);
}

TEST(TitleObjectTest, RefusesBadIndicesAndNullPointers) {
    TestTitle owner;
    CCaptionFx& title = owner.Title;
    owner.Add(u"a");
    for (const int32_t bad : kBadIndices) {
        MetaFace face{};
        EXPECT_EQ(title.GetCharFace(bad, 0, &face), kTitleInvalidArgument);
        EXPECT_EQ(title.GetCharFace(0, bad, &face), kTitleInvalidArgument);
        EXPECT_EQ(title.ClearString(bad), kTitleInvalidArgument);
        EXPECT_EQ(title.DumpString(bad), kTitleInvalidArgument);
        EXPECT_EQ(title.InsertText(bad, 0, u"x"), 0);
        EXPECT_EQ(title.GetCharCount(bad) + title.GetLineCount(bad) + title.GetParagraphCount(bad), 0);
    }
    title.SetDefaultFont(nullptr);
    EXPECT_EQ(title.SetDefaultFace(nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.SetDefaultBorder(nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.SetDefaultShadow(nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.SetDefaultCharSpacing(nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.SetDefaultParagraph(nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.SetDefaultString(nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.SetRenderSettings(nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.GetRenderSettings(nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.GetCharFont(0, 0, nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.GetCharFace(0, 0, nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.GetStringSettings(0, nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.GetCharRect(0, 0, nullptr, 0), kTitleInvalidArgument);
    EXPECT_EQ(title.GetStringRect(0, nullptr), kTitleInvalidArgument);
    EXPECT_EQ(title.GetFrameDirtyRect(nullptr), kTitleNullPointer);
    EXPECT_EQ(title.GetCharCount(0), 1);
}

TEST(TitleObjectTest, ClearsAtThreeDepths) {
    TestTitle owner;
    CCaptionFx& title = owner.Title;
    owner.Add(u"a", 7, 8);
    owner.Add(u"b");
    owner.String().PathList[1.0F] = {};
    std::vector<uint32_t> frame(320UL * 240);
    title.RenderFrame(frame.data(), 1);
    EXPECT_EQ(owner.Platform.Memory.Alive, 2);

    EXPECT_EQ(title.ClearString(0), kTitleOk);
    EXPECT_EQ(owner.Platform.Memory.Alive, 1);
    EXPECT_EQ(title.GetStringCount(), 2);
    EXPECT_EQ(title.GetCharCount(0), 0);
    EXPECT_TRUE(owner.String().Fonts.empty() && owner.String().PathList.empty());
    StringSpec settings{};
    title.GetStringSettings(0, &settings);
    EXPECT_EQ(settings.Top, 8) << "the settings stay";
    EXPECT_EQ(title.InsertText(0, 0, u"xy"), 2);

    EXPECT_EQ(title.RemoveAllStrings(), kTitleOk);
    EXPECT_EQ(title.GetStringCount(), 0);
    EXPECT_EQ(owner.Platform.Memory.Alive, 0);
    title.GetStringSettings(0, &settings);
    EXPECT_EQ(settings.Left, 0) << "the defaults stay";
    EXPECT_EQ(title.AddString(), 0);

    title.RenderFrame(frame.data(), 1);
    owner.ChangeSettings([](TitleRenderSettings& s) { s.Width = 99; });
    EXPECT_EQ(title.ResetDefaults(), kTitleOk);
    EXPECT_EQ(title.GetStringCount(), 0);
    EXPECT_EQ(owner.Platform.Memory.Alive, 0);
    TitleRenderSettings s{};
    title.GetRenderSettings(&s);
    EXPECT_EQ(s.Width, 320);
    title.GetStringSettings(0, &settings);
    EXPECT_EQ(settings.Left, 100);
}

TEST(TitleObjectTest, RotationIsThatOfTheMomentOfAdding) {
    TestTitle owner;
    owner.ChangeSettings([](TitleRenderSettings& s) { s.ScaleX = 2; });
    owner.ChangeDefaultString([](StringSpec& spec) { spec.RotateDegree = 30; });
    owner.Add(u"a", 10, 20);
    const MetaString& string = owner.String();
    EXPECT_FLOAT_EQ(string.RotateSin, -0.5F);
    EXPECT_FLOAT_EQ(string.RotateCos, 0.8660254F);
    EXPECT_EQ(string.OriginX, 20);
    EXPECT_EQ(string.OriginY, 20);
}

TEST(TitleObjectTest, DumpsOneLineARecord) {
    TestTitle owner;
    owner.Add(u"a");
    owner.Title.DumpString(0);
    const std::vector<std::string> expected = {
        "==[Time: 4711] Begin=========================================================",
        "[String 0] Char 0: ch = 97, rect = (0.000000, 8.000000, 32.000000, 72.000000), spacing = 0.000000, Line = 0, "
        "Font = 0, Face = 0, Border = 0, Shadow = 0",
        "---------------------------------------------------------------------------------",
        "[String 0] Line 0: rect = (0.000000, 0.000000, 32.000000, 84.000000), Char[0 - 0], Paragraph = 0",
        "---------------------------------------------------------------------------------",
        "[String 0] Paragraph 0: rect = (0.000000, 0.000000, 32.000000, 84.000000), Line[0 - 0], Align = 0, LineSpace "
        "= "
        "0.000000, Before = 0.000000, After = 0.000000, Left = 0.000000, Right = 0.000000",
        "==[Time: 4711] End===========================================================",
    };
    EXPECT_EQ(owner.Platform.Messages, expected);
}

// Every float that a host can set, at its worst, through layout and a frame. The sanitizers are the judge.
TEST(TitleObjectTest, SurvivesAnyFloat) {
    constexpr float kWorst[] = {std::numeric_limits<float>::quiet_NaN(),
                                std::numeric_limits<float>::infinity(),
                                -std::numeric_limits<float>::infinity(),
                                3e38F,
                                -3e38F,
                                3e9F,
                                -1.0F,
                                0.0F,
                                1e-40F};
    for (const float worst : kWorst) {
        for (int field = 0; field < 14; ++field) {
            TestTitle owner;
            CCaptionFx& title = owner.Title;
            const auto value = [&](int f, float usual) { return f == field ? worst : usual; };
            FontSpec font = Font(u"Box", value(0, 12));
            title.SetDefaultFont(&font);
            const CharSpacing spacing{.WidthScale = value(1, 1), .Spacing = value(2, 0)};
            title.SetDefaultCharSpacing(&spacing);
            const ParagraphSpec paragraph{.Align = 6,
                                          .LineSpace = value(3, 0),
                                          .BeforeSpace = value(4, 0),
                                          .AfterSpace = 0,
                                          .LeftIndent = value(5, 0),
                                          .RightIndent = 0};
            title.SetDefaultParagraph(&paragraph);
            const MetaBorder border{
                .Enable = 1, .Size = 1, .Color1 = 1, .Color2 = 2, .GradType = 4, .Alpha = 255, .BlurRadius = 1};
            title.SetDefaultBorder(&border);
            const MetaShadow shadow{.EnableFace = 1,
                                    .EnableBorder = 1,
                                    .Color1 = 0,
                                    .Color2 = 1,
                                    .GradType = 0,
                                    .Alpha = 200,
                                    .BlurRadius = 3,
                                    .OffsetX = value(6, 2),
                                    .OffsetY = value(7, 3),
                                    .Height = field % 2};
            title.SetDefaultShadow(&shadow);
            owner.ChangeDefaultString([&](StringSpec& spec) {
                spec.WidthLimit = value(8, 1e9F);
                spec.RotateDegree = value(9, 10);
                spec.PathProgress = value(10, 1);
                SetText(spec.PathID, "PATH_FADE");
            });
            owner.ChangeSettings([&](TitleRenderSettings& s) {
                s.Width = s.Height = 32;
                s.ScaleX = value(11, 1);
                s.ScaleY = value(12, 1);
            });
            owner.Add(u"a\r\nb", value(13, 1), value(13, 1));
            std::vector<uint32_t> frame(32UL * 32);
            EXPECT_EQ(title.RenderFrame(frame.data(), worst), kTitleOk);
            EXPECT_EQ(title.FlushRenderCaches(), kTitleOk);
            EXPECT_EQ(title.DumpString(0), kTitleOk);
            EXPECT_EQ(StructureFault(owner.String()), "") << "field " << field << " value " << worst;
        }
    }
}

// The table is the contract with hosts of other compilers: slots by number, the object's first word is its address.
TEST(TitleObjectTest, OperationsKeepTheirSlots) {
    TestTitle owner;
    IKVT_CaptionFx* const title = &owner.Title;
    void** const table = *reinterpret_cast<void***>(title);
    const auto call = [&](size_t slot, auto... arguments) {
        return reinterpret_cast<int32_t (*)(IKVT_CaptionFx*, decltype(arguments)...)>(table[slot])(title, arguments...);
    };
    EXPECT_EQ(call(0), 0);                   // AddString
    EXPECT_EQ(call(3, 0, 0, u"a\r\nb"), 4);  // InsertText
    EXPECT_EQ(call(21, 0), 4);               // GetCharCount
    EXPECT_EQ(call(22, 0), 2);               // GetLineCount
    EXPECT_EQ(call(23), 1);                  // GetStringCount
    TitleRenderSettings settings{};
    EXPECT_EQ(call(20, &settings), kTitleOk);  // GetRenderSettings
    EXPECT_EQ(settings.Width, 320);
    for (const size_t later : {30U, 32U, 33U, 34U, 35U}) EXPECT_EQ(call(later, nullptr), kTitleFailure) << later;
    EXPECT_EQ(call(31, nullptr, nullptr), kTitleFailure);       // SaveToBuffer
    EXPECT_EQ(call(4, 0, 3, 1), 3);                             // DeleteText
    EXPECT_EQ(call(36, nullptr, 0.0F), kTitleInvalidArgument);  // RenderFrame
    EXPECT_EQ(call(38, nullptr), kTitleNullPointer);            // GetFrameDirtyRect
    EXPECT_EQ(call(40), kTitleOk);                              // ResetDefaults
    EXPECT_EQ(call(23), 0);
}

TEST(TitleObjectTest, DestroyEndsTheObjectAndKeepsTheStorageUnlessTold) {
    FakePlatform platform;
    alignas(CCaptionFx) std::byte storage[sizeof(CCaptionFx)];
    IKVT_CaptionFx* const title = std::construct_at(reinterpret_cast<CCaptionFx*>(storage), platform);
    title->AddString();
    std::vector<uint32_t> frame(320UL * 240);
    title->RenderFrame(frame.data(), 0);
    EXPECT_EQ(platform.Memory.Alive, 1);
    EXPECT_EQ(title->Destroy(0), static_cast<void*>(storage));
    EXPECT_EQ(platform.Memory.Alive, 0);
}

}  // namespace
}  // namespace captionfx::test
