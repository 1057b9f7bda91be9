// The writing half of TitleXMLManager.
#include <cmath>

#include "persist/title_elements.h"
#include "persist/title_xml_manager.h"

namespace captionfx {
namespace {

/// Writes the attributes of the current element.
struct FieldWriter {
    XMLHelper& Xml;
    bool IsFinite = true;  ///< Whether all floats so far can be read again.

    void I(const char* name, int32_t value) { Xml.SetInt(name, value); }
    void U(const char* name, int32_t value) { Xml.SetUnsigned(name, static_cast<uint32_t>(value)); }
    void U(const char* name, uint32_t value) { Xml.SetUnsigned(name, value); }
    void F(const char* name, float value) {
        Xml.SetFloat(name, value);
        IsFinite = IsFinite && std::isfinite(value);
    }
    void B(const char* name, int32_t value) { Xml.SetBool(name, value); }
    template <size_t N>
    void S(const char* name, const char (&text)[N]) {
        Xml.SetString(name, TextOf(text));
    }
    void X(const char* name, const LogFont& font) {
        uint8_t bytes[sizeof font];
        std::memcpy(bytes, &font, sizeof font);
        Xml.SetBinary(name, bytes, sizeof bytes);
    }
};

}  // namespace

int32_t TitleXMLManager::SaveToBuffer(const std::vector<MetaString>& strings, char16_t* buffer, uint32_t& sizeInBytes) {
    constexpr size_t kUnit = sizeof(char16_t);  // the byte-order mark is one; its place is taken by the zero
    if (WriteTitle(strings) < 0) return kTitleFailure;
    const std::vector<uint8_t> bytes = SaveStream();
    if (bytes.size() < kUnit) return kTitleFailure;
    const auto size = static_cast<uint32_t>(bytes.size());
    const bool isQuestion = buffer == nullptr || sizeInBytes < size;
    sizeInBytes = size;
    if (isQuestion) return kTitleOk;
    std::memcpy(buffer, bytes.data() + kUnit, size - kUnit);
    buffer[size / kUnit - 1] = u'\0';
    return kTitleOk;
}

int32_t TitleXMLManager::SaveToFile(const std::vector<MetaString>& strings, std::u16string_view path) {
    const int32_t status = WriteTitle(strings);
    return status < 0 ? status : SaveFile(path);
}

int32_t TitleXMLManager::SaveToNode(const std::vector<MetaString>& strings, void* element) {
    return WriteStrings(NodeOf(element), strings);
}

int32_t TitleXMLManager::WriteTitle(const std::vector<MetaString>& strings) {
    const XmlNode root = AddRoot("CCaptionFx");
    SetCurrent(root);
    SetString("Version", "2.0");
    SetCurrent(AddChild(AddChild(root, "Header"), "Information"));
    SetString("Creator", "CCaptionFx Exported XML");
    ClearCurrent();
    return WriteStrings(root, strings);
}

int32_t TitleXMLManager::WriteStrings(const XmlNode& root, const std::vector<MetaString>& strings) {
    const XmlNode list = AddChild(root, TitleElement<MetaString>::kList);
    bool isGood = static_cast<bool>(list);
    for (size_t i = 0; isGood && i < strings.size(); ++i) isGood = WriteString(list, i, strings[i]);
    return isGood ? kTitleOk : kTitleFailure;
}

bool TitleXMLManager::WriteString(const XmlNode& list, size_t index, const MetaString& string) {
    const XmlNode node = AddChild(list, TitleElement<MetaString>::kItem);
    std::vector<TimedPath> paths;
    for (const auto& [time, path] : string.PathList) paths.push_back({.KeyFrame = time, .Path = path});
    return WriteRecord(node, index, string) && WriteList(node, string.Characters) && WriteList(node, string.Lines) &&
           WriteList(node, string.Paragraphs) && WriteList(node, string.Fonts) && WriteList(node, string.Faces) &&
           WriteList(node, string.Borders) && WriteList(node, string.Shadows) && WriteList(node, paths);
}

template <class Record>
bool TitleXMLManager::WriteList(const XmlNode& parent, const std::vector<Record>& records) {
    using Element = TitleElement<Record>;
    const XmlNode list = AddChild(parent, Element::kList);
    for (size_t i = 0; i < records.size(); ++i) {
        if (!WriteRecord(AddChild(list, Element::kItem), i, records[i])) return false;
    }
    return true;
}

template <class Record>
bool TitleXMLManager::WriteRecord(const XmlNode& node, size_t index, const Record& record) {
    if (SetCurrent(node) < 0) return false;
    SetUnsigned("Index", static_cast<uint32_t>(index));
    FieldWriter writer{.Xml = *this};
    TitleElement<Record>::Fields(writer, record);
    ClearCurrent();
    return writer.IsFinite;
}

}  // namespace captionfx
