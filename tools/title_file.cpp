#include "tools/title_file.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <cmath>
#include <cstdlib>
#include <map>
#include <new>
#include <set>
#include <stdexcept>
#include <string_view>

#include "tools/input_file.h"
#include "tools/output_file.h"
#include "tools/text_encoding.h"
#include "tools/title_nodes.h"

namespace captionfx {
namespace {

[[noreturn]] void Fail(const std::filesystem::path& path, const std::string& place, const std::string& reason) {
    throw std::runtime_error(path.string() + (place.empty() ? "" : ":" + place) + ": " + reason);
}

/// Where a fault is: all of a title often stands on one line, so that elements count more than lines.
std::string PlaceOf(const TitleNode& node, size_t string, size_t item) {
    std::string place = node.Line() > 0 ? std::to_string(node.Line()) + ": " : " ";
    place.append("string ").append(std::to_string(string));
    if (const std::string name = node.Name(); name != "MetaString")
        place.append(", ").append(name).append(" ").append(std::to_string(item));
    return place;
}

/// Every number with a point must be a finite one.
void CheckNumbers(const std::filesystem::path& path, const TitleNode& node, size_t string, size_t item) {
    static const std::set<std::string_view> kNumbers{
        "Left",          "Top",       "Width",       "WidthLimit", "RotateDegree", "PathProgress",  "WidthScale",
        "Spacing",       "LineSpace", "BeforeSpace", "AfterSpace", "LeftIndent",   "RightIndent",   "SizeRatio",
        "Ascent",        "Descent",   "IntLead",     "ExtLead",    "StrikeoutPos", "StrikeoutSize", "UnderlinePos",
        "UnderlineSize", "OffsetX",   "OffsetY",     "KeyFrame",   "Height"};
    for (const auto& [name, text] : node.Attributes()) {
        if (kNumbers.contains(name) && !FiniteNumber(text))
            Fail(path, PlaceOf(node, string, item), name + " '" + text + "' is no finite number");
    }
}

long Integer(const std::string& text) {
    constexpr int kDecimal = 10, kHexadecimal = 16;
    return text.starts_with('#') ? std::strtol(text.c_str() + 1, nullptr, kHexadecimal)
                                 : std::strtol(text.c_str(), nullptr, kDecimal);
}

/// Every style index of a character must name an item of its list.
void CheckStyles(const std::filesystem::path& path, const TitleNode& character, size_t string, size_t item,
                 const std::map<std::string, size_t>& counts) {
    for (const auto& [name, count] : counts) {
        const std::string text = character.Attribute(name.c_str());
        const long index = Integer(text);
        if (index < 0 || static_cast<size_t>(index) >= count) {
            std::string reason = name;
            reason.append(" '").append(text).append("' names none of the ").append(std::to_string(count));
            Fail(path, PlaceOf(character, string, item), reason.append(" items of its list"));
        }
    }
}

void CheckString(const std::filesystem::path& path, const TitleNode& node, size_t string) {
    CheckNumbers(path, node, string, 0);
    for (const TitleNode& list : node.Children()) {
        size_t item = 0;
        for (const TitleNode& child : list.Children()) CheckNumbers(path, child, string, item++);
    }
    const auto count = [&](const char* list, const char* item) { return ItemsOf(ChildOf(node, list), item).size(); };
    const std::map<std::string, size_t> counts{{"FontIndex", count("FontList", "MetaFont")},
                                               {"FaceIndex", count("FaceList", "MetaFace")},
                                               {"BorderIndex", count("BorderList", "MetaBorder")},
                                               {"ShadowIndex", count("ShadowList", "MetaShadow")}};
    size_t item = 0;
    for (const TitleNode& character : ItemsOf(ChildOf(node, "CharList"), "MetaCharacter")) {
        CheckStyles(path, character, string, item++, counts);
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

FileString FileStringOf(const TitleNode& node) {
    FileString string;
    string.keys = KeyframesOf(node);
    std::vector<std::string> names;
    for (const TitleNode& font : ItemsOf(ChildOf(node, "FontList"), "MetaFont")) {
        names.push_back(FaceNameOf(font.Attribute("LogFont")));
    }
    for (const TitleNode& character : ItemsOf(ChildOf(node, "CharList"), "MetaCharacter")) {
        string.faceNames.push_back(names.at(static_cast<size_t>(Integer(character.Attribute("FontIndex")))));
    }
    return string;
}

std::string Decimal(float value) {
    std::array<char, 64> text{};
    const auto [end, error] = std::to_chars(text.data(), text.data() + text.size(), value);
    return {text.data(), end};
}

void AddKeyframe(const TitleNode& list, const Keyframe& key) {
    const TitleNode item = list.AddChild("MetaPath");
    item.SetAttribute("KeyFrame", Decimal(key.time));
    item.SetAttribute("PathID", key.effect);
    item.SetAttribute("PathProgress", Decimal(key.progress));
}

TitleNode ReadDocument(const std::filesystem::path& path) try {
    return ReadTitleDocument(ReadWholeFile(path));
} catch (const TitleTextError& error) {
    Fail(path, error.Place(), error.what());
}

}  // namespace

TitleFile::TitleFile(const std::filesystem::path& path) : path_(path), root_(ReadDocument(path)) {
    if (root_.Name() != kTitleRoot) {
        const std::string line = root_.Line() > 0 ? std::to_string(root_.Line()) : "";
        Fail(path, line, std::string("is no title: its root is not ") + kTitleRoot);
    }
    size_t string = 0;
    for (const TitleNode& node : StringNodes(root_)) CheckString(path, node, string++);
}

void TitleFile::LoadInto(IKVT_CaptionFx& title) const {
    const int32_t status = title.LoadFromNode(root_.Handle());
    const auto count = static_cast<int32_t>(StringNodes(root_).size());
    if (status != kTitleOk || title.GetStringCount() != count) Fail(path_, "", "the library refuses this title");
}

std::vector<FileString> TitleFile::Strings() const {
    std::vector<FileString> strings;
    for (const TitleNode& node : StringNodes(root_)) strings.push_back(FileStringOf(node));
    return strings;
}

std::vector<FileString> StringsOf(IKVT_CaptionFx& title) {
    std::vector<FileString> strings;
    for (const TitleNode& node : StringNodes(SavedNodes(title))) strings.push_back(FileStringOf(node));
    return strings;
}

void SetKeyframes(IKVT_CaptionFx& title, const std::vector<std::vector<Keyframe>>& keys) {
    const TitleNode root = SavedNodes(title);
    const std::vector<TitleNode> strings = StringNodes(root);
    for (size_t i = 0; i < keys.size(); ++i) {
        const TitleNode list = ChildOf(strings.at(i), "PathList");
        if (!list) throw std::bad_alloc();
        for (const Keyframe& key : keys[i]) AddKeyframe(list, key);
    }
    LoadNodes(title, root);
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
