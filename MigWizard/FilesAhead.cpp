#include "MigWizard/FilesAhead.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace mig {
namespace {

// When few are left, files are read until there are many again, or these bytes: handing them over one by one would cost
// more than most conversions.
constexpr size_t kFew = 16;
constexpr size_t kMany = 48;
constexpr size_t kMostBytes = 1 << 20;

void Convert(TFileConverter& converter, TFileInWork& file) {
  file.Conversion = converter.Convert(file.Name, std::exchange(file.Bytes, {}));
}

}  // namespace

TFilesAhead::TFilesAhead(const rtl::TStringList& names, TFileConverter& converter, TFileConverter& other)
    : FNames(names),
      FConverter(converter),
      FOther(other),
      FEnd(std::numeric_limits<int>::max()),
      FThread([this] { Work(); }) {}

TFilesAhead::~TFilesAhead() {
  {
    const std::lock_guard lock(FMutex);
    FEnds = true;
  }
  FCame.notify_one();
  FThread.join();
}

std::unique_ptr<TFileInWork> TFilesAhead::Take() {
  if (FFiles.size() <= kFew) ReadAhead();
  TFile file = std::move(FFiles.front());
  FFiles.pop_front();
  FBytesAhead -= file->Size;
  if (file->Failure) std::rethrow_exception(file->Failure);
  {
    std::unique_lock lock(FMutex);
    FDone.wait(lock, [&file] { return file->State != TFileInWork::TState::InWork; });
    if (file->State == TFileInWork::TState::Done) return file;
    FWaiting.pop_front();
  }
  Convert(FConverter, *file);
  return file;
}

void TFilesAhead::ReadAhead() {
  std::vector<TFileInWork*> read;
  const int end = std::min(FEnd, FNames.Count());
  while (FNext < end && FFiles.size() < kMany && (FFiles.empty() || FBytesAhead < kMostBytes)) {
    FFiles.push_back(Read(FNames[FNext++]));
    FBytesAhead += FFiles.back()->Size;
    if (!FFiles.back()->Failure) read.push_back(FFiles.back().get());
  }
  if (read.empty()) return;
  {
    const std::lock_guard lock(FMutex);
    FWaiting.insert(FWaiting.end(), read.begin(), read.end());
  }
  FCame.notify_one();
}

TFilesAhead::TFile TFilesAhead::Read(const std::string& fileName) {
  auto file = std::make_unique<TFileInWork>();
  file->Name = fileName;
  try {
    file->File = std::make_unique<rtl::TFileStream>(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone);
    file->Bytes = file->File->ReadToEnd();
    file->Size = file->Bytes.size();
  } catch (...) {
    file->Failure = std::current_exception();
  }
  return file;
}

void TFilesAhead::Work() {
  std::unique_lock lock(FMutex);
  for (;;) {
    FCame.wait(lock, [this] { return FEnds || !FWaiting.empty(); });
    if (FEnds) return;
    TFileInWork& file = *FWaiting.back();
    FWaiting.pop_back();
    file.State = TFileInWork::TState::InWork;
    lock.unlock();
    Convert(FOther, file);
    lock.lock();
    file.State = TFileInWork::TState::Done;
    FDone.notify_one();
  }
}

}  // namespace mig
