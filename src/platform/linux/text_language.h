// Which language a character is likely to be written in, as Fontconfig's tags. Ideographs are shared by several; there
// the text around decides.
#pragma once

#include <string_view>

namespace captionfx {

/// How the ideographs of a text are to be drawn: "ja", "ko", "zh-tw" or "zh-cn". Kana, Hangul or bopomofo in it settle
/// the matter, in this order; else the first of simplified Chinese, Japanese and traditional Chinese whose everyday
/// characters include all of its ideographs, else "zh-cn". Safe on all threads.
[[nodiscard]] std::string_view HanLanguageOf(std::u16string_view text);

/// The language of a character's script; `hanLanguage` for ideographs and what goes with them, "en" for scripts of
/// several languages and for none. The tags end with a zero, and live for ever but for `hanLanguage`.
[[nodiscard]] std::string_view LanguageOf(char16_t unit, std::string_view hanLanguage);

}  // namespace captionfx
