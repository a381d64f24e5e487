// The exception classes of the run-time library. A message is complete: it names the file or object it is
// about.
#pragma once

#include <stdexcept>
#include <string>

namespace rtl {

class Exception : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// The user has stopped the operation.
class EAbort : public Exception {
  using Exception::Exception;
};
// A contract was broken.
class EAssertionFailed : public Exception {
  using Exception::Exception;
};
class EOutOfMemory : public Exception {
  using Exception::Exception;
};
class EInvalidCast : public Exception {
  using Exception::Exception;
};
class EConvertError : public Exception {
  using Exception::Exception;
};

// Binary form data cannot be read.
class EFilerError : public Exception {
  using Exception::Exception;
};
// Form text cannot be read.
class EParserError : public Exception {
  using Exception::Exception;
};

class EStreamError : public Exception {
  using Exception::Exception;
};
class EFCreateError : public EStreamError {
  using EStreamError::EStreamError;
};
class EFOpenError : public EStreamError {
  using EStreamError::EStreamError;
};
class EReadError : public EStreamError {
  using EStreamError::EStreamError;
};
class EWriteError : public EStreamError {
  using EStreamError::EStreamError;
};

// Raises EAssertionFailed with `message` unless `condition` holds.
inline void Assert(bool condition, const char* message) {
  if (!condition) throw EAssertionFailed(message);
}

}  // namespace rtl
