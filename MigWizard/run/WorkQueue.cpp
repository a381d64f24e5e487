#include "MigWizard/run/WorkQueue.h"

#include <chrono>
#include <iterator>
#include <memory>
#include <new>
#include <system_error>
#include <utility>

#include "win/FileSystem.h"

namespace mig {
namespace {

constexpr std::chrono::milliseconds kIdleInterval{50};

}  // namespace

TWorkQueue::TWorkQueue() {
  if (!win::IsHostFileSystem()) return;
  try {
    FWorker = std::thread([this] { Work(); });
  } catch (const std::system_error&) {
    // The system cannot create another thread: work without a worker.
  }
}

TWorkQueue::~TWorkQueue() {
  Cancel();
  {
    const std::lock_guard lock(FMutex);
    FEnds = true;
  }
  FPushed.notify_one();
  if (FWorker.joinable()) FWorker.join();
}

void TWorkQueue::PushSpeculative(std::vector<TTask> tasks) {
  if (!FWorker.joinable()) return;
  {
    const std::lock_guard lock(FMutex);
    FSpeculative.insert(FSpeculative.end(), std::make_move_iterator(tasks.begin()),
                        std::make_move_iterator(tasks.end()));
  }
  FPushed.notify_one();
}

void TWorkQueue::Push(TTask task) {
  if (!FWorker.joinable()) return task();
  {
    const std::lock_guard lock(FMutex);
    FTasks.push_back(std::move(task));
  }
  FPushed.notify_one();
  FDone.notify_one();
}

void TWorkQueue::WaitForRoom(size_t limit) {
  std::unique_lock lock(FMutex);
  while (FTasks.size() > limit) Do(PopFirst(), lock);
}

void TWorkQueue::Wait(const TTask& onIdle) {
  const auto call = [&onIdle](std::unique_lock<std::mutex>& lock) {
    lock.unlock();
    onIdle();
    lock.lock();
  };
  const auto isReady = [this] { return !FTasks.empty() || FRunning == 0; };
  std::unique_lock lock(FMutex);
  FSpeculative.clear();
  for (;;) {
    if (!onIdle) FDone.wait(lock, isReady);
    while (onIdle && !FDone.wait_for(lock, kIdleInterval, isReady)) call(lock);
    if (FTasks.empty()) break;
    Do(PopFirst(), lock);
    if (onIdle) call(lock);
  }
  if (FFailure) std::rethrow_exception(std::exchange(FFailure, nullptr));
}

void TWorkQueue::RunOnWorker(TTask task, const TTask& onIdle) {
  if (!FWorker.joinable()) return task();
  PushSpeculative({std::move(task)});
  const auto isDone = [this] { return FSpeculative.empty() && FRunning == 0; };
  std::unique_lock lock(FMutex);
  while (!FDone.wait_for(lock, kIdleInterval, isDone)) {
    if (!FSpeculative.empty()) {
      Do(PopLastSpeculative(), lock);  // the worker is busy
      continue;
    }
    lock.unlock();
    onIdle();
    lock.lock();
  }
  if (FFailure) std::rethrow_exception(std::exchange(FFailure, nullptr));
}

void TWorkQueue::Cancel() noexcept {
  std::unique_lock lock(FMutex);
  FSpeculative.clear();
  FTasks.clear();
  FDone.wait(lock, [this] { return FRunning == 0; });
  FTasks.clear();  // tasks pushed by running tasks
}

void TWorkQueue::Work() {
  std::unique_ptr<win::TFileSystem> files;
  try {
    files = win::AnotherHostFileSystem();
  } catch (const std::bad_alloc&) {
    return;  // the creating thread does every task
  }
  const win::TFileSystemOverride inForce(*files);
  std::unique_lock lock(FMutex);
  for (;;) {
    FPushed.wait(lock, [this] { return FEnds || !FSpeculative.empty() || !FTasks.empty(); });
    if (FEnds) return;
    Do(FSpeculative.empty() ? PopFirst() : PopLastSpeculative(), lock);
  }
}

void TWorkQueue::Do(TTask task, std::unique_lock<std::mutex>& lock) {
  ++FRunning;
  lock.unlock();
  std::exception_ptr failure;
  try {
    task();
  } catch (...) {
    failure = std::current_exception();
  }
  task = nullptr;
  lock.lock();
  if (failure && !FFailure) FFailure = failure;
  if (--FRunning == 0) FDone.notify_one();
}

TWorkQueue::TTask TWorkQueue::PopFirst() {
  TTask task = std::move(FTasks.front());
  FTasks.pop_front();
  return task;
}

TWorkQueue::TTask TWorkQueue::PopLastSpeculative() {
  TTask task = std::move(FSpeculative.back());
  FSpeculative.pop_back();
  return task;
}

}  // namespace mig
