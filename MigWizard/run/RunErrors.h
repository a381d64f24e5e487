// The exceptions of a run that are about its files.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "rtl/text/Exceptions.h"

namespace mig {

// A file of a run could not be converted. The message names the file and, where it is known, the place in it.
class EFileConversion : public rtl::Exception {
 public:
  EFileConversion(std::string_view fileName, std::string_view reason);
  const std::string& FileName() const { return FFileName; }

 private:
  std::string FFileName;
};

// Two files, or two folders, would share one name in the temporary and the backup folder of a run.
class ETwinFiles : public rtl::Exception {
 public:
  ETwinFiles(const std::string& message, std::string_view first, std::string_view second)
      : Exception(message), FFirst(first), FSecond(second) {}
  const std::string& First() const { return FFirst; }
  const std::string& Second() const { return FSecond; }

 private:
  std::string FFirst, FSecond;
};

// Runs `action`, which works on the contents of `fileName`, and turns its exceptions into EFileConversion;
// a lack of memory becomes rtl::EOutOfMemory with the name of the file. Passes on EAbort, EOutOfMemory,
// EFileConversion, ETwinFiles, and the exceptions of streams, which name their file already.
void NamingFile(const std::string& fileName, const std::function<void()>& action);

}  // namespace mig
