#include "qrl/QrlVcl.h"

#include <utility>

namespace qrl {
namespace {

struct TWaitState {
  int Depth = 0;
  std::function<void(bool)> Show;
};

TWaitState& Wait() {
  static TWaitState state;
  return state;
}

}  // namespace

void StartWait() {
  if (Wait().Depth++ == 0 && Wait().Show) Wait().Show(true);
}

void StopWait() {
  if (--Wait().Depth == 0 && Wait().Show) Wait().Show(false);
}

void SetWaitCursor(std::function<void(bool waiting)> show) {
  Wait().Show = std::move(show);
}

}  // namespace qrl
