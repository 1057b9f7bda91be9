#include "text/font_table_walk.h"

namespace captionfx {

FontTableWalk::FontTableWalk(const MetaString& string) {
    for (const MetaFont& font : string.Fonts) Append(font);
    for (const MetaCharacter& character : string.Characters) ++At(entries_, character.FontIndex).Users;
}

int32_t FontTableWalk::Append(const MetaFont& font) {
    entries_.push_back({.Font = font, .Users = 0, .IsGone = false});
    const int32_t number = CountOf(entries_) - 1;
    numbersByFont_[BytesOf(entries_.back().Font)].push_back(number);
    return number;
}

int32_t FontTableWalk::Exchange(int32_t from, const MetaFont& font) {
    Entry& left = At(entries_, from);
    left.IsGone = --left.Users == 0;

    int32_t number = -1;
    if (const auto found = numbersByFont_.find(BytesOf(font)); found != numbersByFont_.end()) {
        std::deque<int32_t>& numbers = found->second;
        while (!numbers.empty() && At(entries_, numbers.front()).IsGone) numbers.pop_front();
        if (!numbers.empty()) number = numbers.front();
    }
    if (number < 0) number = Append(font);
    ++At(entries_, number).Users;
    return number;
}

void FontTableWalk::Store(MetaString& string) const {
    std::vector<int32_t> indices;
    string.Fonts.clear();
    for (const Entry& entry : entries_) {
        indices.push_back(CountOf(string.Fonts));
        if (!entry.IsGone) string.Fonts.push_back(entry.Font);
    }
    for (MetaCharacter& character : string.Characters) character.FontIndex = At(indices, character.FontIndex);
}

}  // namespace captionfx
