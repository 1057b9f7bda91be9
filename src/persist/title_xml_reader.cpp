// The reading half of TitleXMLManager.
#include <algorithm>
#include <cmath>
#include <utility>

#include "persist/title_elements.h"
#include "persist/title_xml_manager.h"

namespace captionfx {
namespace {

/// Reads the attributes of the current element. What is missing is 0, false or empty.
struct FieldReader {
    const XMLHelper& Xml;
    bool IsFinite = true;  ///< Whether all floats so far are numbers that a title may hold.

    void I(const char* name, int32_t& value) { Xml.GetInt(name, value); }
    void U(const char* name, int32_t& value) { Xml.GetInt(name, value); }
    void U(const char* name, uint32_t& value) {
        int32_t number = 0;
        Xml.GetInt(name, number);
        value = static_cast<uint32_t>(number);
    }
    void F(const char* name, float& value) {
        Xml.GetFloat(name, value);
        IsFinite = IsFinite && std::isfinite(value);
    }
    void B(const char* name, int32_t& value) { Xml.GetBool(name, value); }
    template <size_t N>
    void S(const char* name, char (&text)[N]) {
        size_t size = N - 1;
        Xml.GetString(name, text, &size);
    }
    void X(const char* name, LogFont& font) {
        uint8_t bytes[sizeof font] = {};
        size_t size = sizeof bytes;
        Xml.GetBinary(name, bytes, &size);
        std::memcpy(&font, bytes, sizeof font);
    }
};

/// Whether every character names its styles.
bool HasItsStyles(const MetaString& string) {
    return std::ranges::all_of(string.Characters, [&](const MetaCharacter& character) {
        return IsIndexOf(string.Fonts, character.FontIndex) && IsIndexOf(string.Faces, character.FaceIndex) &&
               IsIndexOf(string.Borders, character.BorderIndex) && IsIndexOf(string.Shadows, character.ShadowIndex);
    });
}

}  // namespace

int32_t TitleXMLManager::LoadFromBuffer(std::u16string_view xml, std::vector<MetaString>& strings) {
    const int32_t status = LoadXML(xml);
    return status < 0 ? status : ReadTitle(strings);
}

int32_t TitleXMLManager::LoadFromFile(std::u16string_view path, std::vector<MetaString>& strings) {
    const int32_t status = LoadFile(path);
    return status < 0 ? status : ReadTitle(strings);
}

int32_t TitleXMLManager::LoadFromNode(void* element, std::vector<MetaString>& strings) {
    return ReadStrings(NodeOf(element), strings);
}

int32_t TitleXMLManager::ReadTitle(std::vector<MetaString>& strings) {
    const XmlNode root = SelectChild(Document(), "CCaptionFx");
    return root ? ReadStrings(root, strings) : kTitleFailure;
}

int32_t TitleXMLManager::ReadStrings(const XmlNode& root, std::vector<MetaString>& strings) {
    using Element = TitleElement<MetaString>;
    for (const XmlNode& node : SelectChildren(SelectChild(root, Element::kList), Element::kItem)) {
        MetaString string;
        if (!ReadString(node, string)) return kTitleFailure;
        strings.push_back(std::move(string));
    }
    return kTitleOk;
}

bool TitleXMLManager::ReadString(const XmlNode& node, MetaString& string) {
    string.PathChanged = 1;
    const bool isRead = ReadRecord(node, string) && ReadList(node, string.Characters) && ReadList(node, string.Lines) &&
                        ReadList(node, string.Paragraphs) && ReadList(node, string.Fonts) &&
                        ReadList(node, string.Faces) && ReadList(node, string.Borders) &&
                        ReadList(node, string.Shadows) && ReadPaths(node, string);
    for (MetaCharacter& character : string.Characters) character.Value = static_cast<char16_t>(character.Value);
    return isRead && HasItsStyles(string);
}

bool TitleXMLManager::ReadPaths(const XmlNode& node, MetaString& string) {
    std::vector<TimedPath> paths;
    if (!ReadList(node, paths)) return false;
    for (const TimedPath& timed : paths) string.PathList.emplace(timed.KeyFrame, timed.Path);
    return true;
}

template <class Record>
bool TitleXMLManager::ReadList(const XmlNode& parent, std::vector<Record>& records) {
    using Element = TitleElement<Record>;
    for (const XmlNode& node : SelectChildren(SelectChild(parent, Element::kList), Element::kItem)) {
        Record record{};
        if (!ReadRecord(node, record)) return false;
        records.push_back(record);
    }
    return true;
}

template <class Record>
bool TitleXMLManager::ReadRecord(const XmlNode& node, Record& record) {
    SetCurrent(node);
    FieldReader reader{.Xml = *this};
    TitleElement<Record>::Fields(reader, record);
    ClearCurrent();
    return reader.IsFinite;
}

}  // namespace captionfx
