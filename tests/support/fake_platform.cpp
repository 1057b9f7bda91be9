#include "support/fake_platform.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <sstream>

namespace captionfx::test {
namespace {

constexpr double kBoxWidth = 768, kBoxHeight = 1024;  // of the em

constexpr char16_t kLastSpaceOrControl = 32;

int32_t TopLevel(GlyphFormat format) {
    switch (format) {
        case GlyphFormat::kGray8:
            return 64;
        case GlyphFormat::kGray4:
            return 16;
        case GlyphFormat::kGray2:
            return 4;
        default:
            return 1;
    }
}

class FakeFont final : public PlatformFont {
public:
    explicit FakeFont(const FakeFontMetrics& font) : font_(font) {}

    std::optional<OutlineMetrics> Metrics() const override {
        return font_.HasOutlines ? std::optional(font_.Metrics) : std::nullopt;
    }
    TextExtent Extent(char16_t unit) const override {
        const int32_t advance = font_.Advance;
        return {unit == u'w' ? advance * 2 : unit == u' ' ? advance / 2 : advance, font_.Metrics.Height};
    }
    bool FindMissingGlyphs(std::u16string_view text, std::span<uint16_t> glyphs) const override {
        std::ranges::transform(text, glyphs.begin(), [&](char16_t unit) { return Has(unit) ? unit : uint16_t{0}; });
        return std::ranges::count(glyphs, 0) > 0;
    }

    /// A pixel whose centre lies in the box under the matrix is solid.
    std::optional<GlyphCoverage> Coverage(char16_t unit, GlyphFormat format, const GlyphMatrix& m) const override {
        if (unit <= kLastSpaceOrControl && !font_.HasControlShapes) return std::nullopt;
        const double a = m.eM11 / 65536.0, b = m.eM21 / 65536.0, c = m.eM12 / 65536.0, d = m.eM22 / 65536.0;
        const double determinant = a * d - b * c;
        if (std::abs(determinant) < 1e-12) return std::nullopt;
        const auto corner = [&](double x, double y) { return std::pair(a * x + b * y, c * x + d * y); };
        const std::pair<double, double> corners[] = {corner(0, 0), corner(kBoxWidth, 0), corner(0, kBoxHeight),
                                                     corner(kBoxWidth, kBoxHeight)};
        const auto [left, right] = std::ranges::minmax(corners, {}, &std::pair<double, double>::first);
        const auto [bottom, top] = std::ranges::minmax(corners, {}, &std::pair<double, double>::second);
        GlyphCoverage glyph{};
        glyph.OriginX = static_cast<int32_t>(std::floor(left.first + 1e-6));
        glyph.OriginY = static_cast<int32_t>(std::ceil(top.second - 1e-6));
        glyph.BlackBoxX = static_cast<int32_t>(std::ceil(right.first - 1e-6)) - glyph.OriginX;
        glyph.BlackBoxY = glyph.OriginY - static_cast<int32_t>(std::floor(bottom.second + 1e-6));
        if (glyph.BlackBoxX < 1 || glyph.BlackBoxY < 1 || glyph.BlackBoxX > 4096 || glyph.BlackBoxY > 4096) {
            return std::nullopt;
        }
        const bool isMono = format == GlyphFormat::kMono;
        const int32_t pitch = isMono ? (glyph.BlackBoxX + 31) / 32 * 4 : (glyph.BlackBoxX + 3) / 4 * 4;
        glyph.Bytes.resize(static_cast<size_t>(pitch) * static_cast<size_t>(glyph.BlackBoxY));
        for (int32_t row = 0; row < glyph.BlackBoxY; ++row) {
            for (int32_t column = 0; column < glyph.BlackBoxX; ++column) {
                const double px = glyph.OriginX + column + 0.5, py = glyph.OriginY - row - 0.5;
                const double x = (d * px - b * py) / determinant, y = (a * py - c * px) / determinant;
                if (x < 0 || x >= kBoxWidth || y < 0 || y >= kBoxHeight) continue;
                uint8_t& byte = glyph.Bytes[static_cast<size_t>(row * pitch + (isMono ? column / 8 : column))];
                byte = static_cast<uint8_t>(isMono ? byte | 0x80 >> column % 8 : TopLevel(format));
            }
        }
        return glyph;
    }

private:
    [[nodiscard]] bool Has(char16_t unit) const { return unit >= font_.First && unit <= font_.Last; }

