#include "tools/effect_list.h"

#include <array>

namespace captionfx {
namespace {

constexpr std::string_view kSlide = "CLASS_SLIDE", kFly = "CLASS_FLY", kRotate = "CLASS_ROTATE", kPopup = "CLASS_POPUP",
                           kWipe = "CLASS_WIPE", kRollAndCrawl = "CLASS_ROLLNCRAWL", kSpecial = "CLASS_SPECIAL",
                           kNone = "CLASS_NOEFFECT";
constexpr bool kOnImage = true;

constexpr std::array kEffects = {
    EffectInfo{"PATH_AMPLIFYH", kWipe},
    EffectInfo{"PATH_AMPLIFYV", kWipe},
    EffectInfo{"PATH_ASSEMBLY", kSlide},
    EffectInfo{"PATH_DOUBLEVISIONH", kPopup, 2},
    EffectInfo{"PATH_DOUBLEVISIONV", kPopup, 2},
    EffectInfo{"PATH_FLOCKING", kSpecial},
    EffectInfo{"PATH_GLITTER", kPopup},
    EffectInfo{"PATH_HIDEDOWN", kSlide},
    EffectInfo{"PATH_HIDELEFT", kSlide},
    EffectInfo{"PATH_HIDERIGHT", kSlide},
    EffectInfo{"PATH_HIDEUP", kSlide},
    EffectInfo{"PATH_ICICLES", kSpecial},
    EffectInfo{"PATH_MAGNETS1", kPopup},
    EffectInfo{"PATH_MAGNETS2", kPopup},
    EffectInfo{"PATH_MARCH", kFly},
    EffectInfo{"PATH_NOEFFECT", kNone},
    EffectInfo{"PATH_POPUP1", kPopup},
    EffectInfo{"PATH_POPUP2", kPopup},
    EffectInfo{"PATH_POPUP3", kPopup},
    EffectInfo{"PATH_ROLLERCOASTERLEFT", kFly},
    EffectInfo{"PATH_ROLLERCOASTERRIGHT", kFly},
    EffectInfo{"PATH_ROLLINGLEFT", kRotate},
    EffectInfo{"PATH_ROLLINGRIGHT", kRotate},
    EffectInfo{"PATH_ROTATECCW", kRotate},
    EffectInfo{"PATH_ROTATECW", kRotate},
    EffectInfo{"PATH_SCROLLDOWN", kRollAndCrawl},
    EffectInfo{"PATH_SCROLLLEFT", kRollAndCrawl},
    EffectInfo{"PATH_SCROLLRIGHT", kRollAndCrawl},
    EffectInfo{"PATH_SCROLLUP", kRollAndCrawl},
    EffectInfo{"PATH_SLIDEDOWN", kSlide},
    EffectInfo{"PATH_SLIDELEFT", kSlide},
    EffectInfo{"PATH_SLIDERIGHT", kSlide},
    EffectInfo{"PATH_SLIDEUP", kSlide},
    EffectInfo{"PATH_SOLODOWN", kSlide},
    EffectInfo{"PATH_SOLOLEFT", kSlide},
    EffectInfo{"PATH_SOLORIGHT", kSlide},
    EffectInfo{"PATH_SOLOUP", kSlide},
    EffectInfo{"PATH_SPIRAL", kFly},
    EffectInfo{"PATH_SWARMLEFT", kFly},
    EffectInfo{"PATH_SWARMRIGHT", kFly},
    EffectInfo{"PATH_SWIRL", kRotate},
    EffectInfo{"PATH_TRANCECCW", kRotate, 2},
    EffectInfo{"PATH_TRANCECW", kRotate, 2},
    EffectInfo{"PATH_TRANCECENTER", kSpecial, 2},
    EffectInfo{"PATH_TRANCEDOWN", kSlide, 2},
    EffectInfo{"PATH_TRANCELEFT", kSlide, 2},
    EffectInfo{"PATH_TRANCERIGHT", kSlide, 2},
    EffectInfo{"PATH_TRANCEUP", kSlide, 2},
    EffectInfo{"PATH_TWINKLE", kPopup},
    EffectInfo{"PATH_UNITE", kSpecial},
    EffectInfo{"PATH_WAVE", kFly},
    EffectInfo{"PATH_WINDSHIELDLEFT", kFly},
    EffectInfo{"PATH_WINDSHIELDRIGHT", kFly},
    EffectInfo{"PATH_WIPEDOWN", kWipe},
    EffectInfo{"PATH_WIPELEFT", kWipe},
    EffectInfo{"PATH_WIPERIGHT", kWipe},
    EffectInfo{"PATH_WIPEUP", kWipe},
    EffectInfo{"PATH_FLIP", kSpecial},
    EffectInfo{"PATH_FADE", kWipe},
    EffectInfo{"PATH_ROTATEINWARDS", kRotate},
    EffectInfo{"PATH_ROTATEOUTWARDS", kRotate},
    EffectInfo{"PATH_BLURLEFT", kSpecial, 1, kOnImage},
    EffectInfo{"PATH_BLURRIGHT", kSpecial, 1, kOnImage},
    EffectInfo{"PATH_PERSPECTIVESCROLL", kRollAndCrawl, 1, kOnImage},
    EffectInfo{"PATH_GLOW", kSpecial, 1, kOnImage},
};

}  // namespace

std::span<const EffectInfo> EffectList() {
    return kEffects;
}

}  // namespace captionfx
