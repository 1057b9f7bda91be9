#include "tools/png_file.h"

#include <cassert>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>
#include <png.h>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>
#include <utility>

namespace captionfx {
namespace {

namespace fs = std::filesystem;

struct FileCloser {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};
using FileHandle = std::unique_ptr<std::FILE, FileCloser>;

/// libpng's record of one transfer, freed whatever happens. The simplified interface reports its errors in `message`
/// instead of jumping over destructors.
struct Transfer {
    png_image image{};

    Transfer() { image.version = PNG_IMAGE_VERSION; }
    ~Transfer() { png_image_free(&image); }
    Transfer(const Transfer&) = delete;
    Transfer& operator=(const Transfer&) = delete;
};

/// A file that is removed again unless it was renamed to its final name.
class TemporaryFile {
public:
    explicit TemporaryFile(fs::path path) : path_(std::move(path)) {}
    ~TemporaryFile() {
        std::error_code ignored;
        if (!path_.empty()) fs::remove(path_, ignored);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;

    [[nodiscard]] std::error_code RenameTo(const fs::path& target) {
        std::error_code error;
        fs::rename(path_, target, error);
        if (!error) path_.clear();
        return error;
    }

private:
    fs::path path_;
};

[[noreturn]] void Fail(const char* what, const fs::path& path, const std::string& reason) {
    throw std::runtime_error(std::string(what) + " '" + path.string() + "': " + reason);
}

std::string LastError() {
    return std::generic_category().message(errno);
}

/// A short name of its own, so that the longest file name still has one, and two writers never share it.
fs::path TemporaryNameBeside(const fs::path& target) {
    constexpr int kNameSize = 40;
    char name[kNameSize];
    std::random_device random;
    std::snprintf(name, sizeof name, ".captionfx-%08x%08x.tmp", random(), random());
    return target.parent_path() / name;
}

void WriteTo(FileHandle file, const fs::path& path, std::span<const uint32_t> pixels, int32_t width, int32_t height) {
    Transfer transfer;
    transfer.image.width = static_cast<png_uint_32>(width);
    transfer.image.height = static_cast<png_uint_32>(height);
    transfer.image.format = PNG_FORMAT_BGRA;
    if (png_image_write_to_stdio(&transfer.image, file.get(), 0, pixels.data(), 0, nullptr) == 0)
        Fail("cannot write", path, transfer.image.message);
    // A full disk often shows only when the last block leaves the buffer.
    if (std::fclose(file.release()) != 0) Fail("cannot write", path, LastError());
}

}  // namespace

void WritePng(const fs::path& path, std::span<const uint32_t> pixels, int32_t width, int32_t height) {
    assert(width > 0 && height > 0);
    assert(pixels.size() == static_cast<size_t>(width) * static_cast<size_t>(height));

    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        FileHandle file(std::fopen(path.c_str(), "wb"));
        if (!file) Fail("cannot write", path, LastError());
        return WriteTo(std::move(file), path, pixels, width, height);
    }
    // A link keeps its place: what it points to is replaced.
    const fs::path target = fs::is_symlink(path, error) ? fs::weakly_canonical(path) : path;
    const fs::path temporaryName = TemporaryNameBeside(target);
    FileHandle file(std::fopen(temporaryName.c_str(), "wbx"));
    if (!file) Fail("cannot write", path, LastError());
    TemporaryFile temporary(temporaryName);
    WriteTo(std::move(file), path, pixels, width, height);
    error = temporary.RenameTo(target);
    if (error) Fail("cannot write", path, error.message());
}

PngImage ReadPng(const fs::path& path) {
    const FileHandle file(std::fopen(path.c_str(), "rb"));
    if (!file) Fail("cannot read", path, LastError());
    Transfer transfer;
    if (png_image_begin_read_from_stdio(&transfer.image, file.get()) == 0)
        Fail("cannot read", path, transfer.image.message);
    transfer.image.format = PNG_FORMAT_BGRA;

    PngImage result;
    result.width = static_cast<int32_t>(transfer.image.width);
    result.height = static_cast<int32_t>(transfer.image.height);
    result.pixels.resize(static_cast<size_t>(result.width) * static_cast<size_t>(result.height));
    if (png_image_finish_read(&transfer.image, nullptr, result.pixels.data(), 0, nullptr) == 0)
        Fail("cannot read", path, transfer.image.message);
    return result;
}

}  // namespace captionfx
