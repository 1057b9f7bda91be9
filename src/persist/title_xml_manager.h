// TitleXMLManager: a title's strings to and from XML.
//
// The format holds the whole document of every string, its positions included; those are starting values, since loading
// lays out anew. Every number of a title file is finite and every style index names an entry: a document that breaks
// this is refused, and a title that would is not saved.
#pragma once

#include "host/document.h"
#include "persist/xml_helper.h"

namespace captionfx {

/// Serves one load or one save. Results are statuses.
class TitleXMLManager : public XMLHelper {
public:
    /// `status` gets kTitleFailure where there is no XML service; then nothing else may be called.
    TitleXMLManager(PlatformServices& services, int32_t& status) : XMLHelper(services, status) {}

    // Each appends the strings of a document to `strings`, with records, styles and keyframes as they stand there and
    // without layers. What a failed one appended is not to be used.
    [[nodiscard]] int32_t LoadFromBuffer(std::u16string_view xml, std::vector<MetaString>& strings);
    [[nodiscard]] int32_t LoadFromFile(std::u16string_view path, std::vector<MetaString>& strings);
    /// `element` stands in the root's place.
    [[nodiscard]] int32_t LoadFromNode(void* element, std::vector<MetaString>& strings);

    /// Writes the document and a terminating zero, without the byte-order mark. `sizeInBytes` holds the buffer's size
    /// and gets the size needed; no buffer, or too small a one, is a question for it and no error.
    [[nodiscard]] int32_t SaveToBuffer(const std::vector<MetaString>& strings, char16_t* buffer, uint32_t& sizeInBytes);
    [[nodiscard]] int32_t SaveToFile(const std::vector<MetaString>& strings, std::u16string_view path);
    /// Appends "StringList" to `element`.
    [[nodiscard]] int32_t SaveToNode(const std::vector<MetaString>& strings, void* element);

private:
    [[nodiscard]] int32_t ReadTitle(std::vector<MetaString>& strings);
    [[nodiscard]] int32_t ReadStrings(const XmlNode& root, std::vector<MetaString>& strings);
    [[nodiscard]] bool ReadString(const XmlNode& node, MetaString& string);
    [[nodiscard]] bool ReadPaths(const XmlNode& node, MetaString& string);
    template <class Record>
    [[nodiscard]] bool ReadList(const XmlNode& parent, std::vector<Record>& records);
    template <class Record>
    [[nodiscard]] bool ReadRecord(const XmlNode& node, Record& record);

    [[nodiscard]] int32_t WriteTitle(const std::vector<MetaString>& strings);
    [[nodiscard]] int32_t WriteStrings(const XmlNode& root, const std::vector<MetaString>& strings);
    [[nodiscard]] bool WriteString(const XmlNode& list, size_t index, const MetaString& string);
    template <class Record>
    [[nodiscard]] bool WriteList(const XmlNode& parent, const std::vector<Record>& records);
    template <class Record>
    [[nodiscard]] bool WriteRecord(const XmlNode& node, size_t index, const Record& record);
};

}  // namespace captionfx
