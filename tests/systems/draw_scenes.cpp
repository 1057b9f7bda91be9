// Draws the scenes with the library of this system.
//
//     captionfx_draw_scenes FOLDER            builds each title, and saves it as FOLDER/<scene>.xml
//     captionfx_draw_scenes FOLDER TITLES     loads each title from TITLES/<scene>.xml
//
// Both write FOLDER/<scene>.png, and FOLDER/<scene>.txt with a line a character: its rectangle, and a fingerprint of
// the coverage mask that the system draws for it at rest.
#include <cstdio>
#include <exception>
#include <filesystem>
#include <fstream>
#include <stdexcept>
#include <vector>

#include "host/title_object.h"
#include "render/glyph_raster.h"
#include "systems/scenes.h"
#include "tools/png_file.h"
#include "tools/title_handle.h"

namespace captionfx::test {
namespace {

namespace fs = std::filesystem;

void Demand(bool holds, const Scene& scene, const char* what) {
    if (!holds) throw std::runtime_error(std::string(scene.name) + ": " + what);
}

/// 64-bit FNV-1a of a mask with its size and place; 0 for none.
uint64_t FingerprintOf(const std::optional<RasterizedGlyph>& glyph) {
    if (!glyph) return 0;
    constexpr uint64_t kPrime = 0x100000001B3, kOffset = 0xCBF29CE484222325;
    uint64_t hash = kOffset;
    const auto add = [&hash](int32_t value) { hash = (hash ^ static_cast<uint32_t>(value)) * kPrime; };
    add(glyph->Mask.Width);
    add(glyph->Mask.Height);
    add(static_cast<int32_t>(glyph->OriginX));
    add(static_cast<int32_t>(glyph->OriginY));
    for (const uint8_t byte : glyph->Mask.Bytes) add(byte);
    return hash;
}

/// The masks of a title's characters, which the interface does not hand out: those of a copy inside the tests.
std::vector<uint64_t> Fingerprints(IKVT_CaptionFx& title, const Scene& scene) {
    uint32_t size = 0;
    title.SaveToBuffer(nullptr, &size);
    std::vector<char16_t> xml(size / sizeof(char16_t));
    Demand(title.SaveToBuffer(xml.data(), &size) == kTitleOk, scene, "cannot be saved");
    CCaptionFx copy(SystemServices());
    SetDefaults(copy, scene);
    Demand(copy.LoadFromBuffer(xml.data()) == kTitleOk, scene, "cannot be loaded");
    const MetaString& string = copy.Strings().at(0);
    const GlyphSettings settings{SystemServices().Fonts(), scene.settings, scene.string.Vertical != 0};
    std::vector<uint64_t> fingerprints;
    for (const MetaCharacter& character : string.Characters) {
        const MetaFont& font = string.Fonts.at(static_cast<size_t>(character.FontIndex));
        const GlyphTransform transform{character.WidthScale, 1.0F, string.RotateDegree};
        fingerprints.push_back(
            FingerprintOf(RasterizeGlyph(settings, static_cast<char16_t>(character.Value), font, transform)));
    }
    return fingerprints;
}

void Draw(const Scene& scene, const fs::path& folder, const fs::path& titles) {
    const TitleHandle title = MakeTitle();
    SetDefaults(*title, scene);
    const std::string name = scene.name;
    if (titles.empty()) {
        title->AddString();
        title->InsertText(0, 0, scene.text);
        Demand(title->SaveToFile((folder / (name + ".xml")).u16string().c_str()) == kTitleOk, scene, "cannot be saved");
    } else {
        const fs::path file = titles / (name + ".xml");
        Demand(title->LoadFromFile(file.u16string().c_str()) == kTitleOk, scene, "cannot be loaded");
    }

    std::vector<uint32_t> frame(static_cast<size_t>(kSceneWidth) * kSceneHeight, 0xFF606060);
    Demand(title->RenderFrame(frame.data(), 0) == kTitleOk, scene, "cannot be drawn");
    WritePng(folder / (name + ".png"), frame, kSceneWidth, kSceneHeight);

    std::ofstream facts(folder / (name + ".txt"));
    const std::vector<uint64_t> fingerprints = Fingerprints(*title, scene);
    for (int32_t i = 0; i < title->GetCharCount(0); ++i) {
        TitleRectF rect{};
        title->GetCharRect(0, i, &rect, 1);
        facts << rect.x << ' ' << rect.y << ' ' << rect.width << ' ' << rect.height << ' '
              << fingerprints.at(static_cast<size_t>(i)) << '\n';
    }
}

}  // namespace
}  // namespace captionfx::test

int main(int argc, char** argv) {
    namespace fs = std::filesystem;
    using namespace captionfx::test;
    if (argc != 2 && argc != 3) return 2;
    try {
        fs::create_directories(argv[1]);
        for (const Scene& scene : Scenes()) Draw(scene, argv[1], argc == 3 ? fs::path(argv[2]) : fs::path());
    } catch (const std::exception& error) {
        std::fprintf(stderr, "captionfx_draw_scenes: %s\n", error.what());
        return 1;
    }
    return 0;
}
