#include "MigWizard/run/Team.h"

#include <iterator>
#include <memory>
#include <utility>

#include "win/FileSystem.h"

namespace mig {

TTeam::TTeam() {
  // Without a thread to be had, the walk does everything.
  if (win::IsHostFileSystem()) (void)FHelper.Start(FHelp);
}

TTeam::~TTeam() {
  Drop();
  {
    const std::lock_guard lock(FMutex);
    FEnds = true;
  }
  FCame.notify_one();
  FHelper.Join();
}

void TTeam::Offer(std::vector<TTask> offers) {
  if (!FHelper.IsRunning()) return;
  {
    const std::lock_guard lock(FMutex);
    FOffers.insert(FOffers.end(), std::make_move_iterator(offers.begin()),
                   std::make_move_iterator(offers.end()));
  }
  FCame.notify_one();
}

void TTeam::Add(TTask task) {
  if (!FHelper.IsRunning()) return task();
  {
    const std::lock_guard lock(FMutex);
    FTasks.push_back(std::move(task));
  }
  FCame.notify_one();
  FDone.notify_one();
}

void TTeam::CatchUp(size_t most) {
  std::unique_lock lock(FMutex);
  while (FTasks.size() > most) Do(FirstTask(), lock);
}

void TTeam::Finish() {
  std::unique_lock lock(FMutex);
  FOffers.clear();
  for (;;) {
    FDone.wait(lock, [this] { return !FTasks.empty() || FInWork == 0; });
    if (FTasks.empty()) break;
    Do(FirstTask(), lock);
  }
  if (FFailure) std::rethrow_exception(std::exchange(FFailure, nullptr));
}

void TTeam::Drop() {
  std::unique_lock lock(FMutex);
  FOffers.clear();
  FTasks.clear();
  FDone.wait(lock, [this] { return FInWork == 0; });
  FTasks.clear();  // what the last ones added
}

void TTeam::Help() {
  const std::unique_ptr<win::TFileSystem> files = win::AnotherHostFileSystem();
  const win::TFileSystemOverride inForce(*files);
  files->HoldFolders(true);
  std::unique_lock lock(FMutex);
  for (;;) {
    FCame.wait(lock, [this] { return FEnds || !FOffers.empty() || !FTasks.empty(); });
    if (FEnds) return;
    Do(FOffers.empty() ? FirstTask() : LastOffer(), lock);
  }
}

void TTeam::Do(TTask task, std::unique_lock<std::mutex>& lock) {
  ++FInWork;
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
  if (--FInWork == 0) FDone.notify_one();
}

TTeam::TTask TTeam::FirstTask() {
  TTask task = std::move(FTasks.front());
  FTasks.pop_front();
  return task;
}

TTeam::TTask TTeam::LastOffer() {
  TTask offer = std::move(FOffers.back());
  FOffers.pop_back();
  return offer;
}

}  // namespace mig
