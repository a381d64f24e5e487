// kva_barecopy: performs only the file operations of a run over a folder, to measure their cost.
//
//   kva_barecopy DIR LIST [--move]
//
// It performs the file operations of a run with backup and log on the files below DIR, without parsing
// them. It reads every unit and form completely. It writes each file that LIST names (paths below DIR, one
// per line) to a temporary folder with the tree's structure, and copies it to DIR/RBackup under its .~
// name, with its time and permission bits. It flushes all that to the disk once, then replaces each
// original in one step by a copy of its temporary file, and deletes the temporary folder. With --move it
// renames the temporary file instead of copying it. A log of two lines per file and an undo file remain. It
// makes plain system calls, each one only once where that is enough.
#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <dirent.h>
#include <fcntl.h>
#include <fstream>
#include <string>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <unordered_set>
#include <vector>

namespace bench {
namespace {

[[noreturn]] void Fail(const std::string& what) {
  throw std::system_error(errno, std::generic_category(), what);
}

class TFile {
 public:
  TFile(const std::string& path, int flags, mode_t mode = 0666)
      : FPath(path), FHandle(open(path.c_str(), flags, mode)) {
    if (FHandle < 0) Fail(path);
  }
  TFile(const TFile&) = delete;
  TFile& operator=(const TFile&) = delete;
  ~TFile() { close(FHandle); }

  struct stat Info() const {
    struct stat info {};
    if (fstat(FHandle, &info) != 0) Fail(FPath);
    return info;
  }

  void ReadAll(std::string& text) const {
    text.resize(static_cast<size_t>(Info().st_size));
    size_t done = 0;
    while (done < text.size()) {
      const ssize_t n = read(FHandle, text.data() + done, text.size() - done);
      if (n <= 0) Fail(FPath);
      done += static_cast<size_t>(n);
    }
  }

  void Write(std::string_view text) const {
    while (!text.empty()) {
      const ssize_t n = write(FHandle, text.data(), text.size());
      if (n < 0) Fail(FPath);
      text.remove_prefix(static_cast<size_t>(n));
    }
  }

  void TakeOver(const struct stat& info) const {
    const timespec times[2] = {info.st_atim, info.st_mtim};
    if (fchmod(FHandle, info.st_mode & 07777) != 0 || futimens(FHandle, times) != 0) Fail(FPath);
  }

  void FlushFileSystem() const {
    if (syncfs(FHandle) != 0) Fail(FPath);
  }

 private:
  std::string FPath;
  int FHandle;
};

bool IsTaken(std::string_view name) {
  if (name.size() < 4) return false;
  const std::string_view extension = name.substr(name.size() - 4);
  return extension == ".pas" || extension == ".dpr" || extension == ".dfm" || extension == ".nfm";
}

std::string Folder(const std::string& path) {
  return path.substr(0, path.rfind('/'));
}

class TBareCopy {
 public:
  TBareCopy(const std::string& dir, const std::string& list, bool moves)
      : FDir(dir),
        FMoves(moves),
        FBackup(dir + "/RBackup"),
        FLog(dir + "/Wiz_Log.txt", O_WRONLY | O_CREAT | O_TRUNC) {
    std::ifstream names(list);
    for (std::string name; std::getline(names, name);) FChanging.insert(name);
    const char* const base = std::getenv("TMPDIR");
    FTemp = std::string(base ? base : "/tmp") + "/barecopyXXXXXX";
    if (!mkdtemp(FTemp.data())) Fail(FTemp);
  }

  void Run() {
    Walk("");
    MakeFolder(FBackup);
    for (const std::string& name : FFiles) Process(name);
    Flush();
    for (const std::string& name : FChanged) Replace(name);
    TFile(FBackup + "/RExpert.reu", O_WRONLY | O_CREAT | O_TRUNC).Write(FUndo);
    RemoveTemp();
    FLog.Write("Done.\r\n\r\n");
  }

