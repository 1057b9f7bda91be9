// The results as tables and as JSON.
#pragma once

#include <filesystem>
#include <span>
#include <string>
#include <vector>

#include "peers/measure.h"

namespace captionfx::peers {

struct PeakResult {
    const Scene* scene;
    size_t bytes;
};

struct Report {
    std::vector<SceneResult> scenes;
    std::vector<OpeningResult> openings;
    std::vector<PeakResult> peaks4k;
};

void PrintHead();
void PrintRow(const SceneResult& result);
void PrintOpenings(std::span<const OpeningResult> openings);
void PrintPeaks(std::span<const PeakResult> peaks);

/// Throws std::runtime_error when the file cannot be written.
void WriteJson(const Report& report, const std::filesystem::path& path);

}  // namespace captionfx::peers
