// The fonts that the system tells of.
#pragma once

#include <set>
#include <string>

namespace captionfx {

/// Each family by its first name, UTF-8.
[[nodiscard]] std::set<std::string> FontFamilies();

}  // namespace captionfx
