#include "platform/windows/wide_text.h"

#include <iterator>
#include <utf8.h>

namespace captionfx {

std::wstring WideOf(std::string_view text) {
    std::string replaced;
    if (!utf8::is_valid(text.begin(), text.end())) {
        utf8::replace_invalid(text.begin(), text.end(), std::back_inserter(replaced));
        text = replaced;
    }
    std::wstring wide;
    utf8::utf8to16(text.begin(), text.end(), std::back_inserter(wide));
    return wide;
}

}  // namespace captionfx
