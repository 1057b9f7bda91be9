// A string's font table while its characters get other fonts one after the other: as ReleaseFontRange and InternFont
// would leave it, without searching and moving the table for each of them.
#pragma once

#include <deque>
#include <map>
#include <string_view>
#include <vector>

#include "host/document.h"

namespace captionfx {

class FontTableWalk {
public:
    explicit FontTableWalk(const MetaString& string);

    /// A character leaves entry `from`, which goes with its last user, and takes the first entry equal to `font`, byte
    /// for byte, or a new one at the end. Returns that entry's number; the numbers of others do not change by it.
    int32_t Exchange(int32_t from, const MetaFont& font);

    /// Stores the table into the string, whose characters hold numbers of entries, and turns them into indices.
    void Store(MetaString& string) const;

private:
    struct Entry {
        MetaFont Font;
        int32_t Users;
        bool IsGone;
    };

    static std::string_view BytesOf(const MetaFont& font) {
        return {reinterpret_cast<const char*>(&font), sizeof font};
    }
    int32_t Append(const MetaFont& font);

    std::deque<Entry> entries_;                                      // never moved: the keys look into them
    std::map<std::string_view, std::deque<int32_t>> numbersByFont_;  // ascending; those in front may be gone
};

}  // namespace captionfx
