// The tables of the code pages, generated when the program is built, by MakeCodePageTables.cpp, so that the
// program itself does not need ICU's 30 MB of data.
#pragma once

#include "win/paths/Characters.h"

namespace win {

// In ascending order of their numbers.
extern const TCodePageTable kCodePageTables[kCodePageTableCount];

}  // namespace win
