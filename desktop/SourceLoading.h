// Reads a file for its editor and decodes it: a large file on a worker thread, so that the window answers
// meanwhile.
//
//   TSourceLoading loading;
//   loading.OnLoaded = [&](TLoadedSource source) { Show(source.Text); };
//   loading.Start(buffer, /*isForm=*/false);
#pragma once

#include <QFutureWatcher>
#include <exception>
#include <functional>
#include <memory>
#include <optional>

#include "desktop/SourceText.h"
#include "host/FileBuffer.h"

namespace desktop {

struct TLoadedSource {
  TSourceText Text;
  uint32_t Guess = 0;  // the code page that the file seems to be in; 0 if it is the one of Text
};

class TSourceLoading {
 public:
  // Files of fewer bytes are decoded at once.
  static constexpr size_t kLarge = size_t{256} * 1024;

  TSourceLoading() = default;  // the destructor cancels
  TSourceLoading(const TSourceLoading&) = delete;
  TSourceLoading& operator=(const TSourceLoading&) = delete;

  // Decodes the contents of the buffer, in place of an earlier loading that has not ended, and calls
  // OnLoaded: at once for a small file, otherwise later. If the buffer has not been loaded it is then. Raises
  // the exceptions of reading a small file. The buffer must outlive the loading. If it changes, call Start
  // again.
  void Start(host::TFileBuffer& buffer, bool isForm);
  // Forgets the loading. OnLoaded and OnFailed are not called any more.
  void Cancel() { FTask.reset(); }
  bool IsRunning() const { return FTask != nullptr; }

  // Called on this thread. The buffer has exactly the bytes that were decoded.
  std::function<void(TLoadedSource source)> OnLoaded;
  // Called in place of OnLoaded if a large file cannot be read.
  std::function<void(const std::exception& error)> OnFailed;

 private:
  struct TResult {
    host::TFileBuffer::TContents Contents;
    std::shared_ptr<TLoadedSource> Source;
    std::exception_ptr Failure;
  };
  static TLoadedSource Decode(std::string_view bytes, bool isForm, uint32_t codePage);
  static TResult Work(const std::string& fileName, std::optional<std::string> bytes, bool isForm,
                      uint32_t codePage);
  void Finish(TResult result, host::TFileBuffer& buffer, bool isForm);

  std::unique_ptr<QFutureWatcher<TResult>> FTask;  // while a task runs
};

}  // namespace desktop
