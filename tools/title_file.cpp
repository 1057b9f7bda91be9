#include "tools/title_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <string_view>

#include <libxml/parser.h>
#include <libxml/tree.h>

#include "tools/text_encoding.h"

namespace captionfx {
namespace {

/// The first of libxml2's errors while it stands; the others follow from it. Nothing is printed.
struct FirstError {
    std::string place, reason = "is no XML";

    FirstError() { xmlSetStructuredErrorFunc(this, &Keep); }
    FirstError(const FirstError&) = delete;
    FirstError& operator=(const FirstError&) = delete;
    ~FirstError() { xmlSetStructuredErrorFunc(nullptr, nullptr); }

    static void Keep(void* self, xmlError* error) {
        auto& first = *static_cast<FirstError*>(self);
        if (!first.place.empty() || error->message == nullptr) return;
        first.place = std::to_string(error->line) + ":" + std::to_string(error->int2);
        first.reason = error->message;
        while (first.reason.ends_with('\n')) first.reason.pop_back();
    }
};

const xmlChar* XmlText(const char* text) {
    return reinterpret_cast<const xmlChar*>(text);
}

bool IsElement(const xmlNode& node, std::string_view name) {
    return node.type == XML_ELEMENT_NODE && name == reinterpret_cast<const char*>(node.name);
}

xmlNode* ChildOf(const xmlNode* parent, std::string_view name) {
    xmlNode* child = parent == nullptr ? nullptr : parent->children;
    while (child != nullptr && !IsElement(*child, name)) child = child->next;
    return child;
}

std::vector<xmlNode*> ItemsOf(const xmlNode* list, std::string_view name) {
    std::vector<xmlNode*> items;
    for (xmlNode* child = list == nullptr ? nullptr : list->children; child != nullptr; child = child->next) {
        if (IsElement(*child, name)) items.push_back(child);
    }
    return items;
}

std::string AttributeOf(const xmlNode* node, const char* name) {
    const std::unique_ptr<xmlChar, decltype(xmlFree)> text(xmlGetNoNsProp(node, XmlText(name)), xmlFree);
    return text ? reinterpret_cast<const char*>(text.get()) : "";
}

/// The number that a text begins with, 0 without one; nothing for one that is not finite.
std::optional<float> FiniteNumber(std::string_view text) {
    float value = 0;
    const auto [rest, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error == std::errc::result_out_of_range || !std::isfinite(value)) return std::nullopt;
    return value;
}

[[noreturn]] void Fail(const std::filesystem::path& path, const std::string& place, const std::string& reason) {
    throw std::runtime_error(path.string() + (place.empty() ? "" : ":" + place) + ": " + reason);
}

/// Where a fault is: all of a title often stands on one line, so that elements count more than lines.
std::string PlaceOf(const xmlNode& node, size_t string, size_t item) {
    std::string place = std::to_string(xmlGetLineNo(&node)) + ": string " + std::to_string(string);
    if (!IsElement(node, "MetaString"))
        place += ", " + std::string(reinterpret_cast<const char*>(node.name)) + " " + std::to_string(item);
    return place;
}

/// Every number with a point must be a finite one.
void CheckNumbers(const std::filesystem::path& path, const xmlNode& node, size_t string, size_t item) {
    static const std::set<std::string_view> kNumbers{
        "Left",          "Top",       "Width",       "WidthLimit", "RotateDegree", "PathProgress",  "WidthScale",
        "Spacing",       "LineSpace", "BeforeSpace", "AfterSpace", "LeftIndent",   "RightIndent",   "SizeRatio",
        "Ascent",        "Descent",   "IntLead",     "ExtLead",    "StrikeoutPos", "StrikeoutSize", "UnderlinePos",
        "UnderlineSize", "OffsetX",   "OffsetY",     "KeyFrame",   "Height"};
    for (const xmlAttr* attribute = node.properties; attribute != nullptr; attribute = attribute->next) {
        const char* const name = reinterpret_cast<const char*>(attribute->name);
        if (!kNumbers.contains(name)) continue;
        const std::string text = AttributeOf(&node, name);
        if (!FiniteNumber(text))
            Fail(path, PlaceOf(node, string, item), std::string(name) + " '" + text + "' is no finite number");
    }
}

long Integer(const std::string& text) {
    constexpr int kDecimal = 10, kHexadecimal = 16;
    return text.starts_with('#') ? std::strtol(text.c_str() + 1, nullptr, kHexadecimal)
                                 : std::strtol(text.c_str(), nullptr, kDecimal);
}

/// Every style index of a character must name an item of its list.
void CheckStyles(const std::filesystem::path& path, const xmlNode& character, size_t string, size_t item,
                 const std::map<std::string, size_t>& counts) {
    for (const auto& [name, count] : counts) {
        const std::string text = AttributeOf(&character, name.c_str());
        const long index = Integer(text);
        if (index < 0 || static_cast<size_t>(index) >= count) {
            Fail(path, PlaceOf(character, string, item),
                 name + " '" + text + "' names none of the " + std::to_string(count) + " items of its list");
        }
    }
}

void CheckString(const std::filesystem::path& path, const xmlNode& node, size_t string) {
    CheckNumbers(path, node, string, 0);
    for (const xmlNode* list = node.children; list != nullptr; list = list->next) {
        size_t item = 0;
        for (const xmlNode* child = list->children; child != nullptr; child = child->next) {
            if (child->type == XML_ELEMENT_NODE) CheckNumbers(path, *child, string, item++);
        }
    }
    const auto count = [&](const char* list, const char* item) { return ItemsOf(ChildOf(&node, list), item).size(); };
    const std::map<std::string, size_t> counts{{"FontIndex", count("FontList", "MetaFont")},
                                               {"FaceIndex", count("FaceList", "MetaFace")},
                                               {"BorderIndex", count("BorderList", "MetaBorder")},
                                               {"ShadowIndex", count("ShadowList", "MetaShadow")}};
    size_t item = 0;
    for (const xmlNode* const character : ItemsOf(ChildOf(&node, "CharList"), "MetaCharacter")) {
        CheckStyles(path, *character, string, item++, counts);
    }
}

std::vector<xmlNode*> StringNodes(const xmlDoc* document) {
    return ItemsOf(ChildOf(xmlDocGetRootElement(document), "StringList"), "MetaString");
}

/// The face name inside a font record: 32 UTF-16 units from byte 28 on, as hexadecimal digits, lower byte first.
std::string FaceNameOf(const std::string& logFont) {
    constexpr size_t kNameAt = 28, kUnits = 32;
    constexpr int kHexadecimal = 16;
    std::u16string name;
    for (size_t unit = 0; unit < kUnits && 2 * (kNameAt + 2 * unit) + 4 <= logFont.size(); ++unit) {
        uint8_t bytes[2] = {};
        for (size_t b = 0; b < 2; ++b) {
            const char* const digits = logFont.data() + 2 * (kNameAt + 2 * unit + b);
            std::from_chars(digits, digits + 2, bytes[b], kHexadecimal);
        }
        const auto value = static_cast<char16_t>(bytes[0] | bytes[1] << 8);
        if (value == u'\0') break;
        name += value;
    }
    return Utf8FromUtf16(name);
}

FileString FileStringOf(const xmlNode* node) {
    FileString string;
    for (const xmlNode* const key : ItemsOf(ChildOf(node, "PathList"), "MetaPath")) {
        string.keys.push_back({.time = FiniteNumber(AttributeOf(key, "KeyFrame")).value_or(0.0F),
                               .effect = AttributeOf(key, "PathID"),
                               .progress = FiniteNumber(AttributeOf(key, "PathProgress")).value_or(0.0F)});
    }
    std::ranges::stable_sort(string.keys, {}, &Keyframe::time);
    std::vector<std::string> names;
    for (const xmlNode* const font : ItemsOf(ChildOf(node, "FontList"), "MetaFont")) {
        names.push_back(FaceNameOf(AttributeOf(font, "LogFont")));
    }
    for (const xmlNode* const character : ItemsOf(ChildOf(node, "CharList"), "MetaCharacter")) {
        string.faceNames.push_back(names.at(static_cast<size_t>(Integer(AttributeOf(character, "FontIndex")))));
    }
    return string;
}

std::string Decimal(float value) {
    std::array<char, 64> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end};
}

xmlDoc* Raw(const std::shared_ptr<void>& document) {
    return static_cast<xmlDoc*>(document.get());
}

}  // namespace

