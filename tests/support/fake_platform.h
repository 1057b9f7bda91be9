// A platform of known answers: fonts of boxes with round metrics, memory that can run out, output that is kept.
//
// At an em of 2048 every character of "Box" but two advances 1024 in a cell 2304 high (ascent 1536, descent 512,
// internal leading 256, external leading 128), and its shape is a box 768 wide and 1024 high that stands on the
// baseline at the left edge. At size 64 that is, in document units: advance 32, height 72, ascent 48, leadings 8 and 4,
// a box of 24 by 32. At scale 1 these are pixels. In every font 'w' advances twice as far and a space half as far.
//
//   "Box"      has the characters up to U+024F, space and controls included (they have no shape)
//   "Tall"     as Box, but ascent 2048, cell 2816: for baselines
//   "Narrow"   as Box, but advances 512
//   "Han"      has U+3000 to U+9FFF, advance 2048; what the others lack there is linked to it
//   "Signs"    a symbol font: has nothing, and yet nothing of it below U+0100 is linked
//   "Bitmap"   is installed but has no outlines
#pragma once

#include <cstdint>
#include <map>
#include <string>
#include <vector>

#include "host/title_object.h"
#include "platform/services.h"

namespace captionfx::test {

struct FakeFontMetrics {
    OutlineMetrics Metrics;
    int32_t Advance;
    char16_t First, Last;  ///< The characters that it has.
    bool HasOutlines = true;
    bool HasControlShapes = false;  ///< Draws controls as it draws letters.
};

class FakeFonts final : public FontSystem {
public:
    FakeFonts();
    void EnumerateFamilies(const std::function<void(std::u16string_view)>& visit) override;
    LogFont DefaultGuiFont() override;
    std::shared_ptr<const PlatformFont> Realise(const LogFont& request) override;

    std::map<std::u16string, FakeFontMetrics, std::less<>> Families;
};

class FakePages final : public PageMemory {
public:
    void* Reserve(size_t bytes) noexcept override;
    void Release(void* block, size_t bytes) noexcept override;

    int BlocksLeft = 1000000;  ///< How many more blocks can be had.
    int Alive = 0;
};

/// How a fake platform differs from the usual one.
struct FakePlatformOptions {
    int32_t Processors = 1;
};

class FakePlatform final : public PlatformServices, public DebugOutput, public Clock, public ModuleLoader {
public:
    explicit FakePlatform(FakePlatformOptions options = {}) : options_(options) {}

    FontSystem& Fonts() override { return FontsOfBoxes; }
    DebugOutput& Debug() override { return *this; }
    Clock& Time() override { return *this; }
    PageMemory& Pages() override { return Memory; }
    ModuleLoader& Modules() override { return *this; }
    std::unique_ptr<FontLink> CreateFontLink() override;
    /// That of the system: a document's text is the same everywhere.
    std::unique_ptr<XmlDocument> CreateXmlDocument() override;

    void Write(std::string_view message) override { Messages.emplace_back(message); }
    uint32_t Milliseconds() override { return 4711; }
    int32_t ProcessorCount() override { return options_.Processors; }
    std::unique_ptr<Module> LoadBesideLibrary(std::string_view /*stem*/) override { return nullptr; }

    FakeFonts FontsOfBoxes;
    FakePages Memory;
    std::vector<std::string> Messages;
    bool HasFontLink = true;
    bool HasXml = true;
    int32_t LinkedRunLength = 0;  ///< What GetStrCodePages answers; 0 is the whole text.
    int32_t MappingsInUse = 0;    ///< Fonts that were mapped and not given back by ResetFontMapping.

private:
    FakePlatformOptions options_;
};

/// A font request of the fake platform, 64 document units unless told.
[[nodiscard]] FontSpec Font(std::u16string_view face, float size = 64);

/// Styles of one colour, 0x00BBGGRR, without blur; a shadow is black, and cast by face and border.
[[nodiscard]] MetaFace FaceOf(uint32_t color, int32_t alpha = 255);
[[nodiscard]] MetaBorder BorderOf(int32_t size, uint32_t color);
[[nodiscard]] MetaShadow ShadowAt(float offsetX, float offsetY);

/// A title on a fake platform, font "Box" of size 64, face alone: white, opaque, no border, no shadow.
struct TestTitle {
    explicit TestTitle(FakePlatformOptions options = {});

    /// A string at (0, 0) with `text`; its index.
    int32_t Add(std::u16string_view text, float left = 0, float top = 0);
    MetaString& String(int32_t index = 0) { return Title.Strings()[static_cast<size_t>(index)]; }
    /// Sets fields of the default string, paragraph or render settings.
    template <class Change>
    void ChangeDefaultString(Change change) {
        StringSpec string = DefaultString();
        change(string);
        Title.SetDefaultString(&string);
    }
    template <class Change>
    void ChangeSettings(Change change) {
        TitleRenderSettings settings{};
        Title.GetRenderSettings(&settings);
        change(settings);
        Title.SetRenderSettings(&settings);
    }
    [[nodiscard]] StringSpec DefaultString();
    /// Binds an effect to a string as a frame does, which takes the one that is there.
    void Bind(int32_t index, std::unique_ptr<CPathBase> effect);

    FakePlatform Platform;
    CPathManager Effects;
    CCaptionFx Title{Platform};
};

/// What is wrong with the structure of a string; empty when lines partition the text, paragraphs the lines, and all
/// indices name entries.
[[nodiscard]] std::string StructureFault(const MetaString& string);

}  // namespace captionfx::test
