// A title's XML file as the tool reads it: with the place and the reason where it is no title, and with what the
// library's interface does not hand out.
#pragma once

#include <filesystem>
#include <string>
#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/argument_values.h"
#include "tools/title_document.h"

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
    TitleNode root_;
};

/// The same of the strings of a title, face names as they are realised here.
[[nodiscard]] std::vector<FileString> StringsOf(IKVT_CaptionFx& title);

/// Gives the strings of a title keyframes, `keys[i]` to string i; strings beyond them keep theirs. The strings are
/// saved to XML nodes, changed there and loaded again, which is the interface's way to set keyframes.
void SetKeyframes(IKVT_CaptionFx& title, const std::vector<std::vector<Keyframe>>& keys);

/// The title as an XML document.
[[nodiscard]] std::u16string TitleXml(IKVT_CaptionFx& title);

/// Writes that document to a file, UTF-16 with a byte-order mark. The library's own file would do, but its failure
/// would be told twice: here and in the debug output.
void SaveTitle(IKVT_CaptionFx& title, const std::filesystem::path& path);

}  // namespace captionfx
