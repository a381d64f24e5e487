// Exceptions of a run that concern its files.
#pragma once

#include <functional>
#include <string>
#include <string_view>

#include "rtl/text/Exceptions.h"

namespace mig {

// A file could not be converted. The message names the file and, if known, the place in it.
class EFileConversion : public rtl::Exception {
 public:
  EFileConversion(std::string_view fileName, std::string_view reason);
  const std::string& FileName() const { return FFileName; }

 private:
  std::string FFileName;
};

// Two files, or two folders, would share a name in the temporary and the backup folder of a run.
class ENameClash : public rtl::Exception {
 public:
  ENameClash(const std::string& message, std::string_view first, std::string_view second)
      : Exception(message), FFirst(first), FSecond(second) {}
  const std::string& First() const { return FFirst; }
  const std::string& Second() const { return FSecond; }

 private:
  std::string FFirst, FSecond;
};

// Raised if a run ends before it replaces the first file because a file was edited by somebody else.
class EFileEdited : public rtl::Exception {
  using Exception::Exception;
};

// Runs `action`, which works on the contents of `fileName`, and converts its exceptions to EFileConversion,
// but std::bad_alloc to rtl::EOutOfMemory with the name of the file. Passes on EAbort, EOutOfMemory,
// EFileConversion, EFileEdited, ENameClash, and stream exceptions, which already name their file.
void WithFileInErrors(const std::string& fileName, const std::function<void()>& action);

}  // namespace mig
