#include "win/FileSystem.h"

#include "win/posix/PosixFileSystem.h"

namespace win {
namespace {

TFileSystem*& InForce() {
  thread_local TFileSystem* inForce = nullptr;
  return inForce;
}

}  // namespace

TFileSystem& FileSystem() {
  static TPosixFileSystem host;
  return InForce() ? *InForce() : host;
}

bool IsHostFileSystem() {
  return InForce() == nullptr;
}

std::unique_ptr<TFileSystem> AnotherHostFileSystem() {
  return std::make_unique<TPosixFileSystem>();
}

TFileSystemOverride::TFileSystemOverride(TFileSystem& replacement) : FPrevious(InForce()) {
  InForce() = &replacement;
}

TFileSystemOverride::~TFileSystemOverride() {
  InForce() = FPrevious;
}

}  // namespace win
