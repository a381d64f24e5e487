// Runs an action at the end of a block, also when an exception ends it.
//
//   const TFinally closeLog([&] { log.Close(); });
#pragma once

#include <utility>

namespace mig {

// Exceptions of the action are dropped: another one may be on its way, and a destructor must not raise.
template <typename TAction>
class TFinally {
 public:
  explicit TFinally(TAction action) : FAction(std::move(action)) {}
  ~TFinally() {
    try {
      FAction();
    } catch (...) {  // what ended the block is what the caller is told
    }
  }
  TFinally(const TFinally&) = delete;
  TFinally& operator=(const TFinally&) = delete;

 private:
  TAction FAction;
};

}  // namespace mig
