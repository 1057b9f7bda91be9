#include "tools/title_source.h"

#include <algorithm>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "tools/input_file.h"
#include "tools/script/json_tree.h"
#include "tools/script/script_title.h"
#include "tools/script/subtitle_file.h"
#include "tools/script/subtitle_title.h"
#include "tools/script/title_script.h"

namespace captionfx {
namespace {

constexpr FrameSize kUsualFrame{1280, 720};

enum class TitleKind { kXml, kScript, kSubtitles };

/// By the name, or else by the first characters that are no space. What is nothing else is taken for XML, whose reader
/// says what is wrong.
TitleKind KindOfTitle(const std::filesystem::path& path) {
    const std::string extension = path.extension().string();
    if (extension == ".xml") return TitleKind::kXml;
    if (extension == ".json") return TitleKind::kScript;
    if (extension == ".srt" || extension == ".vtt") return TitleKind::kSubtitles;
    constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
    const std::string bytes = ReadWholeFile(path);
    std::string_view text = bytes;
    if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
    if (text.starts_with("WEBVTT")) return TitleKind::kSubtitles;
    text.remove_prefix(std::min(text.find_first_not_of(" \t\r\n"), text.size()));
    if (text.starts_with('{')) return TitleKind::kScript;
    const bool beginsWithNumber = !text.empty() && text.front() >= '0' && text.front() <= '9';
    return beginsWithNumber ? TitleKind::kSubtitles : TitleKind::kXml;
}

/// How much larger the frame that is asked for shows a title of this frame.
float Enlargement(FrameSize made, FrameSize asked) {
    return std::min(static_cast<float>(asked.width) / static_cast<float>(made.width),
                    static_cast<float>(asked.height) / static_cast<float>(made.height));
}

FrameSize FrameOf(IKVT_CaptionFx& title) {
    TitleRenderSettings settings{};
    title.GetRenderSettings(&settings);
    return {settings.Width, settings.Height};
}

/// Runs `read` on the text of a file, whose name goes in front of what is wrong with it.
template <class Read>
auto ReadPlaced(const std::filesystem::path& path, Read read) try {
    const std::string text = ReadWholeFile(path);
    if (text.starts_with("\xFF\xFE") || text.starts_with("\xFE\xFF"))
        throw PlacedError({}, "", "the text is UTF-16; save it as UTF-8");
    return read(text);
} catch (const PlacedError& error) {
    throw std::runtime_error(path.string() + ":" + error.what());
}

TitleScript ReadScript(const std::string& text, FrameSize usual) {
    TitleScript script = ReadTitleScript(text, usual);
    if (script.cue) throw PlacedError({}, "", "this is a style for subtitles, not a title");
    return script;
}

TitleScript ReadScriptFile(const std::filesystem::path& path, FrameSize usual) {
    return ReadPlaced(path, [&](const std::string& text) { return ReadScript(text, usual); });
}

TitleScript ReadSubtitleStyle(const std::filesystem::path& path, FrameSize usual) {
    if (path.empty()) return ReadTitleScript(UsualSubtitleStyle(), usual);
    return ReadPlaced(path, [&](const std::string& text) {
        TitleScript style = ReadTitleScript(text, usual);
        if (!style.cue) throw PlacedError({}, "", "this is a title, not a style for subtitles: it has no 'cue'");
        return style;
    });
}

TitleScript ReadSubtitleFile(const std::filesystem::path& path, const std::filesystem::path& style, FrameSize usual) {
    std::vector<SubtitleCue> cues = ReadPlaced(path, [](const std::string& text) { return ReadSubtitles(text); });
    return ScriptOfSubtitles(std::move(cues), ReadSubtitleStyle(style, usual), usual);
}

float LastKeyOf(const std::vector<FileString>& strings) {
    float last = 0;
    for (const FileString& string : strings) {
        for (const Keyframe& key : string.keys) last = std::max(last, key.time);
    }
    return last;
}

TitleSource BuildSource(IKVT_CaptionFx& title, const TitleScript& script, FrameSize usual) {
    BuildTitle(title, script, usual);
    TitleSource source;
    source.frame = script.frame;
    source.fonts = FontsOf(script);
    source.scale = script.scale;
    source.strings = StringsOf(title);
    source.duration = script.duration.value_or(LastKeyOf(source.strings));
    return source;
}

}  // namespace

TitleSource LoadTitle(IKVT_CaptionFx& title, const std::filesystem::path& path, const std::filesystem::path& style) {
    const TitleKind kind = KindOfTitle(path);
    if (!style.empty() && kind != TitleKind::kSubtitles)
        throw std::runtime_error(path.string() + ": a style is for subtitles, and this is none");
    if (kind == TitleKind::kXml) {
        const TitleFile file(path);
        file.LoadInto(title);
        if (SetDirection(title, IsVertical(title))) file.LoadInto(title);
        TitleSource source;
        source.strings = file.Strings();
        source.duration = LastKeyOf(source.strings);
        return source;
    }
    const FrameSize usual = FrameOf(title);
    return BuildSource(
        title, kind == TitleKind::kScript ? ReadScriptFile(path, usual) : ReadSubtitleFile(path, style, usual), usual);
}

TitleSource LoadScript(IKVT_CaptionFx& title, const std::string& text) {
    const FrameSize usual = FrameOf(title);
    return BuildSource(title, ReadScript(text, usual), usual);
}

FrameSize SetSourceFrame(IKVT_CaptionFx& title, const TitleSource& source, std::optional<FrameSize> asked,
                         Ground ground) {
    const FrameSize frame = asked.value_or(source.frame.value_or(kUsualFrame));
    SetFrame(title, frame, ground);
    SetScale(title, source.scale * (source.frame ? Enlargement(*source.frame, frame) : 1.0F));
    return frame;
}

void NoteFontSubstitutes(IKVT_CaptionFx& title, const TitleSource& source) {
    for (const std::u16string& name : source.fonts) {
        constexpr float kAnySize = 32.0F;
        SetFont(title, {.name = name, .size = kAnySize});
        NoteFontSubstitute(title, name);
    }
}

}  // namespace captionfx
