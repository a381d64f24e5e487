#include "MigWizard/run/FileUtils.h"

#include <algorithm>
#include <mutex>
#include <thread>

#include "MigWizard/run/WorkQueue.h"
#include "rtl/text/Files.h"
#include "rtl/text/LocalTime.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"
#include "win/FileApi.h"
#include "win/paths/PathComponents.h"

namespace mig {
namespace {

constexpr std::string_view kLineEnd = "\r\n";

bool MakeFolder(std::string_view path) {
  return rtl::CreateDir(path) || win::GetLastError() == win::ERROR_ALREADY_EXISTS;
}

// Returns the length of "\\server\share\" at the start of a network path; 0 for other paths.
size_t ShareLength(std::string_view path) {
  if (!path.starts_with(R"(\\)")) return 0;
  const size_t server = path.find('\\', 2);
  const size_t share = server == std::string_view::npos ? server : path.find('\\', server + 1);
  return share == std::string_view::npos ? path.size() : share + 1;
}

void EmptyFolder(std::string_view dir) {
  rtl::TFolderEntries entries(dir);
  while (entries.Next()) {
    const std::string path = entries.Path();
    if (entries.IsFolder()) {
      if (!entries.IsLink()) EmptyFolder(path);
      rtl::RemoveDir(path);
    } else {
      rtl::DeleteFile(path);
    }
  }
}

// Copies files, as tasks of a queue. Calls `onIdle` after each file that the creating thread has copied.
class TCopies {
 public:
  TCopies(const TCopyFile& copy, TWorkQueue& queue, const std::function<void()>& onIdle)
      : FCopy(copy), FQueue(queue), FOnIdle(onIdle) {}
  ~TCopies() { FQueue.Cancel(); }

  // Pushes one task for each folder.
  void AddFolder(const std::string& source, const std::string& target) {
    FQueue.Push([this, source, target] { CopyOneFolder(source, target); });
  }
  void AddFile(const std::string& source, const std::string& target) {
    FQueue.Push([this, source, target] { (void)CopyOneFile(source, target); });
  }
  TCopyFailures Wait() {
    FQueue.Wait(FOnIdle);
    std::sort(FFailures.begin(), FFailures.end());
    return std::move(FFailures);
  }

 private:
  void CopyOneFolder(const std::string& source, const std::string& target) {
    rtl::TFolderEntries entries(source);
    while (entries.Next()) {
      const std::string to = JoinPath(target, entries.Name());
      if (!entries.IsFolder()) {
        if (!CopyOneFile(entries.Path(), to)) return;
      } else if (rtl::DirectoryExists(to) || rtl::CreateDir(to)) {
        AddFolder(entries.Path(), to);
      } else {
        Fail(to, win::SysErrorMessage(win::GetLastError()));
        return;
      }
    }
    if (!entries.IsComplete()) Fail(target, win::SysErrorMessage(entries.Error()));
  }
  bool CopyOneFile(const std::string& source, const std::string& target) {
    const std::string reason = FCopy(source, target);
    if (FOnIdle && std::this_thread::get_id() == FCreator) FOnIdle();
    return reason.empty() || Fail(target, reason);
  }
  bool Fail(const std::string& name, const std::string& reason) {
    const std::lock_guard lock(FMutex);
    FFailures.emplace_back(name, reason);
    return false;
  }

