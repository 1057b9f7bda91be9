#include "peers/report.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace captionfx::peers {
namespace {

// What is asked for besides the ratios.
constexpr double kLineOpeningMs = 1, kCreditsOpeningMs = 5;

const char* Verdict(bool isMet) {
    return isMet ? "met" : "not met";
}

nlohmann::json Json(const Figures& figures) {
    return {{"ms", figures.meanMs}, {"worst_ms", figures.worstMs}, {"wall_ms", figures.wallMs}};
}

nlohmann::json Json(const SceneResult& result) {
    return {{"scene", result.scene->name},
            {"size", result.stage.name},
            {"frames", result.frames},
            {"captionfx", Json(result.us)},
            {"captionfx_2_threads", Json(result.usOnTwo)},
            {"libass", Json(result.libass)},
            {"libass_soft_border", Json(result.libassSoft)},
            {"cairo", Json(result.cairo)},
            {"ratio", result.Ratio()},
            {"ratio_soft_border", result.RatioToSoft()},
            {"most", result.Target()},
            {"worst_over_mean", result.WorstOverMean()},
            {"two_threads", result.Speedup()}};
}

}  // namespace

void PrintHead() {
    std::printf(
        "Milliseconds a frame: processor time, of two threads by the clock. 'soft' is libass with a soft border, not\n"
        "the same picture; 'ratio' is us to libass and 'most' what is asked for; 'worst' the costliest part of a "
        "scene\n"
        "to its mean; 'two' how much faster two threads are than one.\n\n");
    std::printf("size  %-31s %8s %8s %8s %8s %8s %6s %6s          %6s %6s %5s\n", "scene", "us", "us on 2", "libass",
                "soft", "cairo", "ratio", "most", "/soft", "worst", "two");
}

void PrintRow(const SceneResult& result) {
    const std::string title = std::string(result.scene->name) + " " + std::string(result.scene->what);
    std::printf("%-5s %-31s %8.3f %8.3f %8.3f %8.3f %8.3f %6.2f %6.2f %-8s %6.2f %6.2f %5.2f\n",
                result.stage.name.data(), title.c_str(), result.us.meanMs, result.usOnTwo.wallMs, result.libass.meanMs,
                result.libassSoft.meanMs, result.cairo.meanMs, result.Ratio(), result.Target(),
                Verdict(result.Ratio() <= result.Target()), result.RatioToSoft(), result.WorstOverMean(),
                result.Speedup());
    std::fflush(stdout);
}

void PrintOpenings(std::span<const OpeningResult> openings) {
    std::printf("\nOpening a title and its first frame, 1080, ms\n");
    for (const OpeningResult& opening : openings) {
        const double most = opening.scene->isCredits ? kCreditsOpeningMs : kLineOpeningMs;
        std::printf("  %-10s typed %8.2f, loaded %8.2f, at most %.0f: %s\n",
                    opening.scene->isCredits ? "credits" : "line", opening.typedMs, opening.loadedMs, most,
                    Verdict(opening.typedMs <= most && opening.loadedMs <= most));
    }
}

void PrintPeaks(std::span<const PeakResult> peaks) {
    constexpr double kMegabyte = 1 << 20;
    std::printf(
        "\nPeak growth of resident memory by a title in motion, 4k, without the pixels drawn upon (a frame is 31.6 "
        "MB)\n");
    for (const PeakResult& peak : peaks) {
        std::printf("  %-10s %8.1f MB\n", peak.scene->isCredits ? "credits" : "line",
                    static_cast<double>(peak.bytes) / kMegabyte);
    }
}

void WriteJson(const Report& report, const std::filesystem::path& path) {
    nlohmann::json json;
    for (const SceneResult& result : report.scenes) json["scenes"].push_back(Json(result));
    for (const OpeningResult& opening : report.openings) {
        json["openings"].push_back(
            {{"scene", opening.scene->name}, {"typed_ms", opening.typedMs}, {"loaded_ms", opening.loadedMs}});
    }
    for (const PeakResult& peak : report.peaks4k) {
        json["peak_bytes_4k"].push_back({{"scene", peak.scene->name}, {"bytes", peak.bytes}});
    }
    if (path.has_parent_path()) std::filesystem::create_directories(path.parent_path());
    std::ofstream file(path);
    file << json.dump(2) << '\n';
    if (!file.flush()) throw std::runtime_error("cannot write " + path.string());
}

}  // namespace captionfx::peers
