// A folder of one test's own, gone with the test.
#pragma once

#include <filesystem>
#include <string_view>

namespace captionfx {

class ScratchFolder {
public:
    ScratchFolder();
    ~ScratchFolder();
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] std::filesystem::path operator/(std::string_view name) const { return path_ / name; }
    [[nodiscard]] const std::filesystem::path& Path() const { return path_; }

private:
    std::filesystem::path path_;
};

}  // namespace captionfx