  const TCopyFile& FCopy;
  TWorkQueue& FQueue;
  const std::function<void()>& FOnIdle;
  const std::thread::id FCreator = std::this_thread::get_id();
  std::mutex FMutex;
  TCopyFailures FFailures;
};

// Several runs may search for a free number at the same time. A folder that appears between the look-up and
// the creation is skipped like one that existed before. If `taken` is set, files are skipped as well.
std::string CreateTempFolder(std::string_view prefix, uint32_t unique, std::vector<std::string>* taken) {
  const std::string tempPath = win::GetTempPathA();
  if (tempPath.empty()) return {};
  for (;; ++unique) {
    const std::string fileName = win::GetTempFileNameA(tempPath, prefix, unique);
    if (fileName.empty()) return {};
    std::string name = rtl::ChangeFileExt(fileName, "");
    if (!rtl::DirectoryExists(name)) {
      if (win::FileSystem().CreatePrivateDirectory(name)) return name;
      const bool isTaken = win::GetLastError() == win::ERROR_ALREADY_EXISTS;
      if (!isTaken || (!taken && rtl::FileExists(name))) return {};
    }
    if (taken) taken->push_back(name);
  }
}

}  // namespace

std::string JoinPath(std::string_view dir, std::string_view name) {
  std::string path(dir);
  if (!path.empty() && path.back() != '\\') path += '\\';
  if (name.size() >= 2 && name.front() == '\\') name.remove_prefix(1);
  return path.append(name);
}

std::string ResolveDots(std::string_view path) {
  std::string resolved = JoinPath(rtl::ExtractFileDrive(path), "");
  const size_t root = resolved.size();
  path.remove_prefix(std::min(root, path.size()));
  win::AppendComponents(resolved, root, path, win::kWindowsSeparators, '\\');
  return resolved;
}

std::string BackupFileName(std::string_view fileName) {
  const std::string extension = rtl::ExtractFileExt(fileName);
  return rtl::ChangeFileExt(fileName, extension.size() > 1 ? ".~" + extension.substr(1) : ".~");
}

bool ForceFolders(std::string_view path) {
  const size_t share = ShareLength(path);
  if (share > 0 && share == path.size()) return true;
  for (size_t i = path.find('\\', share); i != std::string_view::npos; i = path.find('\\', i + 1)) {
    if (i == 2 && path[1] == ':') continue;
    if (!MakeFolder(path.substr(0, i))) return false;
    if (i + 1 == path.size()) return true;
  }
  if (path.size() == 3 && path[1] == ':') return true;
  return MakeFolder(path);
}

std::string CreateTempFolder(std::string_view prefix, uint32_t unique) {
  return CreateTempFolder(prefix, unique, nullptr);
}

std::string CreateTempFolder(std::string_view prefix, uint32_t unique, std::vector<std::string>& taken) {
  return CreateTempFolder(prefix, unique, &taken);
}

bool DeleteFolder(std::string_view dir) {
  EmptyFolder(dir);
  return rtl::RemoveDir(dir);
}

TCopyFailures CopyFolder(const std::string& source, const std::string& target, const TCopyFile& copy,
                         TWorkQueue& queue, const std::function<void()>& onIdle) {
  TCopies copies(copy, queue, onIdle);
  copies.AddFolder(source, target);
  return copies.Wait();
}

TCopyFailures CopyFiles(const std::vector<std::pair<std::string, std::string>>& files, const TCopyFile& copy,
                        TWorkQueue& queue, const std::function<void()>& onIdle) {
  TCopies copies(copy, queue, onIdle);
  for (const auto& [source, target] : files) copies.AddFile(source, target);
  return copies.Wait();
}

TLogWriter::TLogWriter() = default;
TLogWriter::~TLogWriter() = default;

void TLogWriter::Open(std::string_view fileName) {
  FStream = std::make_unique<rtl::TFileStream>(fileName, rtl::fmCreateOwn);
  if (!FTitle.empty()) WriteLine(FTitle);
  WriteLine(FCreatedCaption + " " + rtl::DateTimeNowToStr());
}

void TLogWriter::WriteLine(std::string_view line) {
  if (!FStream) return;
  std::string text(line == " " ? std::string_view() : line);
  if (text.empty() || (text.back() != '\n' && text.back() != '\r')) text += kLineEnd;
  if (FDoubleSpaced) text += kLineEnd;
  try {
    FStream->Write(text);
  } catch (const rtl::EWriteError&) {  // the run continues without its log
  }
}

void TLogWriter::Close() {
  FStream.reset();
}

}  // namespace mig
