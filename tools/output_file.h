// A file that appears whole or not at all.
#pragma once

#include <cstdio>
#include <filesystem>
#include <memory>

namespace captionfx {

/// Written under another name in the same folder, it takes its place when it is finished; unfinished, it leaves
/// nothing. Something that is no plain file, such as a pipe, is written to as it stands. All failures throw
/// std::runtime_error with a one-line reason.
class OutputFile {
public:
    explicit OutputFile(const std::filesystem::path& path);
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;
    ~OutputFile();

    [[nodiscard]] std::FILE* Stream() const { return file_.get(); }
    /// Where the bytes go until they are finished, for a library that opens files itself.
    [[nodiscard]] const std::filesystem::path& Path() const { return temporary_.empty() ? path_ : temporary_; }
    void Write(const void* bytes, size_t size);
    /// Closes the file and gives it its name.
    void Finish();

private:
    struct Closer {
        void operator()(std::FILE* file) const noexcept { std::fclose(file); }
    };

    std::filesystem::path path_, target_, temporary_;  // the temporary is empty where there is none
    std::unique_ptr<std::FILE, Closer> file_;
};

}  // namespace captionfx
