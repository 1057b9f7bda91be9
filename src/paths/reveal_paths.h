// Reveal effects: characters stay where they are, or nearly so, and show themselves through alpha and scale.
#pragma once

#include "paths/path_formula.h"

namespace captionfx {

PathFormula WipeRight, WipeDown, WipeLeft, WipeUp, AmplifyH, AmplifyV, Fade, NoEffect;
PathFormula Popup1, Popup2, Popup3, Magnets1, Magnets2, Glitter, Twinkle, Icicles;

class CPathWipeRight final : public CStartingPath<&WipeRight> {};
class CPathWipeDown final : public CStartingPath<&WipeDown> {};
class CPathWipeLeft final : public CStartingPath<&WipeLeft> {};
class CPathWipeUp final : public CStartingPath<&WipeUp> {};
class CPathAmplifyH final : public CStartingPath<&AmplifyH> {};
class CPathAmplifyV final : public CStartingPath<&AmplifyV> {};
class CPathFade final : public CCharacterPath<&Fade> {};
class CPathNoEffect final : public CCharacterPath<&NoEffect> {};
class CPathPopup1 final : public CStartingPath<&Popup1> {};
class CPathPopup2 final : public CStartingPath<&Popup2> {};
class CPathPopup3 final : public CStartingPath<&Popup3> {};
class CPathMagnets1 final : public CStartingPath<&Magnets1> {};
class CPathMagnets2 final : public CStartingPath<&Magnets2> {};
class CPathGlitter final : public CStartingPath<&Glitter> {};
class CPathTwinkle final : public CStartingPath<&Twinkle> {};
class CPathIcicles final : public CStartingPath<&Icicles> {};

}  // namespace captionfx
