// The span of a long operation, which a front end shows as its wait cursor. Spans nest.
#pragma once

#include <functional>

namespace qrl {

void StartWait();
void StopWait();

// Called with True when the outermost span begins and with False when it ends; null for none.
void SetWaitCursor(std::function<void(bool waiting)> show);

}  // namespace qrl
