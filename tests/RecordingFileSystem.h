// A file system that forwards every operation to another one, records it, and fails at chosen operations.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "win/Errors.h"
#include "win/FileSystem.h"

namespace tests {

// Operations are counted from 1. Reads and writes of open files count, and so does each step of a walk.
// Seek, Size, Stamp of an open file and GetTempPathA neither count nor fail. A write that fails has written
// the first half.
class TRecordingFileSystem : public win::TFileSystem {
 public:
  explicit TRecordingFileSystem(win::TFileSystem& inner) : FInner(inner) {}

  // Makes the n-th operation alone fail with `code`; none if `n` is 0.
  void FailAt(size_t n, uint32_t code = win::ERROR_GEN_FAILURE) { SetFailure(n, n, code); }
  // Makes all operations from the n-th on fail, as if the program had been killed there.
  void FailFrom(size_t n, uint32_t code = win::ERROR_GEN_FAILURE) { SetFailure(n, SIZE_MAX, code); }
  // Called before each operation, with its line of Calls. The operation fails if the result is not
  // ERROR_SUCCESS.
  std::function<uint32_t(const std::string& call)> OnCall;
  // Returns lines such as "Write Z:\tmp\Unit1.pas", in order.
  const std::vector<std::string>& Calls() const { return FCalls; }
  size_t Count() const { return FCalls.size(); }
  bool HasFailed() const { return FHasFailed; }

  std::unique_ptr<win::TFileHandle> CreateFileA(std::string_view path, win::TFileMode mode) override {
    constexpr const char* kModes[] = {"Open", "Create", "CreateOwn"};
    if (!Goes(kModes[static_cast<size_t>(mode)], path)) return nullptr;
    auto inner = FInner.CreateFileA(path, mode);
    return inner ? std::make_unique<TFile>(*this, std::move(inner), std::string(path)) : nullptr;
  }
  bool CopyFileA(std::string_view source, std::string_view target, bool failIfExists) override {
    return Goes("Copy", std::string(source) + " -> " + std::string(target)) &&
           FInner.CopyFileA(source, target, failIfExists);
  }
  bool ReplaceFileContents(std::string_view path, std::string_view bytes) override {
    return Goes("Replace", path) && FInner.ReplaceFileContents(path, bytes);
  }
  bool CopyOverUnchanged(std::string_view source, std::string_view target,
                         const win::TFileStamp& expected) override {
    return Goes("CopyOver", std::string(source) + " -> " + std::string(target)) &&
           FInner.CopyOverUnchanged(source, target, expected);
  }
  bool CopyToOwnFile(std::string_view source, std::string_view target) override {
    return Goes("CopyToOwn", std::string(source) + " -> " + std::string(target)) &&
           FInner.CopyToOwnFile(source, target);
  }
  bool MoveFileReplacing(std::string_view source, std::string_view target) override {
    return Goes("Move", std::string(source) + " -> " + std::string(target)) &&
           FInner.MoveFileReplacing(source, target);
  }
  std::optional<win::TFileStamp> GetFileStamp(std::string_view path) override {
    return Goes("Stamp", path) ? FInner.GetFileStamp(path) : std::nullopt;
  }
  std::unique_ptr<win::TFileLock> LockFolder(std::string_view path) override {
    return Goes("LockFolder", path) ? FInner.LockFolder(path) : nullptr;
  }
  bool FlushFolder(std::string_view path) override {
    return Goes("FlushFolder", path) && FInner.FlushFolder(path);
  }
  std::unique_ptr<win::TFindHandle> FindFirstFileA(std::string_view pattern, win::TFindData& data) override {
    if (!Goes("FindFirst", pattern)) return nullptr;
    auto inner = FInner.FindFirstFileA(pattern, data);
    return inner ? std::make_unique<TWalk>(*this, std::move(inner), std::string(pattern)) : nullptr;
  }
  uint32_t GetFileAttributesA(std::string_view path) override {
    return Goes("Attributes", path) ? FInner.GetFileAttributesA(path) : win::INVALID_FILE_ATTRIBUTES;
  }
  bool CreateDirectoryA(std::string_view path) override {
    return Goes("CreateDirectory", path) && FInner.CreateDirectoryA(path);
  }
  bool CreatePrivateDirectory(std::string_view path) override {
    return Goes("CreatePrivateDirectory", path) && FInner.CreatePrivateDirectory(path);
  }
  bool RemoveDirectoryA(std::string_view path) override {
    return Goes("RemoveDirectory", path) && FInner.RemoveDirectoryA(path);
  }
  bool DeleteFileA(std::string_view path) override {
    return Goes("Delete", path) && FInner.DeleteFileA(path);
  }
  bool CopyPermissions(std::string_view source, std::string_view target) override {
    return Goes("CopyPermissions", std::string(source) + " -> " + std::string(target)) &&
           FInner.CopyPermissions(source, target);
  }
  std::string GetTempPathA() override { return FInner.GetTempPathA(); }
  std::string GetLongPathNameA(std::string_view path) override {
    return Goes("LongPathName", path) ? FInner.GetLongPathNameA(path) : std::string(path);
  }
  bool FlushWritten() override { return Goes("Flush", "") && FInner.FlushWritten(); }

