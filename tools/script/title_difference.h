// What two titles have different, by the words of their XML.
#pragma once

#include <map>
#include <set>
#include <string>
#include <vector>

#include <captionfx/caption_fx.h>

namespace captionfx {

struct XmlTag {
    std::string name;
    std::map<std::string, std::string> attributes;  ///< Without "Index", which says nothing.
};

/// The tags of each string.
[[nodiscard]] std::vector<std::vector<XmlTag>> TagsByString(IKVT_CaptionFx& title);

/// The attributes in which two strings differ, such as "MetaString MaskFile", or the elements of which one has more
/// than the other.
[[nodiscard]] std::set<std::string> Differences(const std::vector<XmlTag>& a, const std::vector<XmlTag>& b);

}  // namespace captionfx
