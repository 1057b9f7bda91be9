// A title's XML file as the tool reads it: with the place and the reason where it is no title, and with what the
// library's interface does not hand out.
#pragma once

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/argument_values.h"

namespace captionfx {

/// What of a string stands in the file alone.
struct FileString {
    std::vector<Keyframe> keys;          ///< By rising time.
    std::vector<std::string> faceNames;  ///< Of each character as it was saved, UTF-8.
};

class TitleFile {
public:
    /// Reads and checks a file. Throws std::runtime_error with one line: the file, the place, the reason.
    explicit TitleFile(const std::filesystem::path& path);

    /// Replaces the strings of `title` by the file's. Throws as above.
    void LoadInto(IKVT_CaptionFx& title) const;

    [[nodiscard]] std::vector<FileString> Strings() const;

private:
    std::filesystem::path path_;
    std::shared_ptr<void> document_;  // as the XML library of the system has it
};

/// Gives the first string of a title keyframes. Its strings are saved to XML nodes, changed there and loaded again,
/// which is the interface's way to set keyframes.
void SetKeyframes(IKVT_CaptionFx& title, const std::vector<Keyframe>& keys);

}  // namespace captionfx
