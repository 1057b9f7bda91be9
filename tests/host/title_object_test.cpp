// The interface as a host sees it: defaults, read-back, clearing, refusals.
#include "host/title_object.h"

#include <array>
#include <filesystem>
#include <limits>

#include <gtest/gtest.h>

#include "support/fake_platform.h"

namespace captionfx::test {
namespace {

constexpr int32_t kBadIndices[] = {-1, 1, 2147483647, -2147483647 - 1};

template <class Record>
bool SameBytes(const Record& a, const Record& b) {
    return std::memcmp(&a, &b, sizeof a) == 0;
}

/// Whether a getter gives this status and this record for a character of the first string.
template <class Get, class Record>
bool Gives(CCaptionFx& title, Get get, int32_t character, int32_t status, const Record& expected) {
    Record back;
    std::memset(&back, 0x5A, sizeof back);
    return (title.*get)(0, character, &back) == status && SameBytes(back, expected);
}

/// All records against the built-in values. The getters give the defaults for a bad index.
void ExpectBuiltInDefaults(CCaptionFx& title) {
    TitleRenderSettings s{};
    EXPECT_EQ(title.GetRenderSettings(&s), kTitleOk);
    EXPECT_TRUE(SameBytes(s, {0x3F800000, 1, 0, 0, 0, 320, 240, 1, 1, {0, 0, 320, 240}, 1, 1}));
    FontSpec font{};
    EXPECT_EQ(title.GetCharFont(0, 0, &font), kTitleInvalidArgument);
    EXPECT_EQ(TextOf(font.FaceName), u"Box") << "Arial is not installed here";
    EXPECT_EQ(font.Size, 24);
    constexpr int32_t kBad = kTitleInvalidArgument;
    EXPECT_TRUE(Gives(title, &CCaptionFx::GetCharFace, 0, kBad, MetaFace{1, 0xFFFFFF, 0xFFFFFF, 0, 255, 0}));
    EXPECT_TRUE(Gives(title, &CCaptionFx::GetCharBorder, 0, kBad, MetaBorder{1, 3, 0xFF, 0xFF, 0, 255, 0}));
    EXPECT_TRUE(Gives(title, &CCaptionFx::GetCharShadow, 0, kBad, MetaShadow{1, 1, 0, 0, 0, 128, 3, 3, 3, 0}));
    EXPECT_TRUE(Gives(title, &CCaptionFx::GetCharSpacing, 0, kBad, CharSpacing{1, 0}));
    EXPECT_TRUE(Gives(title, &CCaptionFx::GetCharParagraph, 0, kBad, ParagraphSpec{}));
    StringSpec string{};
    EXPECT_EQ(title.GetStringSettings(0, &string), kBad);
    EXPECT_TRUE(SameBytes(string, {100, 100, 1e9F, 0, 0, "PATH_NOEFFECT", 1, ""}));
}

TEST(TitleObjectTest, StartsWithTheBuiltInDefaults) {
    FakePlatform platform;
    CCaptionFx title(platform);
    ExpectBuiltInDefaults(title);
}

TEST(TitleObjectTest, ReadsStylesBack) {
    TestTitle owner;
    CCaptionFx& title = owner.Title;
    const StringSpec string{1, 2, 300, 4, 1, "PATH_FADE", 0.5F, "mask"};
    title.SetDefaultString(&string);
    title.AddString();
    title.InsertText(0, 0, u"z");
    // The styles of another paragraph and character than the first.
    FontSpec font = Font(u"Tall", 2000);
    font.Bold = 5;
    font.Italic = 0x302;
    title.SetDefaultFont(&font);
    const MetaFace face{1, 2, 3, 4, 5, 6};
    title.SetDefaultFace(&face);
    const MetaBorder border{1, 2, 3, 4, 5, 6, 7};
    title.SetDefaultBorder(&border);
    const MetaShadow shadow{1, 2, 3, 4, 5, 6, 7, 8, 9, 10};
    title.SetDefaultShadow(&shadow);
    const CharSpacing spacing{2, 7};
    title.SetDefaultCharSpacing(&spacing);
    EXPECT_EQ(title.InsertText(0, 1, u"\r\na"), 4);
    const ParagraphSpec paragraph{6, 1, 2, 3, 4, 5};
    CopyParagraphSettings(owner.String().Paragraphs[1], paragraph);

    FontSpec fontBack{};
    EXPECT_EQ(title.GetCharFont(0, 3, &fontBack), kTitleOk);
    EXPECT_EQ(TextOf(fontBack.FaceName), u"Tall");
    EXPECT_EQ(fontBack.Size, 1638) << "cut to the largest size";
    EXPECT_EQ(fontBack.Bold, 1);
    EXPECT_EQ(fontBack.Italic, 2) << "the low byte";
    for (const auto& [weight, bold] : {std::pair{400, 0}, {401, 1}}) {  // as a loaded title may hold
        owner.String().Fonts[1].LogFont.lfWeight = weight;
        title.GetCharFont(0, 3, &fontBack);
        EXPECT_EQ(fontBack.Bold, bold);
    }
    EXPECT_TRUE(Gives(title, &CCaptionFx::GetCharFace, 3, kTitleOk, face));
    EXPECT_TRUE(Gives(title, &CCaptionFx::GetCharBorder, 3, kTitleOk, border));
    EXPECT_TRUE(Gives(title, &CCaptionFx::GetCharShadow, 3, kTitleOk, shadow));
    EXPECT_TRUE(Gives(title, &CCaptionFx::GetCharSpacing, 3, kTitleOk, spacing));
    EXPECT_TRUE(Gives(title, &CCaptionFx::GetCharParagraph, 3, kTitleOk, paragraph));
    StringSpec stringBack{};
    EXPECT_EQ(title.GetStringSettings(0, &stringBack), kTitleOk);
    EXPECT_TRUE(SameBytes(stringBack, string));
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
    owner.String().PathList = {{0.0F, {"PATH_FADE", 0}}, {2.0F, {"PATH_FADE", 1}}};
    std::vector<uint32_t> frame(320UL * 240);
    title.RenderFrame(frame.data(), 1);
    EXPECT_EQ(owner.Platform.Memory.Alive, 2);

    EXPECT_EQ(title.ClearString(0), kTitleOk);
    EXPECT_EQ(owner.Platform.Memory.Alive, 1);
    EXPECT_EQ(title.GetStringCount(), 2);
    EXPECT_EQ(title.GetCharCount(0), 0);
    EXPECT_TRUE(owner.String().Fonts.empty() && owner.String().PathList.empty());
    EXPECT_EQ(owner.String().KeyCursor, nullptr);
    EXPECT_EQ(owner.String().PathObject, nullptr);
    StringSpec settings{};
    title.GetStringSettings(0, &settings);
    EXPECT_EQ(settings.Top, 8) << "the settings stay";
    EXPECT_EQ(title.InsertText(0, 0, u"xy"), 2);
    EXPECT_EQ(StructureFault(owner.String()), "");

    EXPECT_EQ(title.RemoveAllStrings(), kTitleOk);
    EXPECT_EQ(title.GetStringCount(), 0);
    EXPECT_EQ(owner.Platform.Memory.Alive, 0);
    title.GetStringSettings(0, &settings);
    EXPECT_EQ(settings.Left, 0) << "the defaults stay";
    EXPECT_EQ(title.AddString(), 0);

    title.RenderFrame(frame.data(), 1);
    const MetaFace face{};
    title.SetDefaultFace(&face);
    const CharSpacing spacing{};
    title.SetDefaultCharSpacing(&spacing);
    const ParagraphSpec paragraph{1, 1, 1, 1, 1, 1};
    title.SetDefaultParagraph(&paragraph);
    owner.ChangeSettings([](TitleRenderSettings& s) { s.Width = 99; });
    EXPECT_EQ(title.ResetDefaults(), kTitleOk);
    EXPECT_EQ(title.GetStringCount(), 0);
    EXPECT_EQ(owner.Platform.Memory.Alive, 0);
    ExpectBuiltInDefaults(title);
}

TEST(TitleObjectTest, RotationIsThatOfTheMomentOfAdding) {
    TestTitle owner;
    owner.ChangeSettings([](TitleRenderSettings& s) { s.ScaleX = 2; });
    owner.ChangeDefaultString([](StringSpec& string) { string.RotateDegree = 30; });
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
    MetaString& string = owner.String();
    string.Characters[0] = {97, 1, 2, 3, 4, 0, 5, 6, 7, 8, 9, 10};  // the stretch is not told
    string.Lines[0] = {1, 2, 3, 4, 5, 6, 7};
    string.Paragraphs[0] = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    owner.Title.DumpString(0);
    const std::vector<std::string> expected = {
        "==[Time: 4711] Begin=========================================================",
        "[String 0] Char 0: ch = 97, rect = (1.000000, 2.000000, 3.000000, 4.000000), spacing = 5.000000, Line = 6, "
        "Font = 7, Face = 8, Border = 9, Shadow = 10",
        "---------------------------------------------------------------------------------",
        "[String 0] Line 0: rect = (1.000000, 2.000000, 3.000000, 4.000000), Char[5 - 6], Paragraph = 7",
        "---------------------------------------------------------------------------------",
        "[String 0] Paragraph 0: rect = (1.000000, 2.000000, 3.000000, 4.000000), Line[5 - 6], Align = 7, LineSpace = "
        "8.000000, Before = 9.000000, After = 10.000000, Left = 11.000000, Right = 12.000000",
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
        for (int field = 0; field < 16; ++field) {
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
                                          .AfterSpace = value(14, 0),
                                          .LeftIndent = value(5, 0),
                                          .RightIndent = value(15, 0)};
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
            owner.ChangeDefaultString([&](StringSpec& string) {
                string.WidthLimit = value(8, 1e9F);
                string.RotateDegree = value(9, 10);
                string.PathProgress = value(10, 1);
                SetText(string.PathID, "PATH_FADE");
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
// Each slot answers as neither of its neighbours would.
TEST(TitleObjectTest, OperationsKeepTheirSlots) {
    TestTitle owner;
    IKVT_CaptionFx* const title = &owner.Title;
    void** const table = *reinterpret_cast<void***>(title);
    const auto call = [&](size_t slot, auto... arguments) {
        return reinterpret_cast<int32_t (*)(IKVT_CaptionFx*, decltype(arguments)...)>(table[slot])(title, arguments...);
    };
    // Slots 5 to 12 set records, here of nothing but the slot's number; 13 to 20 give them back in the same order.
    std::array<uint32_t, sizeof(StringSpec) / 4> record{};
    const FontSpec font = Font(u"Tall");
    call(5, &font);
    for (uint32_t slot = 6; slot <= 12; ++slot) {
        record.fill(slot);
        EXPECT_EQ(call(slot, &record), kTitleOk);
    }
    EXPECT_EQ(call(13, 0, 0, &record), kTitleInvalidArgument);
    EXPECT_EQ(record[0], u'T' | uint32_t{u'a'} << 16U);
    for (uint32_t slot = 14; slot <= 18; ++slot) {
        EXPECT_EQ(call(slot, 0, 0, &record), kTitleInvalidArgument);
        EXPECT_EQ(record[0], slot - 8);
    }
    EXPECT_EQ(call(19, 0, &record), kTitleInvalidArgument);  // GetStringSettings
    EXPECT_EQ(record[0], 11U);
    EXPECT_EQ(call(20, &record), kTitleOk);  // GetRenderSettings
    EXPECT_EQ(record[0], 12U);

    EXPECT_EQ(call(0), 0);                   // AddString
    EXPECT_EQ(call(3, 0, 0, u"a\r\nb"), 4);  // InsertText
    EXPECT_EQ(call(21, 0), 4);               // GetCharCount
    EXPECT_EQ(call(22, 0), 3);               // GetLineCount: the width limit lets nothing stand beside a character
    EXPECT_EQ(call(23), 1);                  // GetStringCount
    EXPECT_EQ(call(24, 0), 2);               // GetParagraphCount
    TitleRectF rect{};
    EXPECT_EQ(call(25, 0, 3, &rect, 1), kTitleOk);  // GetCharRect; there is no line 3
    EXPECT_EQ(call(26, 0, 2, &rect), kTitleOk);     // GetLineRect; there is no paragraph 2
    EXPECT_EQ(call(27, 0, 1, &rect), kTitleOk);     // GetParagraphRect
    EXPECT_EQ(call(28, 0, &rect), kTitleOk);        // GetStringRect
    char16_t text[5];
    EXPECT_EQ(call(29, 0, text), 4);  // GetStringText
    const std::u16string file = std::filesystem::path(CAPTIONFX_TEST_OUTPUT "/slots.xml").u16string();
    std::filesystem::create_directories(CAPTIONFX_TEST_OUTPUT);
    uint32_t size = 0;
    EXPECT_EQ(call(31, nullptr, &size), kTitleOk);  // SaveToBuffer
    EXPECT_GT(size, 0U);
    EXPECT_EQ(call(33, file.c_str()), kTitleOk);      // SaveToFile
    EXPECT_EQ(call(30, u"<CCaptionFx/>"), kTitleOk);  // LoadFromBuffer
    EXPECT_EQ(call(23), 0);
    EXPECT_EQ(call(32, file.c_str()), kTitleOk);  // LoadFromFile
    EXPECT_EQ(call(23), 1);
    EXPECT_EQ(call(34, nullptr), kTitleInvalidArgument);  // LoadFromNode; ElementsOfAHostCarryTitles has an element
    EXPECT_EQ(call(35, nullptr), kTitleInvalidArgument);  // SaveToNode
    EXPECT_EQ(call(36, nullptr, 0.0F), kTitleInvalidArgument);  // RenderFrame
    EXPECT_EQ(call(37, 0), kTitleOk);                           // DumpString
    EXPECT_FALSE(owner.Platform.Messages.empty());
    EXPECT_EQ(call(38, nullptr), kTitleNullPointer);  // GetFrameDirtyRect
    EXPECT_EQ(call(39), kTitleOk);                    // FlushRenderCaches
    EXPECT_EQ(call(4, 0, 3, 1), 3);                   // DeleteText
    EXPECT_EQ(call(1, 1), kTitleInvalidArgument);     // ClearString
    EXPECT_EQ(call(23), 1);
    EXPECT_EQ(call(2), kTitleOk);  // RemoveAllStrings
    EXPECT_EQ(call(23), 0);
    EXPECT_EQ(call(40), kTitleOk);  // ResetDefaults
    call(20, &record);
    EXPECT_EQ(record[0], 0x3F800000U);
}

TEST(TitleObjectTest, DestroyEndsTheObjectAndKeepsTheStorageUnlessTold) {
    FakePlatform platform;
    alignas(CCaptionFx) std::byte storage[sizeof(CCaptionFx)];
    IKVT_CaptionFx* const title = std::construct_at(reinterpret_cast<CCaptionFx*>(storage), platform);
    title->AddString();
    std::vector<uint32_t> frame(320UL * 240);
    title->RenderFrame(frame.data(), 0);
    EXPECT_EQ(platform.Memory.Alive, 1);
    auto* const destroy =
        reinterpret_cast<void* (*)(IKVT_CaptionFx*, uint32_t)>((*reinterpret_cast<void***>(title))[41]);
    EXPECT_EQ(destroy(title, 0), static_cast<void*>(storage));
    EXPECT_EQ(platform.Memory.Alive, 0);
}

}  // namespace
}  // namespace captionfx::test
