// A work queue for two threads: the one that creates it, and a worker.
//
//   TWorkQueue queue;
//   queue.Push([] { CopyOneFile(); });
//   queue.Wait();
//
// There are two kinds of tasks. A task is done by one of the two threads before Wait returns. A speculative
// task prepares something that the creating thread will need; that thread does it itself if the worker has
// not started it by then. Each thread has its own file system in force. Where the file system in force is not
// the host's own (win/FileSystem.h), there is no worker: speculative tasks are dropped, and a task is done
// when it is pushed. The same holds if the system has no thread to give.
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
  // Cancels, and ends the worker.
  ~TWorkQueue();
  TWorkQueue(const TWorkQueue&) = delete;
  TWorkQueue& operator=(const TWorkQueue&) = delete;

  // Pushes tasks for the worker alone, which takes the last one first. They must raise nothing.
  void PushSpeculative(std::vector<TTask> tasks);

  // Pushes a task for either thread. Tasks run at the same time as others, and may push further ones. What a
  // task raises is kept for Wait; without a worker it is raised here.
  void Push(TTask task);

  // Works on the tasks until at most `limit` of them have not been started.
  void WaitForRoom(size_t limit);

  // Drops the speculative tasks, and works on the others until all are done. Raises what the first task to
  // fail has raised since the last call; the other tasks are done all the same.
  void Wait();

  // Drops all tasks that have not been started, and waits for those that have. What they raised stays for
  // Wait.
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
