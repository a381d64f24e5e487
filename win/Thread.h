// A thread with room for deep recursion.
#pragma once

#include <functional>
#include <pthread.h>

namespace win {

class TThread {
 public:
  TThread() = default;
  // Waits for the thread to end.
  ~TThread() { Join(); }
  TThread(const TThread&) = delete;
  TThread& operator=(const TThread&) = delete;

  // Runs `work`, which raises nothing, on a new thread; it must live until Join. Once. False where the system
  // has no thread to give.
  [[nodiscard]] bool Start(const std::function<void()>& work);
  bool IsRunning() const { return FIsRunning; }
  void Join();

 private:
  pthread_t FThread{};
  bool FIsRunning = false;
};

}  // namespace win
