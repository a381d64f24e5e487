// A tree that is drive C: and also contains the user's settings, as the text of the file TScratch::kSettings.
// All of it is gone afterwards.
#pragma once

#ifdef _WIN32
#include "tests/windows/WindowsScratch.h"
#else
#include "tests/posix/PosixScratch.h"
#endif
