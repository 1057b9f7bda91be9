#include "peers/report.h"

#include <cstdio>
#include <fstream>
#include <stdexcept>

#include <nlohmann/json.hpp>

namespace captionfx::peers {
namespace {

// What is asked for besides the ratios.
constexpr double kMostWorstOverMean = 2, kLineOpeningMs = 1, kCreditsOpeningMs = 5;

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
            {"cairo", Json(result.cairo)},
            {"ratio", result.Ratio()},
            {"most", result.Target()},
            {"worst_over_mean", result.WorstOverMean()},
            {"two_threads", result.Speedup()}};
}

}  // namespace

void PrintHead() {
    std::printf(
        "Milliseconds a frame: thread time, with 2 threads by the clock. 'two' is how much faster two threads "
        "are.\n\n");
    std::printf("%-5s%-31s %8s %8s %8s %8s %7s %6s %-8s %6s %5s\n", "size", "scene", "us", "us, 2", "libass", "cairo",
                "ratio", "most", "", "worst", "two");
}

void PrintRow(const SceneResult& result) {
    const std::string title = std::string(result.scene->name) + " " + std::string(result.scene->what);
    std::printf("%-5s%-31s %8.3f %8.3f %8.3f %8.3f %7.2f %6.2f %-8s %5.1fx %5.2f%s\n", result.stage.name.data(),
                title.c_str(), result.us.meanMs, result.usOnTwo.wallMs, result.libass.meanMs, result.cairo.meanMs,
                result.Ratio(), result.Target(), Verdict(result.Ratio() <= result.Target()), result.WorstOverMean(),
                result.Speedup(), result.WorstOverMean() > kMostWorstOverMean ? "  worst frame!" : "");
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
