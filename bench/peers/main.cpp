// This library beside libass and cairo: the same pictures, in one process, in turns.
//
//     build/release/bin/captionfx_peers --scene S3 --size 4k
//     build/release/bin/captionfx_peers --pictures out/peers     and look at them
//
// Only ratios of one run carry over to another machine.
#include <algorithm>
#include <cstdlib>
#include <exception>
#include <iostream>
#include <memory>
#include <string>
#include <vector>

#include <CLI/CLI.hpp>
#include <fontconfig/fontconfig.h>

#include "peers/costs.h"
#include "peers/memory.h"
#include "peers/pictures.h"
#include "peers/report.h"

namespace captionfx::peers {
namespace {

struct Options {
    std::vector<std::string> scenes, sizes;
    double seconds = 5;
    std::string json, pictures;
    bool costs = false;
};

/// The file of kFontFamily, so that all sides draw from the same outlines.
std::string FontFile() {
    const std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> wanted(
        FcPatternBuild(nullptr, FC_FAMILY, FcTypeString, kFontFamily, FC_WEIGHT, FcTypeInteger, FC_WEIGHT_REGULAR,
                       FC_SLANT, FcTypeInteger, FC_SLANT_ROMAN, nullptr),
        FcPatternDestroy);
    FcConfigSubstitute(nullptr, wanted.get(), FcMatchPattern);
    FcDefaultSubstitute(wanted.get());
    FcResult result{};
    const std::unique_ptr<FcPattern, decltype(&FcPatternDestroy)> found(FcFontMatch(nullptr, wanted.get(), &result),
                                                                        FcPatternDestroy);
    FcChar8* file = nullptr;
    FcChar8* family = nullptr;
    if (!found || FcPatternGetString(found.get(), FC_FILE, 0, &file) != FcResultMatch ||
        FcPatternGetString(found.get(), FC_FAMILY, 0, &family) != FcResultMatch ||
        std::string(reinterpret_cast<const char*>(family)) != kFontFamily) {
        throw std::runtime_error(std::string("the font ") + kFontFamily +
                                 " is not installed; see scripts/install-dependencies");
    }
    return reinterpret_cast<const char*>(file);
}

bool IsWanted(const std::vector<std::string>& names, std::string_view name) {
    return names.empty() || std::ranges::find(names, name) != names.end();
}

void Run(const Options& options) {
    if (options.costs) return PrintCosts();
    const std::string fontFile = FontFile();
    const Scene& line = AllScenes().front();
    const Scene& credits = AllScenes().back();
    Report report;
    const bool isWhole = options.scenes.empty() && options.sizes.empty();
    // First of all: a process that has drawn before keeps memory, which would be used again.
    if (isWhole && options.pictures.empty()) {
        for (const Scene* scene : {&AllScenes()[1], &credits})
            report.peaks4k.push_back({scene, MeasurePeakBytes(*scene, k4k)});
    }
    if (options.pictures.empty()) PrintHead();
    for (const Stage& stage : {k1080, k4k}) {
        for (const Scene& scene : AllScenes()) {
            if (!IsWanted(options.scenes, scene.name) || !IsWanted(options.sizes, stage.name)) continue;
            if (!options.pictures.empty()) {
                WritePictures(scene, stage, fontFile, options.pictures);
                continue;
            }
            report.scenes.push_back(MeasureScene(scene, stage, fontFile, options.seconds));
            PrintRow(report.scenes.back());
        }
    }
    if (isWhole && options.pictures.empty()) {
        report.openings = {MeasureOpening(line), MeasureOpening(credits)};
        PrintOpenings(report.openings);
        PrintPeaks(report.peaks4k);
    }
    if (!options.json.empty()) WriteJson(report, options.json);
}

}  // namespace
}  // namespace captionfx::peers

int main(int argc, char** argv) {
    using namespace captionfx::peers;
    CLI::App app("Measures CaptionFx beside libass and cairo on the same pictures.", "captionfx_peers");
    Options options;
    app.add_option("--scene", options.scenes, "S1 to S7; may be given more than once")
        ->check(CLI::IsMember({"S1", "S2", "S3", "S4", "S5", "S6", "S7"}));
    app.add_option("--size", options.sizes, "1080 or 4k")->check(CLI::IsMember({"1080", "4k"}));
    app.add_option("--seconds", options.seconds, "Time for each scene at each size (5)")
        ->check(CLI::Range(0.1, 3600.0));
    app.add_option("--json", options.json, "Also write the results to this file");
    app.add_option("--pictures", options.pictures, "Measure nothing; write the pictures of all sides into this folder");
    app.add_flag("--costs", options.costs, "Only measure what single settings of a title cost");
    try {
        app.parse(argc, argv);
    } catch (const CLI::ParseError& error) {
        return app.exit(error) == 0 ? EXIT_SUCCESS : 2;
    }
    try {
        Run(options);
        return EXIT_SUCCESS;
    } catch (const std::exception& error) {
        std::cerr << "captionfx_peers: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
}
