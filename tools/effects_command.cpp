#include "tools/effects_command.h"

#include <algorithm>
#include <cstddef>
#include <iomanip>
#include <iostream>
#include <stdexcept>
#include <string_view>
#include <vector>

#include "tools/effect_gallery.h"
#include "tools/effect_list.h"
#include "tools/effect_sheet.h"
#include "tools/option_value.h"
#include "tools/png_file.h"
#include "tools/script/effect_names.h"

namespace captionfx {
namespace {

std::optional<std::string> ParseEffectClass(std::string_view text) {
    const bool isThere = std::ranges::find(EffectList(), text, &EffectInfo::effectClass) != EffectList().end();
    return isThere ? std::optional<std::string>(text) : std::nullopt;
}

std::vector<EffectInfo> EffectsOf(const std::optional<std::string>& effectClass) {
    std::vector<EffectInfo> effects;
    std::ranges::copy_if(EffectList(), std::back_inserter(effects),
                         [&](const EffectInfo& effect) { return !effectClass || effect.effectClass == *effectClass; });
    return effects;
}

void List(const std::vector<EffectInfo>& effects) {
    size_t nameWidth = 0, classWidth = 0;
    for (const EffectInfo& effect : effects) {
        nameWidth = std::max(nameWidth, effect.name.size());
        classWidth = std::max(classWidth, effect.effectClass.size());
    }
    const auto line = [&](std::string_view name, std::string_view effectClass, const auto& passes, const char* image,
                          std::string_view readable) {
        std::cout << std::left << std::setw(static_cast<int>(nameWidth) + 2) << name
                  << std::setw(static_cast<int>(classWidth) + 2) << effectClass << std::setw(8) << passes
                  << std::setw(13) << image << readable << '\n';
    };
    line("NAME", "CLASS", "PASSES", "IMAGE-BASED", "IN SCRIPTS");
    for (const EffectInfo& effect : effects) {
        line(effect.name, effect.effectClass, effect.passes, effect.isImageBased ? "yes" : "no",
             NameOfEffect(effect.name));
    }
    if (!std::cout.flush()) throw std::runtime_error("cannot write the list to standard output");
}

SheetLook LookOf(const EffectsRequest& request, FrameSize usualCell) {
    return {.text = request.text, .fontName = request.fontName, .cell = request.cell.value_or(usualCell)};
}

void DrawSheet(const std::vector<EffectInfo>& effects, const EffectsRequest& request) {
    constexpr FrameSize kSmall{160, 90}, kLarge{320, 180};
    const PngImage sheet = DrawEffectSheet(effects, LookOf(request, request.effectClass ? kLarge : kSmall));
    WritePng(*request.sheet, sheet.pixels, sheet.width, sheet.height);
}

}  // namespace

CLI::App* AddEffectsCommand(CLI::App& app, EffectsRequest& request) {
    CLI::App* const effects = app.add_subcommand("effects", "List the effects, or draw a contact sheet of them");
    effects->footer(
        "The sheet shows each effect at progress 0.15, 0.35, 0.55, 0.75, 0.95 and 1. Each picture is a whole frame.\n"
        "The gallery is a folder with index.html and an animated picture an effect; open it in a browser.\n"
        "\nExamples:\n"
        "  captionfx effects --class CLASS_FLY\n"
        "  captionfx effects --class CLASS_FLY --sheet fly.png\n"
        "  captionfx effects --gallery effects");
    AddValue(*effects, "--class", request.effectClass, &ParseEffectClass, "a class of effects, such as CLASS_FLY",
             "Only the effects of this class, such as CLASS_FLY; the sheet shows them larger");
    CLI::Option* const sheet =
        AddPath(*effects, "--sheet", request.sheet, "Draw a contact sheet into this PNG file instead of the list");
    CLI::Option* const gallery =
        AddPath(*effects, "--gallery", request.gallery, "Write a page with moving pictures into this folder instead");
    sheet->excludes(gallery);
    AddValue(*effects, "--text", request.text, &ParseText, "valid UTF-8",
             "The text of the pictures, UTF-8; \\n begins a paragraph [CaptionFx]");
    AddValue(*effects, "--font", request.fontName, &ParseFontName, "a font name of 1 to 31 characters",
             "Font family of the text [DejaVu Sans]");
    AddValue(*effects, "--cell", request.cell, &ParseSizeBetween<32, 640>, "a size such as 320x180, sides 32 to 640",
             "Size of one picture [160x90, with --class 320x180, in the gallery 320x180]");
    effects->add_flag("--quiet", request.isQuiet, "Say nothing of the gallery's progress")->needs(gallery);
    effects->callback([effects, sheet, gallery] {
        for (const char* const name : {"--text", "--font", "--cell"}) {
            if (effects->count(name) > 0 && sheet->count() + gallery->count() == 0)
                throw CLI::RequiresError(name, "--sheet or --gallery");
        }
    });
    return effects;
}

void ListOrDrawEffects(const EffectsRequest& request) {
    constexpr FrameSize kGalleryCell{320, 180};
    const std::vector<EffectInfo> effects = EffectsOf(request.effectClass);
    if (request.gallery) {
        WriteEffectGallery(effects, LookOf(request, kGalleryCell), *request.gallery, request.isQuiet);
    } else if (request.sheet) {
        DrawSheet(effects, request);
    } else {
        List(effects);
    }
}

}  // namespace captionfx