 private:
  class TFile : public win::TFileHandle {
   public:
    TFile(TRecordingFileSystem& owner, std::unique_ptr<win::TFileHandle> inner, std::string path)
        : FOwner(owner), FInner(std::move(inner)), FPath(std::move(path)) {}
    int64_t Read(void* buffer, size_t count) override {
      return FOwner.Goes("Read", FPath) ? FInner->Read(buffer, count) : -1;
    }
    bool Write(const void* buffer, size_t count) override {
      if (FOwner.Goes("Write", FPath)) return FInner->Write(buffer, count);
      const uint32_t code = win::GetLastError();
      static_cast<void>(FInner->Write(buffer, count / 2));
      win::SetLastError(code);
      return false;
    }
    bool Seek(int64_t position) override { return FInner->Seek(position); }
    int64_t Size() override { return FInner->Size(); }
    std::optional<win::TFileStamp> Stamp() override { return FInner->Stamp(); }
    bool Flush() override { return FOwner.Goes("FlushFile", FPath) && FInner->Flush(); }

   private:
    TRecordingFileSystem& FOwner;
    std::unique_ptr<win::TFileHandle> FInner;
    std::string FPath;
  };

  class TWalk : public win::TFindHandle {
   public:
    TWalk(TRecordingFileSystem& owner, std::unique_ptr<win::TFindHandle> inner, std::string pattern)
        : TFindHandle(inner->Unnamed()),
          FOwner(owner),
          FInner(std::move(inner)),
          FPattern(std::move(pattern)) {}
    bool Next(win::TFindData& data) override {
      return FOwner.Goes("FindNext", FPattern) && FInner->Next(data);
    }

   private:
    TRecordingFileSystem& FOwner;
    std::unique_ptr<win::TFindHandle> FInner;
    std::string FPattern;
  };

  void SetFailure(size_t first, size_t last, uint32_t code) {
    FFirst = first;
    FLast = last;
    FCode = code;
  }
  bool Goes(std::string_view operation, std::string_view path) {
    FCalls.push_back(std::string(operation) + (path.empty() ? "" : " ") + std::string(path));
    const std::string call = FCalls.back();
    uint32_t code = OnCall ? OnCall(call) : win::ERROR_SUCCESS;
    if (FFirst != 0 && FCalls.size() >= FFirst && FCalls.size() <= FLast) code = FCode;
    if (code == win::ERROR_SUCCESS) return true;
    FHasFailed = true;
    win::SetLastError(code);
    return false;
  }

  win::TFileSystem& FInner;
  std::vector<std::string> FCalls;
  size_t FFirst = 0;
  size_t FLast = 0;
  uint32_t FCode = 0;
  bool FHasFailed = false;
};

}  // namespace tests
