#include "persist/xml_helper.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <limits>
#include <system_error>
#include <utf8.h>

#include "host/caption_fx.h"

namespace captionfx {
namespace {

constexpr size_t kLongestNumber = 255;
constexpr int kHexadecimal = 16;

/// Length in bytes of the character at `text`'s start that XML can carry, or 0.
size_t CarriedLength(std::string_view text) {
    const char* const end = text.data() + text.size();
    const char* next = text.data();
    uint32_t point = 0;
    try {
        point = utf8::next(next, end);
    } catch (const utf8::exception&) {
        return 0;
    }
    const bool isControl = point < 0x20 && point != '\t' && point != '\n' && point != '\r';
    const bool isNoCharacter = point == 0xFFFE || point == 0xFFFF;
    return isControl || isNoCharacter ? 0 : static_cast<size_t>(next - text.data());
}

std::string Carried(std::string_view text) {
    std::string carried;
    while (!text.empty()) {
        const size_t length = CarriedLength(text);
        carried += length == 0 ? std::string_view("?") : text.substr(0, length);
        text.remove_prefix(std::max<size_t>(length, 1));
    }
    return carried;
}

/// The number that `text` begins with, as the C library's atof reads it in the "C" locale; 0 when there is none.
double LeadingNumber(std::string_view text) {
    text.remove_prefix(std::min(text.find_first_not_of(" \t\n\v\f\r"), text.size()));
    if (text.starts_with('+') && !text.starts_with("+-")) text.remove_prefix(1);
    double value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc::result_out_of_range) return value;
    // A number this short leaves the range only by its exponent, whose sign says at which end.
    const size_t exponent = text.find_first_of("eE");
    const bool isTiny = exponent != std::string_view::npos && text.substr(exponent + 1).starts_with('-');
    const double magnitude = isTiny ? 0 : std::numeric_limits<double>::infinity();
    return text.starts_with('-') ? -magnitude : magnitude;
}

}  // namespace

XMLHelper::XMLHelper(PlatformServices& services, int32_t& status) : document_(services.CreateXmlDocument()) {
    status = document_ ? kTitleOk : kTitleFailure;
}

int32_t XMLHelper::LoadFile(std::u16string_view path) {
    return document_->LoadFile(path) ? kTitleOk : kTitleFailure;
}

int32_t XMLHelper::LoadXML(std::u16string_view text) {
    return document_->LoadText(text) ? kTitleOk : kTitleFailure;
}

int32_t XMLHelper::SaveFile(std::u16string_view path) {
    return document_->SaveFile(path) ? kTitleOk : kTitleFailure;
}

std::vector<uint8_t> XMLHelper::SaveStream() {
    return document_->Save();
}

XmlNode XMLHelper::SelectChild(const XmlNode& parent, const char* name) {
    return document_->Child(parent, name);
}

std::vector<XmlNode> XMLHelper::SelectChildren(const XmlNode& parent, const char* name) {
    return document_->Children(parent, name);
}

XmlNode XMLHelper::AddChild(const XmlNode& parent, const char* name) {
    return document_->AddChild(parent, name);
}

XmlNode XMLHelper::AddRoot(const char* name) {
    return document_->AddChild(document_->Document(), name);
}

int32_t XMLHelper::SetCurrent(const XmlNode& node) {
    current_ = node;
    return current_ ? kTitleOk : kTitleFailure;
}

int32_t XMLHelper::ClearCurrent() {
    current_ = {};
    return kTitleOk;
}

int32_t XMLHelper::GetString(const char* name, char* buffer, size_t* size) const {
    if (size == nullptr) return kTitleInvalidArgument;
    const size_t room = *size;
    const auto text = document_->Attribute(current_, name);
    if (buffer != nullptr) buffer[0] = '\0';
    *size = text ? text->size() : 0;
    if (!text) return kTitleFailure;
    if (buffer == nullptr) return kTitleOk;
    if (room < text->size()) return kTitleInvalidArgument;
    text->copy(buffer, text->size());
    buffer[text->size()] = '\0';
    return kTitleOk;
}

std::string XMLHelper::NumberText(const char* name) const {
    const auto text = document_->Attribute(current_, name);
    return text && text->size() <= kLongestNumber ? *text : std::string();
}

int32_t XMLHelper::GetInt(const char* name, int32_t& value) const {
    const std::string text = NumberText(name);
    if (text.starts_with('#')) {
        const auto number = std::strtoull(text.c_str() + 1, nullptr, kHexadecimal);
        value = static_cast<int32_t>(std::min<uint64_t>(number, std::numeric_limits<uint32_t>::max()));
    } else {
        constexpr int kDecimal = 10;
        value = static_cast<int32_t>(std::clamp<int64_t>(std::strtoll(text.c_str(), nullptr, kDecimal),
                                                         std::numeric_limits<int32_t>::min(),
                                                         std::numeric_limits<int32_t>::max()));
    }
    return text.empty() ? kTitleFailure : kTitleOk;
}

int32_t XMLHelper::GetFloat(const char* name, float& value) const {
    const std::string text = NumberText(name);
    value = static_cast<float>(LeadingNumber(text));
    return text.empty() ? kTitleFailure : kTitleOk;
}

int32_t XMLHelper::GetBool(const char* name, int32_t& value) const {
    const auto text = document_->Attribute(current_, name);
    value = text && *text == "true" ? 1 : 0;
    return text ? kTitleOk : kTitleFailure;
}

int32_t XMLHelper::GetBinary(const char* name, uint8_t* buffer, size_t* size) const {
    if (size == nullptr) return kTitleInvalidArgument;
    const size_t room = *size;
    const auto text = document_->Attribute(current_, name);
    *size = text ? text->size() / 2 : 0;
    if (!text) return kTitleFailure;
    if (buffer == nullptr) return kTitleOk;
    if (room < *size) return kTitleInvalidArgument;
    for (size_t i = 0; i < *size; ++i) {
        const char* const digits = text->data() + 2 * i;
        buffer[i] = 0;  // what is no digit ends a byte early
        std::from_chars(digits, digits + 2, buffer[i], kHexadecimal);
    }
    return kTitleOk;
}

int32_t XMLHelper::Set(const char* name, const std::string& text) {
    if (!current_) return kTitleFailure;
    document_->SetAttribute(current_, name, text);
    return kTitleOk;
}

int32_t XMLHelper::SetString(const char* name, std::string_view text) {
    return Set(name, Carried(text));
}

int32_t XMLHelper::SetUnsigned(const char* name, uint32_t value) {
    return Set(name, std::to_string(value));
}

int32_t XMLHelper::SetInt(const char* name, int32_t value) {
    return Set(name, std::to_string(value));
}

int32_t XMLHelper::SetFloat(const char* name, float value) {
    constexpr int kDecimals = 6;
    std::array<char, 64> text{};  // the largest float has 39 digits before the point
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), static_cast<double>(value),
                                            std::chars_format::fixed, kDecimals);
    return Set(name, std::string(text.data(), end));
}

int32_t XMLHelper::SetBool(const char* name, int32_t value) {
    return Set(name, value != 0 ? "true" : "false");
}

int32_t XMLHelper::SetBinary(const char* name, const uint8_t* bytes, size_t size) {
    if (bytes == nullptr) return kTitleFailure;
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string text;
    for (size_t i = 0; i < size; ++i) {
        text += kDigits[bytes[i] >> 4U];
        text += kDigits[bytes[i] & 15U];
    }
    return Set(name, text);
}

}  // namespace captionfx