 private:
  void Walk(const std::string& below) {
    DIR* const folder = opendir((FDir + "/" + below).c_str());
    if (!folder) Fail(FDir + "/" + below);
    std::vector<std::string> folders;
    while (const dirent* const entry = readdir(folder)) {
      const std::string_view name = entry->d_name;
      if (name == "." || name == "..") continue;
      if (entry->d_type == DT_DIR) {
        folders.push_back(below + entry->d_name + "/");
      } else if (IsTaken(name)) {
        FFiles.push_back(below + entry->d_name);
      }
    }
    closedir(folder);
    for (const std::string& name : folders) Walk(name);
  }

  void MakeFolder(const std::string& path) {
    if (!FFolders.insert(path).second) return;
    if (mkdir(path.c_str(), 0777) == 0 || errno == EEXIST) return;
    if (errno != ENOENT) Fail(path);
    MakeFolder(Folder(path));
    if (mkdir(path.c_str(), 0777) != 0) Fail(path);
  }

  void Process(const std::string& name) {
    const std::string path = FDir + "/" + name;
    FLog.Write("Processing file: " + path + "\r\n\r\n");
    TFile file(path, O_RDONLY);
    file.ReadAll(FText);
    const bool changing = FChanging.contains(name);
    if (changing) {
      const std::string temp = FTemp + "/" + name;
      MakeFolder(Folder(temp));
      TFile(temp, O_WRONLY | O_CREAT | O_TRUNC).Write(FText);
      const std::string backup =
          FBackup + "/" + name.substr(0, name.size() - 3) + "~" + name.substr(name.size() - 3);
      MakeFolder(Folder(backup));
      TFile copy(backup, O_WRONLY | O_CREAT | O_TRUNC);
      copy.Write(FText);
      copy.TakeOver(file.Info());
      FUndo += path + "=" + backup + "\r\n";
      FChanged.push_back(name);
    }
    FLog.Write(changing ? "1 change(s)\r\n\r\n" : "No changes\r\n\r\n");
  }

  // Flushes once, or twice if the two folders are on two file systems.
  void Flush() {
    const TFile temp(FTemp, O_RDONLY | O_DIRECTORY);
    const TFile backup(FBackup, O_RDONLY | O_DIRECTORY);
    temp.FlushFileSystem();
    if (temp.Info().st_dev != backup.Info().st_dev) backup.FlushFileSystem();
  }

  void Replace(const std::string& name) {
    const std::string path = FDir + "/" + name;
    const std::string fresh = path + ".new";
    if (FMoves) {
      if (rename((FTemp + "/" + name).c_str(), path.c_str()) != 0) Fail(path);
      return;
    }
    TFile source(FTemp + "/" + name, O_RDONLY);
    source.ReadAll(FText);
    {
      TFile target(fresh, O_WRONLY | O_CREAT | O_EXCL);
      target.Write(FText);
      target.TakeOver(source.Info());
    }
    if (rename(fresh.c_str(), path.c_str()) != 0) Fail(path);
  }

  void RemoveTemp() {
    for (const std::string& name : FChanged)
      if (!FMoves) unlink((FTemp + "/" + name).c_str());
    std::vector<std::string> folders;
    for (const std::string& path : FFolders) {
      if (path.starts_with(FTemp)) folders.push_back(path);
    }
    std::sort(folders.begin(), folders.end(), std::greater<>());  // inner folders first
    for (const std::string& path : folders) rmdir(path.c_str());
    if (rmdir(FTemp.c_str()) != 0 && errno != ENOENT) Fail(FTemp);
  }

  std::string FDir;
  bool FMoves;
  std::string FBackup;
  std::string FTemp;
  TFile FLog;
  std::unordered_set<std::string> FChanging;
  std::unordered_set<std::string> FFolders;  // folders known to exist
  std::vector<std::string> FFiles;
  std::vector<std::string> FChanged;
  std::string FUndo;
  std::string FText;
};

}  // namespace
}  // namespace bench

int main(int argc, char** argv) {
  const bool moves = argc == 4 && std::string_view(argv[3]) == "--move";
  if (argc != 3 && !moves) {
    std::fprintf(stderr, "kva_barecopy DIR LIST [--move]\n");
    return 2;
  }
  try {
    bench::TBareCopy(argv[1], argv[2], moves).Run();
    return 0;
  } catch (const std::exception& e) {
    std::fprintf(stderr, "kva_barecopy: %s\n", e.what());
    return 1;
  }
}
