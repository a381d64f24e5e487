#include "win/Thread.h"

namespace win {
namespace {

// What the main thread usually has. Some systems give other threads a sixteenth of it.
constexpr size_t kStackSize = size_t{8} << 20;

void* Run(void* work) {
  (*static_cast<const std::function<void()>*>(work))();
  return nullptr;
}

}  // namespace

bool TThread::Start(const std::function<void()>& work) {
  pthread_attr_t attributes;
  if (pthread_attr_init(&attributes) != 0) return false;
  void* const argument = const_cast<std::function<void()>*>(&work);
  FIsRunning = pthread_attr_setstacksize(&attributes, kStackSize) == 0 &&
               pthread_create(&FThread, &attributes, Run, argument) == 0;
  pthread_attr_destroy(&attributes);
  return FIsRunning;
}

void TThread::Join() {
  if (FIsRunning) pthread_join(FThread, nullptr);
  FIsRunning = false;
}

}  // namespace win
