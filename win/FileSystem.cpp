#include "win/FileSystem.h"

#include "win/PosixFileSystem.h"

namespace win {
namespace {

TFileSystem*& InForce() {
  static TFileSystem* inForce = nullptr;
  return inForce;
}

}  // namespace

TFileSystem& FileSystem() {
  static TPosixFileSystem host;
  return InForce() ? *InForce() : host;
}

TFileSystemOverride::TFileSystemOverride(TFileSystem& replacement) : FPrevious(InForce()) {
  InForce() = &replacement;
}

TFileSystemOverride::~TFileSystemOverride() {
  InForce() = FPrevious;
}

}  // namespace win
