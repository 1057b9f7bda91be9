#include "platform/utf16.h"

#include <iterator>
#include <utf8.h>

namespace captionfx {

std::string Utf8Of(std::u16string_view text) {
    constexpr char32_t kReplacement = 0xFFFD, kPlane1 = 0x10000;
    constexpr char32_t kLeads = 0xD800, kTrails = 0xDC00, kBeyond = 0xE000;
    std::string result;
    for (size_t i = 0; i < text.size(); ++i) {
        char32_t point = text[i];
        const char32_t next = i + 1 < text.size() ? text[i + 1] : 0;
        if (point >= kLeads && point < kTrails && next >= kTrails && next < kBeyond) {
            point = kPlane1 + ((point - kLeads) << 10U) + (next - kTrails);
            ++i;
        } else if (point >= kLeads && point < kBeyond) {
            point = kReplacement;
        }
        utf8::append(point, std::back_inserter(result));
    }
    return result;
}

}  // namespace captionfx
