#include "desktop/SourceLoading.h"

#include <QtConcurrentRun>
#include <utility>

#include "desktop/CodePageGuess.h"
#include "win/FileApi.h"
#include "win/paths/CodePage.h"

namespace desktop {

namespace {

bool IsLarge(host::TFileBuffer& buffer) {
  if (buffer.IsLoaded()) return buffer.Bytes().size() >= TSourceLoading::kLarge;
  const std::optional<win::TFileStamp> stamp = win::GetFileStamp(buffer.FileName());
  return stamp && stamp->Size >= static_cast<int64_t>(TSourceLoading::kLarge);
}

}  // namespace

TLoadedSource TSourceLoading::Decode(std::string_view bytes, bool isForm, uint32_t codePage) {
  TLoadedSource source{TSourceText(bytes, isForm, codePage)};
  const uint32_t guess = source.Text.IsInCodePage() ? GuessCodePage(bytes, codePage) : 0;
  source.Guess = guess == codePage ? 0 : guess;
  return source;
}

// Runs on a worker thread. `bytes`: those of the buffer, if it is loaded.
TSourceLoading::TResult TSourceLoading::Work(const std::string& fileName, std::optional<std::string> bytes,
                                             bool isForm, uint32_t codePage) {
  TResult result;
  try {
    // The file system of the main thread is not for others.
    const std::unique_ptr<win::TFileSystem> files = win::AnotherHostFileSystem();
    const win::TFileSystemOverride inForce(*files);
    if (bytes) {
      result.Contents.Bytes = std::move(*bytes);
    } else {
      result.Contents = host::TFileBuffer::ReadContents(fileName);
    }
    result.Source = std::make_shared<TLoadedSource>(Decode(result.Contents.Bytes, isForm, codePage));
  } catch (...) {
    result.Failure = std::current_exception();
  }
  return result;
}

void TSourceLoading::Start(host::TFileBuffer& buffer, bool isForm) {
  Cancel();
  const uint32_t codePage = buffer.CodePage() != 0 ? buffer.CodePage() : win::GetACP();
  if (!IsLarge(buffer)) return OnLoaded(Decode(buffer.Bytes(), isForm, codePage));
  FTask = std::make_unique<QFutureWatcher<TResult>>();
  QObject::connect(FTask.get(), &QFutureWatcherBase::finished, FTask.get(), [this, &buffer, isForm] {
    TResult result = FTask->result();
    FTask.release()->deleteLater();  // it calls this function
    Finish(std::move(result), buffer, isForm);
  });
  FTask->setFuture(QtConcurrent::run(Work, buffer.FileName(),
                                     buffer.IsLoaded() ? std::optional(buffer.Bytes()) : std::nullopt, isForm,
                                     codePage));
}

void TSourceLoading::Finish(TResult result, host::TFileBuffer& buffer, bool isForm) {
  try {
    if (result.Failure) std::rethrow_exception(result.Failure);
    // Somebody may have loaded or written the file meanwhile.
    if (buffer.IsLoaded() && buffer.Bytes() != result.Contents.Bytes) return Start(buffer, isForm);
    if (!buffer.IsLoaded()) {
      if (win::GetFileStamp(buffer.FileName()) != result.Contents.Stamp) return Start(buffer, isForm);
      buffer.SetContents(std::move(result.Contents));
    }
  } catch (const std::exception& error) {
    return OnFailed(error);
  }
  OnLoaded(std::move(*result.Source));
}

}  // namespace desktop
