// Rotation effects: characters or the whole string turn as they come in.
#pragma once

#include "paths/path_formula.h"

namespace captionfx {

PathFormula RotateCCW, RotateCW, RotateInwards, RotateOutwards, RollingLeft, RollingRight, Swirl, Spiral;

class CPathRotateCCW final : public CCharacterPath<&RotateCCW> {};
class CPathRotateCW final : public CCharacterPath<&RotateCW> {};
class CPathRotateInwards final : public CCharacterPath<&RotateInwards> {};
class CPathRotateOutwards final : public CCharacterPath<&RotateOutwards> {};
class CPathRollingLeft final : public CCharacterPath<&RollingLeft> {};
class CPathRollingRight final : public CCharacterPath<&RollingRight> {};
class CPathSwirl final : public CCharacterPath<&Swirl> {};
class CPathSpiral final : public CCharacterPath<&Spiral> {};

}  // namespace captionfx
