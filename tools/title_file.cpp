#include "tools/title_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <map>
#include <new>
#include <optional>
#include <set>
#include <stdexcept>
#include <string_view>

#include <libxml/SAX2.h>
#include <libxml/parser.h>

#include "tools/input_file.h"
#include "tools/output_file.h"
#include "tools/text_encoding.h"
#include "tools/title_nodes.h"

namespace captionfx {
namespace {

/// The first of libxml2's errors while it stands; the others follow from it. Nothing is printed. The handler is one of
/// the whole thread, which may be that of a program with XML of its own: it gets its handler back.
struct FirstError {
    std::string place, reason = "is no XML";

    FirstError() { xmlSetStructuredErrorFunc(this, &Keep); }
    FirstError(const FirstError&) = delete;
    FirstError& operator=(const FirstError&) = delete;
    ~FirstError() { xmlSetStructuredErrorFunc(formerContext_, formerHandler_); }

    static void Keep(void* self, xmlError* error) {
        auto& first = *static_cast<FirstError*>(self);
        if (!first.place.empty() || error->message == nullptr) return;
        first.place = std::to_string(error->line) + ":" + std::to_string(error->int2);
        first.reason = error->message;
        while (first.reason.ends_with('\n')) first.reason.pop_back();
    }

private:
    void* const formerContext_ = xmlStructuredErrorContext;
    const xmlStructuredErrorFunc formerHandler_ = xmlStructuredError;
};

/// The library refuses entities, which can keep a parser busy for hours.
void RefuseEntity(void* context, const xmlChar* /*name*/, int /*type*/, const xmlChar* /*publicId*/,
                  const xmlChar* /*systemId*/, xmlChar* /*content*/) {
    auto* const parser = static_cast<xmlParserCtxt*>(context);
    auto& error = *static_cast<FirstError*>(parser->_private);
    error.place = std::to_string(xmlSAX2GetLineNumber(parser)) + ":" + std::to_string(xmlSAX2GetColumnNumber(parser));
    error.reason = "declares an entity, which no title may";
    xmlStopParser(parser);
}

[[noreturn]] void Fail(const std::filesystem::path& path, const std::string& place, const std::string& reason) {
    throw std::runtime_error(path.string() + (place.empty() ? "" : ":" + place) + ": " + reason);
}

/// Where a fault is: all of a title often stands on one line, so that elements count more than lines.
std::string PlaceOf(const xmlNode& node, size_t string, size_t item) {
    std::string place = std::to_string(xmlGetLineNo(&node)) + ": string " + std::to_string(string);
    if (!IsElement(node, "MetaString")) {
        place.append(", ").append(reinterpret_cast<const char*>(node.name)).append(" ").append(std::to_string(item));
    }
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
            std::string reason = name;
            reason.append(" '").append(text).append("' names none of the ").append(std::to_string(count));
            Fail(path, PlaceOf(character, string, item), reason.append(" items of its list"));
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
    string.keys = KeyframesOf(*node);
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

void AddKeyframe(xmlNode* list, const Keyframe& key) {
    xmlNode* const item = xmlNewChild(list, nullptr, XmlText("MetaPath"), nullptr);
    xmlNewProp(item, XmlText("KeyFrame"), XmlText(Decimal(key.time).c_str()));
    xmlNewProp(item, XmlText("PathID"), XmlText(key.effect.c_str()));
    xmlNewProp(item, XmlText("PathProgress"), XmlText(Decimal(key.progress).c_str()));
}

}  // namespace

struct TitleFile::Document {
    std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> Xml;
};

TitleFile::TitleFile(const std::filesystem::path& path) : path_(path) {
    const std::string bytes = ReadWholeFile(path);
    FirstError error;
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> parser(xmlNewParserCtxt(), &xmlFreeParserCtxt);
    if (!parser) throw std::bad_alloc();
    parser->_private = &error;
    parser->sax->entityDecl = &RefuseEntity;
    document_ = std::make_shared<const Document>(
        Document{{xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, nullptr,
                                    XML_PARSE_NONET | XML_PARSE_BIG_LINES),
                  &xmlFreeDoc}});
    if (!document_->Xml) Fail(path, error.place, error.reason);
    const xmlNode* const root = xmlDocGetRootElement(document_->Xml.get());
    if (!IsElement(*root, "CCaptionFx"))
        Fail(path, std::to_string(xmlGetLineNo(root)), "is no title: its root is not CCaptionFx");
    size_t string = 0;
    for (const xmlNode* const node : StringNodes(document_->Xml.get())) CheckString(path, *node, string++);
}

void TitleFile::LoadInto(IKVT_CaptionFx& title) const {
    const int32_t status = title.LoadFromNode(xmlDocGetRootElement(document_->Xml.get()));
    const auto count = static_cast<int32_t>(StringNodes(document_->Xml.get()).size());
    if (status != kTitleOk || title.GetStringCount() != count) Fail(path_, "", "the library refuses this title");
}

std::vector<FileString> TitleFile::Strings() const {
    std::vector<FileString> strings;
    for (const xmlNode* const node : StringNodes(document_->Xml.get())) strings.push_back(FileStringOf(node));
    return strings;
}

std::vector<FileString> StringsOf(IKVT_CaptionFx& title) {
    const TitleDocument document = SavedNodes(title);
    std::vector<FileString> strings;
    for (const xmlNode* const node : StringNodes(document.get())) strings.push_back(FileStringOf(node));
    return strings;
}

void SetKeyframes(IKVT_CaptionFx& title, const std::vector<std::vector<Keyframe>>& keys) {
    const TitleDocument document = SavedNodes(title);
    const std::vector<xmlNode*> strings = StringNodes(document.get());
    for (size_t i = 0; i < keys.size(); ++i) {
        xmlNode* const list = ChildOf(strings.at(i), "PathList");
        if (list == nullptr) throw std::bad_alloc();
        for (const Keyframe& key : keys[i]) AddKeyframe(list, key);
    }
    LoadNodes(title, document.get());
}

std::u16string TitleXml(IKVT_CaptionFx& title) {
    uint32_t size = 0;
    std::u16string text;
    if (title.SaveToBuffer(nullptr, &size) == kTitleOk) text.resize(size / sizeof(char16_t));
    if (text.empty() || title.SaveToBuffer(text.data(), &size) != kTitleOk) throw std::bad_alloc();
    text.pop_back();  // the terminating zero
    return text;
}

void SaveTitle(IKVT_CaptionFx& title, const std::filesystem::path& path) {
    constexpr char16_t kByteOrderMark = 0xFEFF;
    const std::u16string text = kByteOrderMark + TitleXml(title);
    OutputFile file(path);
    file.Write(text.data(), text.size() * sizeof(char16_t));
    file.Finish();
}

}  // namespace captionfx
