#include "tools/output_file.h"

#include <cerrno>
#include <random>
#include <stdexcept>
#include <string>
#include <system_error>

#include "tools/file_stream.h"

namespace captionfx {
namespace {

namespace fs = std::filesystem;

[[noreturn]] void Fail(const fs::path& path, int error) {
    throw std::runtime_error("cannot write '" + path.string() + "': " + std::generic_category().message(error));
}

/// A short name of its own, so that the longest file name still has one, and two writers never share it.
fs::path TemporaryNameBeside(const fs::path& target) {
    constexpr int kNameSize = 40;
    char name[kNameSize];
    std::random_device random;
    std::snprintf(name, sizeof name, ".captionfx-%08x%08x.tmp", random(), random());
    return target.parent_path() / name;
}

}  // namespace

OutputFile::OutputFile(const fs::path& path) : path_(path), target_(path) {
    std::error_code error;
    const fs::file_status status = fs::status(path, error);
    if (fs::exists(status) && !fs::is_regular_file(status)) {
        file_.reset(OpenForWriting(path));
    } else {
        // A link keeps its place: what it points to is replaced.
        if (fs::is_symlink(path, error)) target_ = fs::weakly_canonical(path);
        temporary_ = TemporaryNameBeside(target_);
        file_.reset(CreateForWriting(temporary_));
    }
    if (!file_) Fail(path_, errno);
}

OutputFile::~OutputFile() {
    std::error_code ignored;
    if (!temporary_.empty()) fs::remove(temporary_, ignored);
}

void OutputFile::Write(const void* bytes, size_t size) {
    if (std::fwrite(bytes, 1, size, file_.get()) != size) Fail(path_, errno);
}

void OutputFile::Finish() {
    // A full disk often shows only when the last block leaves the buffer.
    if (std::fclose(file_.release()) != 0) Fail(path_, errno);
    if (temporary_.empty()) return;
    std::error_code error;
    fs::rename(temporary_, target_, error);
    if (error) Fail(path_, error.value());
    temporary_.clear();
}

}  // namespace captionfx
