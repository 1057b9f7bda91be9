#include "paths/path_catalog.h"

#include <algorithm>
#include <array>

#include "paths/flight_paths.h"
#include "paths/image_paths.h"
#include "paths/perspective_scroll.h"
#include "paths/reveal_paths.h"
#include "paths/rotation_paths.h"
#include "paths/travel_paths.h"
#include "paths/two_pass_paths.h"

namespace captionfx {
namespace {

constexpr std::string_view kSlide = "CLASS_SLIDE", kFly = "CLASS_FLY", kRotate = "CLASS_ROTATE", kPopup = "CLASS_POPUP",
                           kWipe = "CLASS_WIPE", kRollAndCrawl = "CLASS_ROLLNCRAWL", kSpecial = "CLASS_SPECIAL",
                           kNone = "CLASS_NOEFFECT";

/// Appends to a zeroed field at `at`, and moves it on.
constexpr void Append(char* field, size_t& at, std::string_view text) {
    for (const char c : text) field[at++] = c;
}

constexpr char ToUpper(char c) {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

template <class Path>
std::unique_ptr<CPathBase> Make() {
    return std::make_unique<Path>();
}

/// A row; all its texts follow from the token, such as "SlideUp": "PATH_SLIDEUP", "IDS_FXS_Ti_SlideUp_Name".
template <class Path>
constexpr PathCatalogEntry AnyRow(std::string_view token, std::string_view classKey, int32_t listGroup,
                                  int32_t passCount, int32_t imageBased) {
    static_assert(std::is_final_v<Path> && std::is_base_of_v<CPathBase, Path>);
    PathCatalogEntry row{};
    size_t name = 0, nameKey = 0, descKey = 0, classEnd = 0;
    Append(row.PathName, name, "PATH_");
    for (const char c : token) row.PathName[name++] = ToUpper(c);
    for (const std::string_view piece : {std::string_view("IDS_FXS_Ti_"), token, std::string_view("_Name")}) {
        Append(row.NameKey, nameKey, piece);
    }
    for (const std::string_view piece : {std::string_view("IDS_FXS_Ti_"), token, std::string_view("_Desc")}) {
        Append(row.DescKey, descKey, piece);
    }
    Append(row.ClassKey, classEnd, classKey);
    row.ListGroup = listGroup;
    row.PassCount = passCount;
    row.ImageBased = imageBased;
    row.Make = Make<Path>;
    return row;
}

template <class Path>
constexpr PathCatalogEntry Row(std::string_view token, std::string_view classKey, int32_t listGroup,
                               int32_t passCount = 1) {
    static_assert(sizeof(Path) == sizeof(CPathBase), "a character effect keeps no state of its own");
    return AnyRow<Path>(token, classKey, listGroup, passCount, 0);
}

/// A row of an effect on the string's image.
template <class Path>
constexpr PathCatalogEntry ImageRow(std::string_view token, std::string_view classKey) {
    return AnyRow<Path>(token, classKey, 1, 1, 1);
}

// The one list of effects. Order, groups and counts are part of what hosts rely on.
constexpr std::array kCatalog = {
    Row<CPathAmplifyH>("AmplifyH", kWipe, 1),
    Row<CPathAmplifyV>("AmplifyV", kWipe, 1),
    Row<CPathAssembly>("Assembly", kSlide, 1),
    Row<CPathDoubleVisionH>("DoubleVisionH", kPopup, 1, 2),
    Row<CPathDoubleVisionV>("DoubleVisionV", kPopup, 1, 2),
    Row<CPathFlocking>("Flocking", kSpecial, 2),
    Row<CPathGlitter>("Glitter", kPopup, 2),
    Row<CPathHideDown>("HideDown", kSlide, 2),
    Row<CPathHideLeft>("HideLeft", kSlide, 2),
    Row<CPathHideRight>("HideRight", kSlide, 2),
    Row<CPathHideUp>("HideUp", kSlide, 2),
    Row<CPathIcicles>("Icicles", kSpecial, 2),
    Row<CPathMagnets1>("Magnets1", kPopup, 1),
    Row<CPathMagnets2>("Magnets2", kPopup, 1),
    Row<CPathMarch>("March", kFly, 2),
    Row<CPathNoEffect>("NoEffect", kNone, 2),
    Row<CPathPopup1>("Popup1", kPopup, 1),
    Row<CPathPopup2>("Popup2", kPopup, 1),
    Row<CPathPopup3>("Popup3", kPopup, 1),
    Row<CPathRollerCoasterLeft>("RollerCoasterLeft", kFly, 2),
    Row<CPathRollerCoasterRight>("RollerCoasterRight", kFly, 2),
    Row<CPathRollingLeft>("RollingLeft", kRotate, 1),
    Row<CPathRollingRight>("RollingRight", kRotate, 1),
    Row<CPathRotateCCW>("RotateCCW", kRotate, 2),
    Row<CPathRotateCW>("RotateCW", kRotate, 2),
    Row<CPathScrollDown>("ScrollDown", kRollAndCrawl, 2),
    Row<CPathScrollLeft>("ScrollLeft", kRollAndCrawl, 2),
    Row<CPathScrollRight>("ScrollRight", kRollAndCrawl, 2),
    Row<CPathScrollUp>("ScrollUp", kRollAndCrawl, 2),
    Row<CPathSlideDown>("SlideDown", kSlide, 1),
    Row<CPathSlideLeft>("SlideLeft", kSlide, 1),
    Row<CPathSlideRight>("SlideRight", kSlide, 1),
    Row<CPathSlideUp>("SlideUp", kSlide, 1),
    Row<CPathSoloDown>("SoloDown", kSlide, 1),
    Row<CPathSoloLeft>("SoloLeft", kSlide, 1),
    Row<CPathSoloRight>("SoloRight", kSlide, 1),
    Row<CPathSoloUp>("SoloUp", kSlide, 1),
    Row<CPathSpiral>("Spiral", kFly, 2),
    Row<CPathSwarmLeft>("SwarmLeft", kFly, 1),
    Row<CPathSwarmRight>("SwarmRight", kFly, 1),
    Row<CPathSwirl>("Swirl", kRotate, 2),
    Row<CPathTranceCCW>("TranceCCW", kRotate, 1, 2),
    Row<CPathTranceCW>("TranceCW", kRotate, 1, 2),
    Row<CPathTranceCenter>("TranceCenter", kSpecial, 1, 2),
    Row<CPathTranceDown>("TranceDown", kSlide, 1, 2),
    Row<CPathTranceLeft>("TranceLeft", kSlide, 1, 2),
    Row<CPathTranceRight>("TranceRight", kSlide, 1, 2),
    Row<CPathTranceUp>("TranceUp", kSlide, 1, 2),
    Row<CPathTwinkle>("Twinkle", kPopup, 2),
    Row<CPathUnite>("Unite", kSpecial, 1),
    Row<CPathWave>("Wave", kFly, 2),
    Row<CPathWindshieldLeft>("WindshieldLeft", kFly, 1),
    Row<CPathWindshieldRight>("WindshieldRight", kFly, 1),
    Row<CPathWipeDown>("WipeDown", kWipe, 2),
    Row<CPathWipeLeft>("WipeLeft", kWipe, 2),
    Row<CPathWipeRight>("WipeRight", kWipe, 2),
    Row<CPathWipeUp>("WipeUp", kWipe, 2),
    Row<CPathFlip>("Flip", kSpecial, 1),
    Row<CPathFade>("Fade", kWipe, 2),
    Row<CPathRotateInwards>("RotateInwards", kRotate, 1),
    Row<CPathRotateOutwards>("RotateOutwards", kRotate, 1),
    ImageRow<CPathBlurLeft>("BlurLeft", kSpecial),
    ImageRow<CPathBlurRight>("BlurRight", kSpecial),
    ImageRow<CPathPerspectiveScroll>("PerspectiveScroll", kRollAndCrawl),
    ImageRow<CPathGlow>("Glow", kSpecial),
};

constexpr bool NamesAreUnique() {
    for (size_t a = 0; a < kCatalog.size(); ++a) {
        for (size_t b = a + 1; b < kCatalog.size(); ++b) {
            if (std::string_view(kCatalog[a].PathName) == std::string_view(kCatalog[b].PathName)) return false;
        }
    }
    return true;
}
static_assert(kCatalog.size() == 65 && NamesAreUnique());

}  // namespace

std::span<const PathCatalogEntry> PathCatalog() {
    return kCatalog;
}

const PathCatalogEntry* FindPath(std::string_view name) {
    const auto row =
        std::ranges::find_if(kCatalog, [&](const PathCatalogEntry& entry) { return name == entry.PathName; });
    return row == kCatalog.end() ? nullptr : &*row;
}

PathMaker* FindPathMaker(std::string_view name) {
    if (name == "PATH_SCROLLNRESIZE") return Make<CPathScrollNResize>;
    const PathCatalogEntry* const row = FindPath(name);
    return row == nullptr ? nullptr : row->Make;
}

}  // namespace captionfx
