#include "win/FileSystem.h"

#include "win/PosixFileSystem.h"

namespace win {
namespace {

TFileSystem* inForce = nullptr;

}  // namespace

TFileSystem& FileSystem() {
  static TPosixFileSystem host;
  return inForce ? *inForce : host;
}

TFileSystemOverride::TFileSystemOverride(TFileSystem& replacement) : FPrevious(inForce) {
  inForce = &replacement;
}

TFileSystemOverride::~TFileSystemOverride() {
  inForce = FPrevious;
}

}  // namespace win
