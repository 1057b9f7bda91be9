#include "peers/memory.h"

#include <cstdlib>
#include <exception>
#include <fstream>
#include <stdexcept>
#include <string>
#include <unistd.h>

#include <sys/wait.h>

#include "peers/captionfx_side.h"
#include "peers/measure.h"

namespace captionfx::peers {
namespace {

/// A line of /proc/self/status that ends in kB, in bytes.
size_t StatusBytes(const std::string& name) {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name)) return std::stoul(line.substr(name.size() + 1)) * 1024;
    }
    throw std::runtime_error("/proc/self/status has no " + name);
}

size_t GrowthInThisProcess(const Scene& scene, const Stage& stage) {
    static_cast<void>(MeasureLayout(scene, stage));  // the fonts
    std::vector<uint32_t> pixels = MakeGround(stage);
    std::ofstream("/proc/self/clear_refs") << 5;  // the peak begins anew
    const size_t before = StatusBytes("VmRSS");
    const std::unique_ptr<Side> side = MakeCaptionFxSide(scene, stage, 1);
    for (const double moment : {0.0, 0.25, 0.5, 0.75, 1.0}) {
        side->Prepare(moment);
        side->Draw(pixels.data());
    }
    return StatusBytes("VmHWM") - before;
}

}  // namespace

size_t MeasurePeakBytes(const Scene& scene, const Stage& stage) {
    int ends[2];
    if (pipe(ends) != 0) throw std::runtime_error("no pipe for the process whose memory is measured");
    const pid_t child = fork();
    if (child < 0) throw std::runtime_error("no process whose memory could be measured");
    if (child == 0) {
        size_t bytes = 0;
        try {
            bytes = GrowthInThisProcess(scene, stage);
        } catch (const std::exception&) {
            _Exit(1);
        }
        _Exit(write(ends[1], &bytes, sizeof bytes) == sizeof bytes ? 0 : 1);
    }
    close(ends[1]);
    size_t bytes = 0;
    const bool hasCome = read(ends[0], &bytes, sizeof bytes) == sizeof bytes;
    close(ends[0]);
    waitpid(child, nullptr, 0);
    if (!hasCome) throw std::runtime_error("the process whose memory is measured has failed");
    return bytes;
}

}  // namespace captionfx::peers
