// A host in C++17 between two others: it reads raw frames, puts a title on each, and writes them on.
//
//     ffmpeg -i film.mp4 -f rawvideo -pix_fmt bgra - | cpp_host title.xml 1280x720 25 |
//         ffmpeg -f rawvideo -pix_fmt bgra -s 1280x720 -r 25 -i - titled.mp4
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <exception>
#include <filesystem>
#include <iostream>
#include <memory>
#include <new>
#include <stdexcept>
#include <string>
#include <vector>

#include <captionfx/caption_fx.h>

namespace {

struct Release {
    void operator()(IKVT_CaptionFx* title) const noexcept { ReleaseTitleHost(title); }
};
using TitleHandle = std::unique_ptr<IKVT_CaptionFx, Release>;

struct FrameSize {
    int32_t width = 0, height = 0;
};

TitleHandle LoadTitle(const std::string& path, FrameSize frame) {
    TitleHandle title(GetTitleHost());
    if (!title) throw std::bad_alloc();
    TitleRenderSettings settings{};
    title->GetRenderSettings(&settings);
    settings.Width = settings.ClipRect.right = frame.width;
    settings.Height = settings.ClipRect.bottom = frame.height;
    settings.AntialiasMode = 0;     // the finest
    settings.DestinationAlpha = 0;  // films are opaque
    title->SetRenderSettings(&settings);
    if (title->LoadFromFile(std::filesystem::path(path).u16string().c_str()) != kTitleOk)
        throw std::runtime_error(path + ": cannot be read, or is no title");
    return title;
}

/// A title at rest keeps its picture for the next frame, of its last string alone: so a title of several drops it.
/// Setting the filter to another value and back does that at the least cost.
void Draw(IKVT_CaptionFx& title, std::vector<uint32_t>& pixels, float seconds) {
    if (title.GetStringCount() > 1) {
        TitleRenderSettings settings{};
        title.GetRenderSettings(&settings);
        const TitleRenderSettings wanted = settings;
        settings.PostFilter = settings.PostFilter == 0 ? 1 : 0;
        title.SetRenderSettings(&settings);
        title.SetRenderSettings(&wanted);
    }
    if (title.RenderFrame(pixels.data(), seconds) != kTitleOk) throw std::bad_alloc();
}

void PassFrames(IKVT_CaptionFx& title, FrameSize frame, double rate) {
    std::vector<uint32_t> pixels(static_cast<size_t>(frame.width) * static_cast<size_t>(frame.height));
    const size_t bytes = pixels.size() * sizeof(uint32_t);
    for (int64_t number = 0;; ++number) {
        const size_t count = std::fread(pixels.data(), 1, bytes, stdin);
        if (count == 0 && std::feof(stdin) != 0) break;
        if (count != bytes) throw std::runtime_error("the input ends within a frame: is its size the one given?");
        Draw(title, pixels, static_cast<float>(static_cast<double>(number) / rate));
        if (std::fwrite(pixels.data(), 1, bytes, stdout) != bytes) throw std::runtime_error("the output is closed");
    }
    if (std::fflush(stdout) != 0) throw std::runtime_error("the output is closed");
}

}  // namespace

int main(int argc, char** argv) {
    FrameSize frame;
    double rate = 0;
    const bool isUsable = argc == 4 && std::sscanf(argv[2], "%dx%d", &frame.width, &frame.height) == 2 &&
                          std::sscanf(argv[3], "%lf", &rate) == 1 && frame.width > 0 && frame.height > 0 && rate > 0;
    if (!isUsable) {
        std::cerr << "usage: cpp_host TITLE.xml WIDTHxHEIGHT FRAMES_A_SECOND < frames.bgra > titled.bgra\n";
        return 2;
    }
    try {
        PassFrames(*LoadTitle(argv[1], frame), frame, rate);
    } catch (const std::exception& error) {
        std::cerr << "cpp_host: " << error.what() << '\n';
        return EXIT_FAILURE;
    }
    return EXIT_SUCCESS;
}
