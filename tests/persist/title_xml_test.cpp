// The title format: what is written, what is read, what is refused, and what is mended.
#include <filesystem>
#include <fstream>

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/tree.h>

#include "support/fake_platform.h"
#include "support/title_text.h"

namespace captionfx::test {
namespace {

namespace fs = std::filesystem;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// "ab CR LF c" on the fake platform, as XML.
std::string SmallTitle() {
    TestTitle title;
    title.Add(u"ab\r\nc");
    return SavedText(title.Title);
}

// Size 64 at an em of 2048 is a ratio of 1/32: advance 1024/32, cell 2304/32, ascent 1536/32, descent -512/32, leadings
// 256/32 and 128/32, strikeout 640/32 and 64/32, underline -192/32 and 96/32. The character's top is ascent + internal
// leading - ascent; the line's height is internal leading + cell + external leading.
TEST(TitleXmlTest, EveryAttributeHasItsPlaceAndForm) {
    TestTitle title;
    const MetaShadow shadow{2, 0, 1, 2, -3, 4, 5, 6.5F, -7, 8};
    title.Title.SetDefaultShadow(&shadow);
    title.Add(u"A", 10, -20);
    MetaPath& key = title.String().PathList[1.5F];
    SetText(key.PathID, "PATH_FADE");
    key.PathProgress = 0.1234567F;
    const std::string logFont = "00F8FFFF" + std::string(24, '0') + "90010000" + "00000001" + std::string(8, '0') +
                                "42006F007800" + std::string(116, '0');
    EXPECT_EQ(
        SavedText(title.Title),
        "<?xml version=\"1.0\" encoding=\"UTF-16\"?>\n"
        "<CCaptionFx Version=\"2.0\"><Header><Information Creator=\"CCaptionFx Exported XML\"/></Header><StringList>"
        "<MetaString Index=\"0\" Left=\"10.000000\" Top=\"-20.000000\" Width=\"32.000000\" Height=\"84.000000\" "
        "ParagraphCount=\"0\" WidthLimit=\"1000000000.000000\" RotateDegree=\"0.000000\" Vertical=\"false\" "
        "PathID=\"PATH_NOEFFECT\" PathProgress=\"1.000000\" MaskFile=\"\">"
        "<CharList><MetaCharacter Index=\"0\" Value=\"65\" Left=\"0.000000\" Top=\"8.000000\" Width=\"32.000000\" "
        "Height=\"72.000000\" WidthScale=\"1.000000\" Spacing=\"0.000000\" LineIndex=\"0\" FontIndex=\"0\" "
        "FaceIndex=\"0\" BorderIndex=\"0\" ShadowIndex=\"0\"/></CharList>"
        "<LineList><MetaLine Index=\"0\" Left=\"0.000000\" Top=\"0.000000\" Width=\"32.000000\" Height=\"84.000000\" "
        "CharStart=\"0\" CharEnd=\"0\" ParagraphIndex=\"0\"/></LineList>"
        "<ParagraphList><MetaParagraph Index=\"0\" Left=\"0.000000\" Top=\"0.000000\" Width=\"32.000000\" "
        "Height=\"84.000000\" LineStart=\"0\" LineEnd=\"0\" Align=\"0\" LineSpace=\"0.000000\" "
        "BeforeSpace=\"0.000000\" AfterSpace=\"0.000000\" LeftIndent=\"0.000000\" RightIndent=\"0.000000\"/>"
        "</ParagraphList>"
        "<FontList><MetaFont Index=\"0\" LogFont=\"" +
            logFont +
            "\" SizeRatio=\"0.031250\" Ascent=\"48.000000\" Descent=\"-16.000000\" IntLead=\"8.000000\" "
            "ExtLead=\"4.000000\" StrikeoutPos=\"20.000000\" StrikeoutSize=\"2.000000\" UnderlinePos=\"-6.000000\" "
            "UnderlineSize=\"3.000000\"/></FontList>"
            "<FaceList><MetaFace Index=\"0\" Enable=\"true\" Color1=\"16777215\" Color2=\"16777215\" GradType=\"0\" "
            "Alpha=\"255\" BlurRadius=\"0\"/></FaceList>"
            "<BorderList><MetaBorder Index=\"0\" Enable=\"false\" Size=\"0\" Color1=\"0\" Color2=\"0\" "
            "GradType=\"0\" Alpha=\"0\" BlurRadius=\"0\"/></BorderList>"
            "<ShadowList><MetaShadow Index=\"0\" EnableFace=\"true\" EnableBorder=\"false\" Color1=\"1\" "
            "Color2=\"2\" GradType=\"-3\" Alpha=\"4\" BlurRadius=\"5\" OffsetX=\"6.500000\" OffsetY=\"-7.000000\" "
            "Height=\"true\"/></ShadowList>"
            "<PathList><MetaPath Index=\"0\" KeyFrame=\"1.500000\" PathID=\"PATH_FADE\" PathProgress=\"0.123457\"/>"
            "</PathList></MetaString></StringList></CCaptionFx>\n");
}

TEST(TitleXmlTest, SaveToBufferCountsBytesWithTheMark) {
    TestTitle title;
    title.Add(u"A");
    const size_t units = SavedText(title.Title).size();
    uint32_t size = 4711;
    EXPECT_EQ(title.Title.SaveToBuffer(nullptr, &size), kTitleOk);
    EXPECT_EQ(size, 2 * units + 2);
    std::vector<char16_t> buffer(units + 1, u'#');
    size -= 1;
    EXPECT_EQ(title.Title.SaveToBuffer(buffer.data(), &size), kTitleOk) << "too small is no error";
    EXPECT_EQ(buffer[0], u'#');
    EXPECT_EQ(size, 2 * units + 2);
    EXPECT_EQ(title.Title.SaveToBuffer(buffer.data(), &size), kTitleOk);
    EXPECT_EQ(buffer[0], u'<') << "no byte-order mark";
    EXPECT_EQ(buffer[units], u'\0');
    EXPECT_EQ(title.Title.SaveToBuffer(buffer.data(), nullptr), kTitleInvalidArgument);
}

TEST(TitleXmlTest, WhatIsMissingIsZeroAndWhatIsUnknownIsPassedOver) {
    TestTitle title;
    EXPECT_EQ(LoadText(title.Title, "<CCaptionFx/>"), kTitleOk);
    EXPECT_EQ(LoadText(title.Title, "<CCaptionFx Version='9'><StringList a='b'><Other/></StringList></CCaptionFx>"),
              kTitleOk);
    EXPECT_EQ(title.Title.GetStringCount(), 0);

    const std::string longName(260, 'x');
    ASSERT_EQ(LoadText(title.Title,
                       "<!DOCTYPE CCaptionFx><CCaptionFx><StringList><MetaString Vertical='True' "
                       "Left='&#50;.5' ParagraphCount='#1F' PathID='" +
                           longName + "' MaskFile='" + longName.substr(1) +
                           "'><Unknown><CharList/></Unknown><PathList><MetaPath KeyFrame='2' PathID='PATH_FADE'/>"
                           "<MetaPath KeyFrame='1'/><MetaPath KeyFrame='2' PathID='PATH_NOEFFECT'/></PathList>"
                           "</MetaString><x:MetaString xmlns:x='u'><MetaString/></x:MetaString>"
                           "<MetaString xmlns:x='u' x:Left='3' "
                           "PathID='&lt;&#38;&amp;'/></StringList><StringList><MetaString/></StringList></CCaptionFx>"),
              kTitleOk);
    ASSERT_EQ(title.Title.GetStringCount(), 2);
    const MetaString& string = title.String();
    EXPECT_EQ(string.Left, 2.5F);
    EXPECT_EQ(string.ParagraphCount, 31);
    EXPECT_EQ(string.Vertical, 0);
    EXPECT_STREQ(string.PathID, "");
    EXPECT_EQ(TextOf(string.MaskFile).size(), 259U);
    EXPECT_EQ(string.PathChanged, 1);
    ASSERT_EQ(string.PathList.size(), 2U);
    EXPECT_STREQ(string.PathList.at(2).PathID, "PATH_FADE") << "the first of equal times stays";
    EXPECT_STREQ(title.String(1).PathID, "<&&");
    EXPECT_EQ(title.String(1).Left, 0) << "what has a prefix is another's";
}

TEST(TitleXmlTest, FailuresAreLoggedAndLeaveAnEmptyTitle) {
    const fs::path folder = fs::path(CAPTIONFX_TEST_OUTPUT) / "title_xml";
    fs::create_directories(folder);
    const auto file = [&](const char* name, const std::string& bytes) {
        std::ofstream(folder / name, std::ios::binary) << bytes;
        return (folder / name).u16string();
    };
    const std::u16string good = file("good.xml", "<CCaptionFx><StringList><MetaString/></StringList></CCaptionFx>");
    const std::string at = folder.string();
    const std::string line = "KVT_Title2: Failed to load title from file ";
    const std::string fromBuffer = "KVT_Title2: Failed to load title from buffer!";
    const struct {
        std::function<int32_t(IKVT_CaptionFx&)> call;
        int32_t status;
        int32_t strings;
        std::string message;
    } rows[] = {
        {[](auto& t) { return t.LoadFromBuffer(nullptr); }, kTitleInvalidArgument, 1, ""},
        {[](auto& t) { return t.LoadFromFile(u""); }, kTitleInvalidArgument, 1, line + "!"},
        {[](auto& t) { return t.SaveToFile(u""); }, kTitleInvalidArgument, 1,
         "KVT_Title2: Failed to save title to file !"},
        {[&](auto& t) { return t.SaveToFile(folder.u16string().c_str()); }, kTitleFailure, 1,
         "KVT_Title2: Failed to save title to file " + at + "!"},
        {[](auto& t) { return t.LoadFromBuffer(u""); }, kTitleFailure, 0, fromBuffer},
        {[](auto& t) { return t.LoadFromBuffer(u"<CCaptionFx><StringList></CCaptionFx>"); }, kTitleFailure, 0,
         fromBuffer},
        {[](auto& t) { return t.LoadFromBuffer(u"<CCaptionFx a='\xD800'/>"); }, kTitleFailure, 0, fromBuffer},
        {[](auto& t) { return t.LoadFromBuffer(u"<!DOCTYPE c [<!ENTITY e 'x'>]><CCaptionFx a='&e;'/>"); },
         kTitleFailure, 0, fromBuffer},
        {[&](auto& t) { return t.LoadFromFile((folder / "none\u00e9.xml").u16string().c_str()); }, kTitleFailure, 0,
         line + at + "/none\u00e9.xml!"},
        {[&](auto& t) { return t.LoadFromFile(good.c_str()); }, kTitleOk, 1, ""},
        {[&](auto& t) {
             return t.LoadFromFile(file("odd.xml", "<?xml version='1.0' encoding='x-none'?><CCaptionFx/>").c_str());
         },
         kTitleFailure, 0, line + at + "/odd.xml!"},
        {[&](auto& t) {
             return t.LoadFromFile(
                 file("latin.xml", "<?xml version='1.0' encoding='ISO-8859-1'?><CCaptionFx a='\xE9'/>").c_str());
         },
         kTitleOk, 0, ""},
    };
    for (const auto& row : rows) {
        TestTitle title;
        title.Add(u"A");
        title.Platform.Messages.clear();
        EXPECT_EQ(row.call(title.Title), row.status) << row.message;
        EXPECT_EQ(title.Title.GetStringCount(), row.strings) << row.message;
        if (row.message.empty()) {
            EXPECT_THAT(title.Platform.Messages, IsEmpty());
        } else {
            EXPECT_THAT(title.Platform.Messages, ElementsAre(row.message));
        }
        EXPECT_EQ(title.Add(u"B"), row.strings) << "usable all the same";
    }
}

TEST(TitleXmlTest, WhatCannotBeMendedIsRefused) {
    const struct {
        const char *from, *to;
    } rows[] = {
        {"FontIndex=\"0\"", "FontIndex=\"1\""},
        {"BorderIndex=\"0\"", "BorderIndex=\"9\""},
        {"ShadowIndex=\"0\"", "ShadowIndex=\"2147483648\""},
        {"Left=\"0.000000\"", "Left=\"nan\""},
        {"WidthScale=\"1.000000\"", "WidthScale=\"1e39\""},
        {"LineSpace=\"0.000000\"", "LineSpace=\"1e999\""},
        {"<PathList/>", "<PathList><MetaPath KeyFrame=\"inf\"/></PathList>"},
    };
    for (const auto& row : rows) {
        TestTitle title;
        title.Add(u"Z");
        const std::string damaged = Replaced(SmallTitle(), row.from, row.to);
        ASSERT_NE(damaged, SmallTitle()) << row.from;
        EXPECT_EQ(LoadText(title.Title, damaged), kTitleFailure) << row.to;
        EXPECT_EQ(title.Title.GetStringCount(), 0) << row.to;
    }
    // The other way round: what could not be loaded again is not saved.
    TestTitle title;
    title.ChangeDefaultString([](StringSpec& string) { string.RotateDegree = std::numeric_limits<float>::infinity(); });
    title.Title.AddString();
    EXPECT_EQ(SavedText(title.Title), "");
    EXPECT_EQ(title.Platform.Messages.back(), "KVT_Title2: Failed to save title to buffer!");
}

// Each row damages the records of "ab CR LF c"; the text, its paragraphs and the paragraph's settings come out right.
TEST(TitleXmlTest, StructureThatDoesNotPartitionTheTextIsRebuilt) {
    const struct {
        const char *from, *to;
        uint32_t secondAlign;  ///< Of the paragraph of "c"; 2 in the file, 6 by default.
    } rows[] = {
        {"CharEnd=\"2\"", "CharEnd=\"7\"", 2},
        {"CharStart=\"3\"", "CharStart=\"2147483647\"", 2},
        {"LineIndex=\"0\"", "LineIndex=\"99\"", 2},
        {"LineStart=\"1\"", "LineStart=\"0\"", 2},
        {"ParagraphIndex=\"1\"", "ParagraphIndex=\"5\"", 6},
        {"Value=\"10\"", "Value=\"65546\"", 2},  // an LF with rubbish in its upper half
        {"<MetaLine Index=\"0\"", "<Gone Index=\"0\"", 6},
        {"<LineList>", "<Lines>", 6},
        {"<ParagraphList>", "<ParagraphList><MetaParagraph/>", 1},
    };
    for (const auto& row : rows) {
        std::string text = Replaced(SmallTitle(), "Align=\"0\"", "Align=\"1\"");
        text = Replaced(text, "Align=\"0\"", "Align=\"2\"");
        text = Replaced(text, row.from, row.to);
        if (std::string(row.from) == "<LineList>") text = Replaced(text, "</LineList>", "</Lines>");
        TestTitle title;
        const ParagraphSpec centred{6, 0, 0, 0, 0, 0};
        title.Title.SetDefaultParagraph(&centred);
        ASSERT_EQ(LoadText(title.Title, text), kTitleOk) << row.to;
        const MetaString& string = title.String();
        EXPECT_EQ(StructureFault(string), "") << row.to;
        EXPECT_EQ(string.Characters[3].Value, u'\n') << row.to;
        ASSERT_EQ(string.Paragraphs.size(), 2U) << row.to;
        EXPECT_EQ(string.Paragraphs[1].Align, row.secondAlign) << row.to;
    }
    TestTitle title;
    ASSERT_EQ(LoadText(title.Title,
                       "<CCaptionFx><StringList><MetaString><LineList><MetaLine/></LineList><ParagraphList>"
                       "<MetaParagraph/></ParagraphList></MetaString></StringList></CCaptionFx>"),
              kTitleOk);
    EXPECT_EQ(StructureFault(title.String()), "") << "records without text";
}

TEST(TitleXmlTest, ElementsOfAHostCarryTitles) {
    TestTitle title, other;
    title.Add(u"ab");
    other.Add(u"Z");
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(xmlNewDoc(nullptr), &xmlFreeDoc);
    xmlNode* const element = xmlNewDocNode(document.get(), nullptr, reinterpret_cast<const xmlChar*>("Host"), nullptr);
    xmlDocSetRootElement(document.get(), element);
    ASSERT_EQ(title.Title.SaveToNode(element), kTitleOk);
    ASSERT_NE(element->children, nullptr);
    EXPECT_STREQ(reinterpret_cast<const char*>(element->children->name), "StringList");
    EXPECT_EQ(element->children->next, nullptr);
    ASSERT_EQ(other.Title.LoadFromNode(element), kTitleOk);
    EXPECT_EQ(SavedText(other.Title), SavedText(title.Title));

    // The status tells whether the element could be read, not what was in it.
    EXPECT_EQ(other.Title.LoadFromNode(element->children), kTitleOk) << "no list in there";
    EXPECT_EQ(other.Title.GetStringCount(), 0);
    EXPECT_EQ(other.Title.SaveToNode(document.get()), kTitleOk) << "no element, nothing to write to";
    EXPECT_EQ(other.Title.SaveToNode(nullptr), kTitleInvalidArgument);
}

TEST(TitleXmlTest, WithoutServicesCallsFail) {
    TestTitle title;
    title.Add(u"A");
    const std::string text = SavedText(title.Title);
    title.Platform.HasFontLink = false;
    EXPECT_EQ(LoadText(title.Title, text), kTitleFailure);
    title.Platform.HasXml = false;
    uint32_t size = 0;
    EXPECT_EQ(title.Title.SaveToBuffer(nullptr, &size), kTitleFailure);
    EXPECT_EQ(title.Title.LoadFromNode(&size), kTitleFailure);
    EXPECT_EQ(title.Title.SaveToNode(&size), kTitleFailure);
}

}  // namespace
}  // namespace captionfx::test
