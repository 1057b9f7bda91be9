// XMLHelper: numbers, booleans and bytes as the text of XML attributes, the same in every locale.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/services.h"

namespace captionfx {

/// One document and its current node, on whose attributes reads and writes act. It serves one load or one save. Results
/// are statuses: 0, kTitleFailure, or kTitleInvalidArgument; memory that runs out is thrown.
class XMLHelper {
public:
    /// Takes a new document. `status` gets kTitleFailure where the service cannot be had; then nothing else may be
    /// called.
    XMLHelper(PlatformServices& services, int32_t& status);
    XMLHelper(const XMLHelper&) = delete;
    XMLHelper& operator=(const XMLHelper&) = delete;

    [[nodiscard]] int32_t LoadFile(std::u16string_view path);
    [[nodiscard]] int32_t LoadXML(std::u16string_view text);
    [[nodiscard]] int32_t SaveFile(std::u16string_view path);
    /// UTF-16 with byte-order mark; empty when it failed.
    [[nodiscard]] std::vector<uint8_t> SaveStream();

    [[nodiscard]] XmlNode Document() { return document_->Document(); }
    [[nodiscard]] XmlNode NodeOf(void* element) { return document_->NodeOf(element); }
    [[nodiscard]] XmlNode SelectChild(const XmlNode& parent, const char* name);
    [[nodiscard]] std::vector<XmlNode> SelectChildren(const XmlNode& parent, const char* name);
    XmlNode AddChild(const XmlNode& parent, const char* name);
    XmlNode AddRoot(const char* name);
    /// An empty node is refused, and none is current then.
    int32_t SetCurrent(const XmlNode& node);
    int32_t ClearCurrent();

    /// Copies a text and its terminating zero. `size` holds the longest text that `buffer` can take, zero not counted,
    /// and gets the length of the text; a null buffer asks for it. A text that is too long gives an empty one and
    /// kTitleInvalidArgument.
    int32_t GetString(const char* name, char* buffer, size_t* size) const;
    /// Decimal, cut to 32 bits, or hexadecimal after a "#". What is no number, or longer than 255 bytes, gives 0; so it
    /// does for floats.
    int32_t GetInt(const char* name, int32_t& value) const;
    /// Decimal with a point. Infinite where 32 bits do not hold it.
    int32_t GetFloat(const char* name, float& value) const;
    /// True for exactly "true".
    int32_t GetBool(const char* name, int32_t& value) const;
    /// Pairs of hexadecimal digits. `size` holds the bytes that `buffer` can take and gets those there are; a null
    /// buffer asks for them, too small a one is left alone.
    int32_t GetBinary(const char* name, uint8_t* buffer, size_t* size) const;

    /// What XML cannot carry, bytes that are not UTF-8 and control characters, becomes a question mark each.
    int32_t SetString(const char* name, std::string_view text);
    int32_t SetUnsigned(const char* name, uint32_t value);
    int32_t SetInt(const char* name, int32_t value);
    /// Six decimals.
    int32_t SetFloat(const char* name, float value);
    int32_t SetBool(const char* name, int32_t value);
    /// Two upper-case digits a byte.
    int32_t SetBinary(const char* name, const uint8_t* bytes, size_t size);

private:
    /// Text of a number, at most 255 bytes; empty for one that is missing or longer.
    [[nodiscard]] std::string NumberText(const char* name) const;
    int32_t Set(const char* name, const std::string& text);

    std::unique_ptr<XmlDocument> document_;
    XmlNode current_;
};

}  // namespace captionfx
