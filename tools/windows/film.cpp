// Without video libraries: frames as they are into a pipe, for a program that makes a film of them.
#include "tools/film.h"

#include <stdexcept>
#include <string>

#include "tools/windows/raw_stream.h"

namespace captionfx {
namespace {

[[noreturn]] void FailForFilms(const std::filesystem::path& file) {
    throw std::runtime_error("'" + file.string() +
                             "': films are neither read nor written by this build: write PNG frames, such as "
                             "frames/%04d.png, or raw frames into a pipe, by -o - --format bgra");
}

}  // namespace

void CheckFilmName(const std::filesystem::path& output, std::string_view format) {
    if (output != "-") FailForFilms(output);
    if (format != "bgra" && format != "y4m")
        throw std::runtime_error(format.empty() ? "-o - needs --format bgra or y4m"
                                                : "--format: -o - is bgra or y4m, not '" + std::string(format) + "'");
}

std::unique_ptr<FrameSink> MakeFilm(const std::filesystem::path& output, std::string_view format,
                                    const FilmSetup& setup) {
    CheckFilmName(output, format);
    if (format == "bgra") return std::make_unique<BgraStream>();
    return std::make_unique<Y4mStream>(setup);
}

std::unique_ptr<GroundVideo> OpenVideo(const std::filesystem::path& path) {
    FailForFilms(path);
}

}  // namespace captionfx