    FakeFontMetrics font_;
};

constexpr char16_t kFirstHan = 0x3000, kLastHan = 0x9FFF;

class FakeLink final : public FontLink {
public:
    FakeLink(int32_t runLength, int32_t& mappingsInUse) : runLength_(runLength), mappingsInUse_(mappingsInUse) {}
    CodePageRun GetStrCodePages(std::u16string_view text) override {
        return {++codePages_, runLength_ == 0 ? static_cast<int32_t>(text.size()) : runLength_};
    }
    /// Maps for the run that was asked about last.
    std::optional<LogFont> MapFont(const LogFont& base, uint32_t codePages, char16_t unit) override {
        if (codePages != codePages_ || unit < kFirstHan || unit > kLastHan) return std::nullopt;
        ++mappingsInUse_;
        LogFont mapped = base;
        SetText(mapped.lfFaceName, u"Han");
        return mapped;
    }
    void ResetFontMapping() override { mappingsInUse_ = 0; }

private:
    int32_t runLength_;
    int32_t& mappingsInUse_;
    uint32_t codePages_ = 0;  // another mask for each run
};

}  // namespace

FakeFonts::FakeFonts() {
    constexpr OutlineMetrics kBox{.Height = 2304,
                                  .InternalLeading = 256,
                                  .ExternalLeading = 128,
                                  .Ascent = 1536,
                                  .Descent = -512,
                                  .StrikeoutSize = 64,
                                  .StrikeoutPosition = 640,
                                  .UnderscoreSize = 96,
                                  .UnderscorePosition = -192};
    OutlineMetrics tall = kBox;
    tall.Height = 2816;
    tall.Ascent = 2048;
    Families[u"Box"] = {kBox, 1024, 0, 0x024F};
    Families[u"Tall"] = {tall, 1024, 0, 0x024F};
    Families[u"Narrow"] = {kBox, 512, 0, 0x024F};
    Families[u"Han"] = {kBox, 2048, kFirstHan, kLastHan};
    Families[u"Signs"] = {kBox, 1024, 1, 0};
    Families[u"Bitmap"] = {{}, 0, 1, 0, false};
}

void FakeFonts::EnumerateFamilies(const std::function<void(std::u16string_view)>& visit) {
    for (const auto& [name, font] : Families) {
        visit(name);
        visit(name);  // once for each character set
    }
}

LogFont FakeFonts::DefaultGuiFont() {
    LogFont font{};
    SetText(font.lfFaceName, u"Box");
    return font;
}

std::shared_ptr<const PlatformFont> FakeFonts::Realise(const LogFont& request) {
    const auto found = Families.find(TextOf(request.lfFaceName));
    return std::make_shared<FakeFont>(found == Families.end() ? Families.at(u"Box") : found->second);
}

void* FakePages::Reserve(size_t bytes) noexcept {
    if (BlocksLeft <= 0 || bytes > size_t{1} << 32) return nullptr;
    --BlocksLeft;
    ++Alive;
    return std::calloc(bytes, 1);
}

void FakePages::Release(void* block, size_t) noexcept {
    --Alive;
    std::free(block);
}

std::unique_ptr<XmlDocument> FakePlatform::CreateXmlDocument() {
    return HasXml ? SystemServices().CreateXmlDocument() : nullptr;
}

std::unique_ptr<FontLink> FakePlatform::CreateFontLink() {
    return HasFontLink ? std::make_unique<FakeLink>(LinkedRunLength, MappingsInUse) : nullptr;
}

FontSpec Font(std::u16string_view face, float size) {
    FontSpec font{};
    SetText(font.FaceName, face);
    font.CharSet = kDefaultCharSet;
    font.Size = size;
    return font;
}

MetaFace FaceOf(uint32_t color, int32_t alpha) {
    return {.Enable = 1, .Color1 = color, .Color2 = color, .GradType = 0, .Alpha = alpha, .BlurRadius = 0};
}
MetaBorder BorderOf(int32_t size, uint32_t color) {
    return {.Enable = 1, .Size = size, .Color1 = color, .Color2 = color, .GradType = 0, .Alpha = 255, .BlurRadius = 0};
}
MetaShadow ShadowAt(float offsetX, float offsetY) {
    return {1, 1, 0, 0, 0, 255, 0, offsetX, offsetY, 0};
}

TestTitle::TestTitle(FakePlatformOptions options) : Platform(options) {
    const FontSpec font = Font(u"Box");
    const MetaBorder border{};
    const MetaShadow shadow{};
    Title.SetDefaultFont(&font);
    Title.SetDefaultBorder(&border);
    Title.SetDefaultShadow(&shadow);
    ChangeDefaultString([](StringSpec& string) { string.Left = string.Top = 0; });
}

StringSpec TestTitle::DefaultString() {
    StringSpec string{};
    Title.GetStringSettings(-1, &string);
    return string;
}

void TestTitle::Bind(int32_t index, std::unique_ptr<CPathBase> effect) {
    MetaString& string = String(index);
    const int32_t count = CountOf(string.Characters);
    effect->SetCharCount(count);
    for (int32_t i = 0; i < count; ++i) {
        TitleRectF rect{};
        Title.GetCharRect(index, i, &rect, 0);
        effect->SetCharBox(i, {rect.x, rect.y, rect.width, rect.height, rect.x, rect.y});
    }
    string.PathObject = PathHandle(effect.release(), PathReturner{&Effects});
    string.PathChanged = 0;
}

int32_t TestTitle::Add(std::u16string_view text, float left, float top) {
    ChangeDefaultString([&](StringSpec& string) {
        string.Left = left;
        string.Top = top;
    });
    const int32_t index = Title.AddString();
    Title.InsertText(index, 0, std::u16string(text).c_str());
    return index;
}

std::string StructureFault(const MetaString& string) {
    std::ostringstream fault;
    const int32_t characters = CountOf(string.Characters), lines = CountOf(string.Lines);
    if (string.Characters.empty())
        return string.Lines.empty() && string.Paragraphs.empty() ? "" : "records without text";
    int32_t next = 0;
    for (int32_t l = 0; l < lines; ++l) {
        const MetaLine& line = At(string.Lines, l);
        if (line.CharStart != next || line.CharEnd < line.CharStart)
            fault << "line " << l << " begins or ends wrongly; ";
        for (int32_t c = line.CharStart; c <= line.CharEnd && c < characters; ++c) {
            if (At(string.Characters, c).LineIndex != l) fault << "character " << c << " names another line; ";
        }
        next = line.CharEnd + 1;
    }
    if (next != characters) fault << "lines end at " << next << " of " << characters << "; ";
    next = 0;
    for (int32_t p = 0; p < CountOf(string.Paragraphs); ++p) {
        const MetaParagraph& paragraph = At(string.Paragraphs, p);
        if (paragraph.LineStart != next || paragraph.LineEnd < paragraph.LineStart) {
            fault << "paragraph " << p << " begins or ends wrongly; ";
        }
        for (int32_t l = paragraph.LineStart; l <= paragraph.LineEnd && l < lines; ++l) {
            if (At(string.Lines, l).ParagraphIndex != p) fault << "line " << l << " names another paragraph; ";
        }
        next = paragraph.LineEnd + 1;
    }
    if (next != lines) fault << "paragraphs end at line " << next << " of " << lines << "; ";
    for (const MetaCharacter& c : string.Characters) {
        if (!IsIndexOf(string.Fonts, c.FontIndex) || !IsIndexOf(string.Faces, c.FaceIndex) ||
            !IsIndexOf(string.Borders, c.BorderIndex) || !IsIndexOf(string.Shadows, c.ShadowIndex)) {
            fault << "a style index names no entry; ";
        }
    }
    if (string.GlyphLayersList.size() != string.Characters.size()) fault << "layers and characters differ in number; ";
    return fault.str();
}

}  // namespace captionfx::test
