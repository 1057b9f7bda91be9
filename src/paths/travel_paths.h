// Travel effects: characters move over the canvas to their place.
#pragma once

#include "paths/path_formula.h"

namespace captionfx {

PathFormula SlideLeft, SlideUp, SlideRight, SlideDown, HideDown, HideRight, HideUp, HideLeft;
PathFormula SoloDown, SoloUp, SoloRight, SoloLeft, ScrollUp, ScrollDown, ScrollLeft, ScrollRight, ScrollNResize;
PathFormula Assembly, Unite, March, Flip, WindshieldLeft, WindshieldRight, Wave, Flocking;

class CPathSlideLeft final : public CStartingPath<&SlideLeft> {};
class CPathSlideUp final : public CStartingPath<&SlideUp> {};
class CPathSlideRight final : public CStartingPath<&SlideRight> {};
class CPathSlideDown final : public CStartingPath<&SlideDown> {};
class CPathHideDown final : public CCharacterPath<&HideDown> {};
class CPathHideRight final : public CCharacterPath<&HideRight> {};
class CPathHideUp final : public CCharacterPath<&HideUp> {};
class CPathHideLeft final : public CCharacterPath<&HideLeft> {};
class CPathSoloDown final : public CStartingPath<&SoloDown> {};
class CPathSoloUp final : public CStartingPath<&SoloUp> {};
class CPathSoloRight final : public CStartingPath<&SoloRight> {};
class CPathSoloLeft final : public CStartingPath<&SoloLeft> {};
class CPathScrollUp final : public CStartingPath<&ScrollUp> {};
class CPathScrollDown final : public CStartingPath<&ScrollDown> {};
class CPathScrollLeft final : public CStartingPath<&ScrollLeft> {};
class CPathScrollRight final : public CStartingPath<&ScrollRight> {};
class CPathScrollNResize final : public CCharacterPath<&ScrollNResize> {};
class CPathAssembly final : public CStartingPath<&Assembly> {};
class CPathUnite final : public CCharacterPath<&Unite> {};
class CPathMarch final : public CStartingPath<&March> {};
class CPathFlip final : public CCharacterPath<&Flip> {};
class CPathWindshieldLeft final : public CStartingPath<&WindshieldLeft> {};
class CPathWindshieldRight final : public CStartingPath<&WindshieldRight> {};
class CPathWave final : public CStartingPath<&Wave> {};
class CPathFlocking final : public CStartingPath<&Flocking> {};

}  // namespace captionfx
