#include "win/FileSystem.h"

namespace win {
namespace {

TFileSystem*& InForce() {
  thread_local TFileSystem* inForce = nullptr;
  return inForce;
}

}  // namespace

TFileSystem& FileSystem() {
  if (InForce()) return *InForce();
  static const std::unique_ptr<TFileSystem> host = AnotherHostFileSystem();
  return *host;
}

bool IsHostFileSystem() {
  return InForce() == nullptr;
}

TFileSystemOverride::TFileSystemOverride(TFileSystem& replacement) : FPrevious(InForce()) {
  InForce() = &replacement;
}

TFileSystemOverride::~TFileSystemOverride() {
  InForce() = FPrevious;
}

}  // namespace win
