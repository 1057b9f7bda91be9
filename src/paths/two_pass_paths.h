// Two-pass effects: each character is drawn twice in a frame, as itself and as a ghost that moves and fades.
#pragma once

#include "paths/path_formula.h"

namespace captionfx {

PathFormula TranceLeft, TranceRight, TranceUp, TranceDown, TranceCCW, TranceCW, TranceCenter;
PathFormula DoubleVisionH, DoubleVisionV;

class CPathTranceLeft final : public CCharacterPath<&TranceLeft> {};
class CPathTranceRight final : public CCharacterPath<&TranceRight> {};
class CPathTranceUp final : public CCharacterPath<&TranceUp> {};
class CPathTranceDown final : public CCharacterPath<&TranceDown> {};
class CPathTranceCCW final : public CCharacterPath<&TranceCCW> {};
class CPathTranceCW final : public CCharacterPath<&TranceCW> {};
class CPathTranceCenter final : public CCharacterPath<&TranceCenter> {};
class CPathDoubleVisionH final : public CCharacterPath<&DoubleVisionH> {};
class CPathDoubleVisionV final : public CCharacterPath<&DoubleVisionV> {};

}  // namespace captionfx
