#include "MigWizard/engine/CallStack.h"

#include <exception>
#include <system_error>
#include <thread>

namespace mig {

bool CallOnNewStack(const std::function<void()>& call) {
  std::exception_ptr failure;
  try {
    std::thread([&]() noexcept {
      try {
        call();
      } catch (...) {
        failure = std::current_exception();
      }
    }).join();
  } catch (const std::system_error&) {
    return false;
  }
  if (failure) std::rethrow_exception(failure);
  return true;
}

}  // namespace mig
