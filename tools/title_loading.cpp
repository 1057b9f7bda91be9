#include "tools/title_loading.h"

#include <algorithm>

#include "tools/title_file.h"

namespace captionfx {

float LoadTitleFile(IKVT_CaptionFx& title, const std::filesystem::path& path) {
    const TitleFile file(path);
    file.LoadInto(title);
    float end = 0.0F;
    for (const FileString& string : file.Strings()) {
        if (!string.keys.empty()) end = std::max(end, string.keys.back().time);
    }
    return end;
}

}  // namespace captionfx
