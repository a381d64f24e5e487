// A work queue with two threads: the creating thread, and a worker.
//
//   TWorkQueue queue;
//   queue.Push([] { CopyOneFile(); });
//   queue.Wait();
//
// There are two kinds of tasks. A task is done by either thread before Wait returns. A speculative task
// prepares a result that the creating thread will need; if the worker has not started it by then, that thread
// computes the result itself. Each thread has its own current file system. If the current file system is not
// the host's own (win/FileSystem.h), or the system cannot create a thread, there is no worker: speculative
// tasks are dropped, and a task is done when it is pushed.
#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <thread>
#include <vector>

namespace mig {

class TWorkQueue {
 public:
  using TTask = std::function<void()>;

  TWorkQueue();
  // Cancels all tasks and ends the worker.
  ~TWorkQueue();
  TWorkQueue(const TWorkQueue&) = delete;
  TWorkQueue& operator=(const TWorkQueue&) = delete;

  // Pushes tasks for the worker only, which pops the last one first. They must raise nothing.
  void PushSpeculative(std::vector<TTask> tasks);

  // Pushes a task for either thread. It may run at the same time as others, and may push further tasks. Wait
  // raises the task's exception; without a worker, Push raises it.
  void Push(TTask task);

  // Runs tasks until at most `limit` are not started.
  void WaitForRoom(size_t limit);

  // Drops the speculative tasks, and runs the others until all are done. Raises the first exception of a task
  // since the last call; all tasks are done in any case. Calls `onIdle`, if set, after each task of this
  // thread, and every 50 milliseconds while only the worker is busy. It must not raise.
  void Wait(const TTask& onIdle = {});

  // Runs one long task on the worker, and calls `onIdle` every 50 milliseconds on this thread meanwhile. Runs
  // it on this thread, without calls, if there is no worker or the worker is busy. Raises the exception of
  // the task. There must be no other tasks. `onIdle` must not raise.
  void RunOnWorker(TTask task, const TTask& onIdle);

  // Drops all tasks that are not started, and waits for those that are. Their exceptions are kept for Wait.
  void Cancel() noexcept;

 private:
  void Work();
  TTask PopFirst();
  TTask PopLastSpeculative();
  void Do(TTask task, std::unique_lock<std::mutex>& lock);  // unlocks while the task runs

  std::mutex FMutex;  // guards the following members
  std::condition_variable FPushed, FDone;
  std::deque<TTask> FSpeculative;
  std::deque<TTask> FTasks;
  int FRunning = 0;  // tasks of both kinds
  bool FEnds = false;
  std::exception_ptr FFailure;
  std::thread FWorker;
};

}  // namespace mig