TitleFile::TitleFile(const std::filesystem::path& path) : path_(path) {
    std::error_code ignored;
    if (std::filesystem::is_directory(path, ignored)) Fail(path, "", "is a folder, not a title");
    std::ifstream file(path, std::ios::binary);
    if (!file) Fail(path, "", "cannot be opened: " + std::generic_category().message(errno));
    const std::string bytes{std::istreambuf_iterator<char>(file), {}};
    if (bytes.empty()) Fail(path, "", "is empty");

    const FirstError error;
    document_.reset(xmlReadMemory(bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                                  XML_PARSE_NONET | XML_PARSE_BIG_LINES),
                    xmlFreeDoc);
    if (!document_) Fail(path, error.place, error.reason);
    const xmlNode* const root = xmlDocGetRootElement(Raw(document_));
    if (!IsElement(*root, "CCaptionFx"))
        Fail(path, std::to_string(xmlGetLineNo(root)), "is no title: its root is not CCaptionFx");
    size_t string = 0;
    for (const xmlNode* const node : StringNodes(Raw(document_))) CheckString(path, *node, string++);
}

void TitleFile::LoadInto(IKVT_CaptionFx& title) const {
    const int32_t status = title.LoadFromNode(xmlDocGetRootElement(Raw(document_)));
    const auto count = static_cast<int32_t>(StringNodes(Raw(document_)).size());
    if (status != kTitleOk || title.GetStringCount() != count) Fail(path_, "", "the library refuses this title");
}

std::vector<FileString> TitleFile::Strings() const {
    std::vector<FileString> strings;
    for (const xmlNode* const node : StringNodes(Raw(document_))) strings.push_back(FileStringOf(node));
    return strings;
}

void SetKeyframes(IKVT_CaptionFx& title, const std::vector<Keyframe>& keys) {
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(xmlNewDoc(nullptr), &xmlFreeDoc);
    xmlNode* const root = xmlNewDocNode(document.get(), nullptr, XmlText("CCaptionFx"), nullptr);
    xmlDocSetRootElement(document.get(), root);
    xmlNode* const list =
        title.SaveToNode(root) == kTitleOk ? ChildOf(StringNodes(document.get()).at(0), "PathList") : nullptr;
    if (list == nullptr) throw std::bad_alloc();
    for (const Keyframe& key : keys) {
        xmlNode* const item = xmlNewChild(list, nullptr, XmlText("MetaPath"), nullptr);
        xmlNewProp(item, XmlText("KeyFrame"), XmlText(Decimal(key.time).c_str()));
        xmlNewProp(item, XmlText("PathID"), XmlText(key.effect.c_str()));
        xmlNewProp(item, XmlText("PathProgress"), XmlText(Decimal(key.progress).c_str()));
    }
    if (title.LoadFromNode(root) != kTitleOk || title.GetStringCount() == 0) throw std::bad_alloc();
}

}  // namespace captionfx
