// The effects that hosts may name, as the library's catalogue has them: the public interface does not tell.
#pragma once

#include <cstdint>
#include <span>
#include <string_view>

namespace captionfx {

struct EffectInfo {
    std::string_view name;         ///< Such as "PATH_FADE".
    std::string_view effectClass;  ///< Its group in an effect browser, such as "CLASS_WIPE".
    int32_t passes = 1;            ///< How often a frame draws each character.
    bool isImageBased = false;     ///< Works on the finished picture of the string.
};

[[nodiscard]] std::span<const EffectInfo> EffectList();

}  // namespace captionfx
