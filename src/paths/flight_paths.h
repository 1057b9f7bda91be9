// Flight path effects: the characters fly in a train along one curve over the canvas, nose first, meet the string's
// line at its right end, and run along it to their places.
#pragma once

#include "paths/path_formula.h"

namespace captionfx {

PathFormula RollerCoasterLeft, RollerCoasterRight, SwarmLeft, SwarmRight;

class CPathRollerCoasterLeft final : public CCharacterPath<&RollerCoasterLeft> {};
class CPathRollerCoasterRight final : public CCharacterPath<&RollerCoasterRight> {};
class CPathSwarmLeft final : public CCharacterPath<&SwarmLeft> {};
class CPathSwarmRight final : public CCharacterPath<&SwarmRight> {};

}  // namespace captionfx
