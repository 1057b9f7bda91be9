// The interface as a host sees it: defaults, read-back, clearing, refusals.
#include "host/title_object.h"

#include <array>
#include <bit>
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
    for (const int32_t status :
         {title.SetDefaultFace(nullptr), title.SetDefaultBorder(nullptr), title.SetDefaultShadow(nullptr),
          title.SetDefaultCharSpacing(nullptr), title.SetDefaultParagraph(nullptr), title.SetDefaultString(nullptr),
          title.SetRenderSettings(nullptr), title.GetRenderSettings(nullptr), title.GetCharFont(0, 0, nullptr),
          title.GetCharFace(0, 0, nullptr), title.GetStringSettings(0, nullptr), title.GetCharRect(0, 0, nullptr, 0),
          title.GetStringRect(0, nullptr)}) {
        EXPECT_EQ(status, kTitleInvalidArgument);
    }
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
    using Limits = std::numeric_limits<float>;
    constexpr float kWorst[] = {
        Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), 3e38F, -3e38F, 3e9F, -1, 0, 1e-40F};
    for (const float worst : kWorst) {
        for (int field = 0; field < 16; ++field) {
            TestTitle owner;
            CCaptionFx& title = owner.Title;
            const auto value = [&](int f, float usual) { return f == field ? worst : usual; };
            FontSpec font = Font(u"Box", value(0, 12));
            title.SetDefaultFont(&font);
            const CharSpacing spacing{.WidthScale = value(1, 1), .Spacing = value(2, 0)};
            title.SetDefaultCharSpacing(&spacing);
            const ParagraphSpec paragraph{6, value(3, 0), value(4, 0), value(14, 0), value(5, 0), value(15, 0)};
            title.SetDefaultParagraph(&paragraph);
            const MetaBorder border{1, 1, 1, 2, 4, 255, 1};
            title.SetDefaultBorder(&border);
            const MetaShadow shadow{1, 1, 0, 1, 0, 200, 3, value(6, 2), value(7, 3), field % 2};
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

/// A pointer to a virtual operation holds its offset in the table, plus 1.
template <class Operation>
size_t SlotOf(Operation operation) {
    return (std::bit_cast<std::array<size_t, 2>>(operation)[0] - 1) / sizeof(void*);
}

// The table is the contract with hosts of other compilers: slots by number, the object's first word is its address.
TEST(TitleObjectTest, OperationsKeepTheirSlots) {
    using T = IKVT_CaptionFx;
    const auto slots = [](auto... all) { return std::vector<size_t>{SlotOf(all)...}; }(
                           &T::AddString, &T::ClearString, &T::RemoveAllStrings, &T::InsertText, &T::DeleteText,
                           &T::SetDefaultFont, &T::SetDefaultFace, &T::SetDefaultBorder, &T::SetDefaultShadow,
                           &T::SetDefaultCharSpacing, &T::SetDefaultParagraph, &T::SetDefaultString,
                           &T::SetRenderSettings, &T::GetCharFont, &T::GetCharFace, &T::GetCharBorder,
                           &T::GetCharShadow, &T::GetCharSpacing, &T::GetCharParagraph, &T::GetStringSettings,
                           &T::GetRenderSettings, &T::GetCharCount, &T::GetLineCount, &T::GetStringCount,
                           &T::GetParagraphCount, &T::GetCharRect, &T::GetLineRect, &T::GetParagraphRect,
                           &T::GetStringRect, &T::GetStringText, &T::LoadFromBuffer, &T::SaveToBuffer, &T::LoadFromFile,
                           &T::SaveToFile, &T::LoadFromNode, &T::SaveToNode, &T::RenderFrame, &T::DumpString,
                           &T::GetFrameDirtyRect, &T::FlushRenderCaches, &T::ResetDefaults, &T::Destroy);
    ASSERT_EQ(slots.size(), 42U);
    for (size_t i = 0; i < slots.size(); ++i) EXPECT_EQ(slots[i], i);
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
