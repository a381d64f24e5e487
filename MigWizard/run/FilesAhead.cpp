#include "MigWizard/run/FilesAhead.h"

#include <algorithm>
#include <limits>
#include <utility>
#include <vector>

#include "rtl/text/Streams.h"

namespace mig {
namespace {

// If at most kFew files are left, reads files until there are kMany, or kMostBytes. Pushing them one by one
// would cost more than most conversions.
constexpr size_t kFew = 16;
constexpr size_t kMany = 48;
constexpr size_t kMostBytes = 1 << 20;

}  // namespace

void TClaimedConversion::DoUnlessClaimed(TFileConverter& converter) {
  TState expected = TState::Free;
  if (!FState.compare_exchange_strong(expected, TState::Claimed)) return;
  FResult = converter.Convert(FFileName, std::exchange(FBytes, {}));
  const std::lock_guard lock(FMutex);
  FState = TState::Done;
  FDone.notify_one();
}

const TFileConversion& TClaimedConversion::Get(TFileConverter& converter) {
  DoUnlessClaimed(converter);
  if (FState != TState::Done) {
    std::unique_lock lock(FMutex);
    FDone.wait(lock, [this] { return FState == TState::Done; });
  }
  return FResult;
}

TFilesAhead::TFilesAhead(const rtl::TStringList& names, TWorkQueue& queue, TFileConverter& converter,
                         TFileConverter& other)
    : FNames(names),
      FQueue(queue),
      FConverter(converter),
      FOther(other),
      FEnd(std::numeric_limits<int>::max()) {}

const TFileConversion& TFilesAhead::Take() {
  FTaken = {};
  if (FFiles.size() <= kFew) ReadAhead();
  FTaken = std::move(FFiles.front());
  FFiles.pop_front();
  FBytesAhead -= FTaken.Size;
  if (FTaken.Failure) std::rethrow_exception(FTaken.Failure);
  return FTaken.Conversion->Get(FConverter);
}

void TFilesAhead::ReadAhead() {
  std::vector<TWorkQueue::TTask> tasks;
  const int end = std::min(FEnd, FNames.Count());
  while (FNext < end && FFiles.size() < kMany && (FFiles.empty() || FBytesAhead < kMostBytes)) {
    FFiles.push_back(Read(FNames[FNext++]));
    const TFile& file = FFiles.back();
    FBytesAhead += file.Size;
    if (file.Conversion)
      tasks.emplace_back([&other = FOther, offered = std::weak_ptr(file.Conversion)] {
        if (const auto conversion = offered.lock()) conversion->DoUnlessClaimed(other);
      });
  }
  if (!tasks.empty()) FQueue.PushSpeculative(std::move(tasks));
}

TFilesAhead::TFile TFilesAhead::Read(const std::string& fileName) {
  TFile file;
  try {
    rtl::TFileStream stream(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone);
    std::string bytes = stream.ReadToEnd();
    file.Version = VersionOf(stream, bytes);
    file.Size = bytes.size();
    file.Conversion = std::make_shared<TClaimedConversion>(fileName, std::move(bytes));
  } catch (...) {
    file.Failure = std::current_exception();
  }
  return file;
}

}  // namespace mig
