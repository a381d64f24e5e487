// Marks a long operation, during which a front end shows a wait cursor. Operations nest.
#pragma once

#include <functional>

namespace qrl {

void StartWait();
void StopWait();

// Sets the function that is called with True when the outermost operation begins and with False when it ends;
// null for none.
void SetWaitCursor(std::function<void(bool waiting)> show);

}  // namespace qrl
