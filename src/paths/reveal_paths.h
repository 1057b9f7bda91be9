// Reveal effects: characters stay where they are and show themselves through alpha and scale.
#pragma once

#include "paths/path_formula.h"

namespace captionfx {

PathFormula Fade, NoEffect;

class CPathFade final : public CCharacterPath<&Fade> {};
class CPathNoEffect final : public CCharacterPath<&NoEffect> {};

}  // namespace captionfx
