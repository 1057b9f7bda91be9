#include "platform/linux/font_registry.h"

#include <algorithm>
#include <array>
#include <functional>
#include <span>

#include "platform/linux/fallback_order.h"

namespace captionfx {
namespace {

constexpr int32_t kHeaviestRegular = 550;

/// Stands for every font where none is installed.
class MissingFont final : public PlatformFont {
public:
    std::optional<OutlineMetrics> Metrics() const override { return std::nullopt; }
    TextExtent Extent(char16_t /*unit*/) const override { return {0, 0}; }
    bool FindMissingGlyphs(std::u16string_view text, std::span<uint16_t> glyphs) const override {
        std::ranges::fill(glyphs, uint16_t{0});
        return !text.empty();
    }
    std::optional<GlyphCoverage> Coverage(char16_t /*unit*/, GlyphFormat /*format*/,
                                          const GlyphMatrix& /*matrix*/) const override {
        return std::nullopt;
    }
};

/// The first of some common families, so that the answer is not the user's locale's or configuration's; else what would
/// come first for an English text.
const FontFamily* DefaultFamilyOf(const FontCatalog& catalog) {
    constexpr std::array<std::u16string_view, 3> kPreferred{u"Liberation Sans", u"DejaVu Sans", u"Noto Sans"};
    for (const std::u16string_view name : kPreferred) {
        if (const FontFamily* const family = catalog.Find(name)) return family;
    }
    const std::vector<FallbackEntry> order = OrderFallback(catalog, DesignOf(FontFace{}), FontStyle{}, "en");
    if (!order.empty()) return order.front().Family;
    return catalog.Families().empty() ? nullptr : &catalog.Families().front();
}

const FontFamily* SymbolFamilyOf(const FontCatalog& catalog) {
    const auto found = std::ranges::find_if(catalog.Families(), [](const FontFamily& family) {
        return std::ranges::any_of(family.Faces, &FontFace::SymbolSet);
    });
    return found == catalog.Families().end() ? nullptr : &*found;
}

}  // namespace

FontStyle StyleOf(const LogFont& request) {
    return {request.lfWeight > kHeaviestRegular, request.lfItalic != 0};
}

std::u16string_view FaceNameOf(const LogFont& font) {
    const std::u16string_view field(font.lfFaceName, kFaceNameLength);
    return field.substr(0, field.find(u'\0'));
}

LogFont MakeLogFont(std::u16string_view faceName, FontStyle style) {
    LogFont font{};
    font.lfWeight = style.Bold ? kBoldWeight : kRegularWeight;
    font.lfItalic = style.Italic ? 1 : 0;
    font.lfCharSet = kDefaultCharSet;
    std::ranges::copy(faceName.substr(0, kFaceNameLength - 1), font.lfFaceName);
    return font;
}

size_t FontRegistry::FontKeyHash::operator()(const FontKey& key) const {
    const size_t style = (key.Style.Bold ? 1U : 0U) + (key.Style.Italic ? 2U : 0U);
    return std::hash<const FontFamily*>()(key.Family) + style;  // families are more than 4 bytes apart
}

FontRegistry& FontRegistry::Instance() {
    static FontRegistry& registry = *std::make_unique<FontRegistry>(FontCatalog::OfSystem()).release();
    return registry;
}

FontRegistry::FontRegistry(FontCatalog catalog)
    : catalog_(std::move(catalog)),
      defaultFamily_(DefaultFamilyOf(catalog_)),
      symbolFamily_(SymbolFamilyOf(catalog_)),
      noFont_(std::make_shared<const MissingFont>()) {}

void FontRegistry::EnumerateFamilies(const std::function<void(std::u16string_view)>& visit) {
    for (const std::u16string_view name : catalog_.Names()) visit(name);
}

LogFont FontRegistry::DefaultGuiFont() {
    return MakeLogFont(defaultFamily_ == nullptr ? std::u16string_view() : defaultFamily_->Name, FontStyle{});
}

const FontFamily* FontRegistry::FamilyOf(const LogFont& request) const {
    const FontFamily* family = catalog_.Find(FaceNameOf(request));
    if (family == nullptr) family = defaultFamily_;
    if (request.lfCharSet != kSymbolCharSet || symbolFamily_ == nullptr) return family;
    return ChooseFace(*family, StyleOf(request)).Face->SymbolSet ? family : symbolFamily_;
}

std::shared_ptr<const OutlineFont> FontRegistry::FontOf(const FontFamily& family, FontStyle style) {
    const std::lock_guard lock(mutex_);
    std::shared_ptr<const OutlineFont>& font = fonts_[{&family, style}];
    if (font == nullptr) font = std::make_shared<const OutlineFont>(ChooseFace(family, style));
    return font;
}

std::shared_ptr<const PlatformFont> FontRegistry::Realise(const LogFont& request) {
    const FontFamily* const family = FamilyOf(request);
    if (family == nullptr) return noFont_;
    return FontOf(*family, StyleOf(request));
}

}  // namespace captionfx
