#include "host/FileBuffer.h"

#include <utility>

#include "rtl/text/Streams.h"
#include "win/FileApi.h"

namespace host {

namespace {

std::string ReadFile(std::string_view fileName) {
  return rtl::TFileStream(fileName, rtl::fmOpenRead | rtl::fmShareDenyNone).ReadToEnd();
}

}  // namespace

const std::string& TFileBuffer::Bytes() {
  if (!FBytes) FBytes = ReadFile(FFileName);
  return *FBytes;
}

void TFileBuffer::SetBytes(std::string bytes) {
  if (FBytes && *FBytes == bytes) return;
  FBytes = std::move(bytes);
  FModified = true;
  Changed();
}

bool TFileBuffer::Save() {
  if (!FModified) return true;
  if (!win::ReplaceFileContents(FFileName, *FBytes)) return false;
  FModified = false;
  Changed();
  return true;
}

bool TFileBuffer::Reload() {
  if (!FBytes) return true;
  try {
    std::string bytes = ReadFile(FFileName);
    if (!FModified && bytes == *FBytes) return true;
    FBytes = std::move(bytes);
  } catch (const rtl::EStreamError&) {
    return false;
  }
  FModified = false;
  Changed();
  return true;
}

}  // namespace host
