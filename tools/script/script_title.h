// Titles from scripts: the strings are made through the library's interface, which also measures them.
#pragma once

#include <vector>

#include <captionfx/caption_fx.h>

#include "tools/argument_values.h"
#include "tools/script/title_script.h"
#include "tools/title_handle.h"

namespace captionfx {

/// Measures strings in a title of its own, one document unit to the pixel.
class StringRuler {
public:
    /// The direction of the title that the strings are meant for, which decides about upright letters.
    explicit StringRuler(bool isVertical) : isVertical_(isVertical) {}

    /// Where the text of a string lies, seen from its upper left corner and turned as it is: the box of the turned
    /// text.
    [[nodiscard]] TitleRectF BoxOf(const ScriptString& string);

    /// Rectangles of the characters and of the lines, seen from the corner, before any turn.
    struct Layout {
        std::vector<TitleRectF> characters, lines;
    };
    [[nodiscard]] Layout LayoutOf(const ScriptString& string);

private:
    /// The index of the string that was added.
    int32_t Add(const ScriptString& string);

    bool isVertical_;
    TitleHandle title_ = MakeTitle();
};

/// The corner that puts a string to its place on a page.
[[nodiscard]] Position CornerOf(StringRuler& ruler, const ScriptString& string, Page page);

/// Whether all strings of a script are vertical.
[[nodiscard]] bool IsVertical(const TitleScript& script);

/// Adds a string with its corner there, without its timeline. Returns its index. Throws std::bad_alloc.
int32_t AddScriptString(IKVT_CaptionFx& title, const ScriptString& string, Position corner);

/// Replaces the strings of `title` by those of the script; `usual` is the frame of one that names none. Notes fonts
/// that are not installed on standard error. Throws std::bad_alloc.
void BuildTitle(IKVT_CaptionFx& title, const TitleScript& script, FrameSize usual);

}  // namespace captionfx
