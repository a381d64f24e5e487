// Two threads that share the work of a run: the one that makes the team, which walks through the run, and a
// helper.
//
// There are two kinds of work. An offer is something that the walk will need, and does itself if the helper
// has not begun it by then. A task has to be done by one of the two before Finish returns. Each thread has a
// file system of its own in force. Where that of the walk is not the host's own (win/FileSystem.h), there is
// no helper: nobody takes an offer, and a task is done when it is added.
#pragma once

#include <condition_variable>
#include <deque>
#include <exception>
#include <functional>
#include <mutex>
#include <vector>

#include "win/Thread.h"

namespace mig {

class TTeam {
 public:
  using TTask = std::function<void()>;

  TTeam();
  // Drops what nobody has begun, and waits for what is in work.
  ~TTeam();
  TTeam(const TTeam&) = delete;
  TTeam& operator=(const TTeam&) = delete;

  // For the helper, which takes the last one first. They raise nothing.
  void Offer(std::vector<TTask> offers);

  // To be done by either thread, with others at the same time. A task may add further ones. What a task
  // raises is kept for Finish; without a helper it is raised here.
  void Add(TTask task);

  // Works on the tasks until no more than `most` wait, so that the walk does not run away from the helper.
  void CatchUp(size_t most);

  // Drops the offers, and works on the tasks until none is left nor in work. Raises what the first one to
  // fail raised; the others are done all the same.
  void Finish();

  // Drops offers and tasks that nobody has begun, and waits for what is in work.
  void Drop();

 private:
  void Help();
  TTask FirstTask();
  TTask LastOffer();
  void Do(TTask task, std::unique_lock<std::mutex>& lock);  // unlocked meanwhile

  std::mutex FMutex;  // for what follows
  std::condition_variable FCame, FDone;
  std::deque<TTask> FOffers;
  std::deque<TTask> FTasks;
  int FInWork = 0;
  bool FEnds = false;
  std::exception_ptr FFailure;
  const TTask FHelp = [this] { Help(); };
  win::TThread FHelper;
};

}  // namespace mig
