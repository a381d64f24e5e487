// Runs an action at the end of a block, also when an exception ends it.
//
//   const TFinally closeLog([&] { log.Close(); });
#pragma once

#include <utility>

namespace mig {

// Exceptions of the action are dropped, because a destructor must not raise while another one is propagating.
template <typename TAction>
class TFinally {
 public:
  explicit TFinally(TAction action) : FAction(std::move(action)) {}
  ~TFinally() {
    try {
      FAction();
    } catch (...) {  // the caller gets the exception that ended the block
    }
  }
  TFinally(const TFinally&) = delete;
  TFinally& operator=(const TFinally&) = delete;

 private:
  TAction FAction;
};

}  // namespace mig
