#include "MigWizard/Team.h"

#include <iterator>
#include <memory>
#include <system_error>
#include <utility>

#include "win/FileSystem.h"

namespace mig {

TTeam::TTeam() {
  win::FileSystem().HoldFolders(true);
  if (!win::IsHostFileSystem()) return;
  try {
    FHelper = std::thread([this] { Help(); });
  } catch (const std::system_error&) {  // the system has none to give
  }
}

TTeam::~TTeam() {
  {
    const std::lock_guard lock(FMutex);
    FOffers.clear();
    FTasks.clear();
    FEnds = true;
  }
  FCame.notify_one();
  if (FHelper.joinable()) FHelper.join();
  win::FileSystem().HoldFolders(false);
}

void TTeam::Offer(std::vector<TTask> offers) {
  if (!FHelper.joinable()) return;
  {
    const std::lock_guard lock(FMutex);
    FOffers.insert(FOffers.end(), std::make_move_iterator(offers.begin()),
                   std::make_move_iterator(offers.end()));
  }
  FCame.notify_one();
}

void TTeam::Add(TTask task) {
  if (!FHelper.joinable()) return task();
  {
    const std::lock_guard lock(FMutex);
    FTasks.push_back(std::move(task));
  }
  FCame.notify_one();
  FDone.notify_one();
}

void TTeam::Finish() {
  std::unique_lock lock(FMutex);
  FOffers.clear();
  for (;;) {
    FDone.wait(lock, [this] { return !FTasks.empty() || FInWork == 0; });
    if (FTasks.empty()) break;
    TTask task = std::move(FTasks.front());
    FTasks.pop_front();
    Do(std::move(task), lock);
  }
}

void TTeam::Help() {
  const std::unique_ptr<win::TFileSystem> files = win::AnotherHostFileSystem();
  const win::TFileSystemOverride inForce(*files);
  files->HoldFolders(true);
  std::unique_lock lock(FMutex);
  for (;;) {
    FCame.wait(lock, [this] { return FEnds || !FOffers.empty() || !FTasks.empty(); });
    if (FEnds) return;
    TTask task;
    if (!FOffers.empty()) {
      task = std::move(FOffers.back());
      FOffers.pop_back();
    } else {
      task = std::move(FTasks.front());
      FTasks.pop_front();
    }
    Do(std::move(task), lock);
  }
}

void TTeam::Do(TTask task, std::unique_lock<std::mutex>& lock) noexcept {
  ++FInWork;
  lock.unlock();
  task();
  task = nullptr;
  lock.lock();
  if (--FInWork == 0) FDone.notify_one();
}

}  // namespace mig
