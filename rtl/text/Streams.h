// Byte streams: a file on the current file system, or memory.
#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "rtl/text/Exceptions.h"

namespace win {
class TFileHandle;
}

namespace rtl {

inline constexpr uint16_t fmCreate = 0xFFFF;  // create, or empty an existing file; read and write
// The same for one of the program's own files: does not follow links, and locks the file.
inline constexpr uint16_t fmCreateOwn = 0xFFFE;
inline constexpr uint16_t fmOpenRead = 0x0000;
inline constexpr uint16_t fmShareDenyNone = 0x0040;

// Positions and counts are bytes, positions count from 0.
class TStream {
 public:
  virtual ~TStream() = default;

  // Reads up to `count` bytes at the position and advances it. Returns the number of bytes read, 0 only at
  // the end. Raises EReadError if the device fails.
  virtual size_t Read(void* buffer, size_t count) = 0;
  // Overwrites the bytes at the position, extends the stream where it ends, and advances the position. Raises
  // EWriteError; any number of the bytes may have been written then.
  virtual void Write(const void* buffer, size_t count) = 0;
  virtual int64_t Position() const = 0;
  virtual void SetPosition(int64_t position) = 0;
  virtual int64_t Size() = 0;

  void Write(std::string_view bytes) { Write(bytes.data(), bytes.size()); }
  // Returns all bytes from the position to the end, and moves there.
  virtual std::string ReadToEnd();
};

class TFileStream : public TStream {
 public:
  // `fileName` is a Windows path, `mode` one of the fm constants. Raises EFCreateError 'Cannot create file
  // "%s". %s' or EFOpenError 'Cannot open file "%s". %s', with the path and the system's reason.
  TFileStream(std::string_view fileName, uint16_t mode);
  ~TFileStream() override;

  using TStream::Write;
  size_t Read(void* buffer, size_t count) override;
  void Write(const void* buffer, size_t count) override;
  int64_t Position() const override { return FPosition; }
  void SetPosition(int64_t position) override;
  int64_t Size() override;
  const std::string& FileName() const { return FFileName; }
  // Returns the open file, for operations that a stream does not have.
  win::TFileHandle& Handle() { return *FHandle; }

 private:
  std::string FFileName;
  std::unique_ptr<win::TFileHandle> FHandle;
  int64_t FPosition = 0;
};

// A stream in memory. Overwriting from an earlier position keeps the bytes after the written ones.
class TMemoryStream : public TStream {
 public:
  TMemoryStream() = default;
  explicit TMemoryStream(std::string bytes) : FBytes(std::move(bytes)) {}

  using TStream::Write;
  size_t Read(void* buffer, size_t count) override;
  void Write(const void* buffer, size_t count) override;
  int64_t Position() const override { return static_cast<int64_t>(FPosition); }
  void SetPosition(int64_t position) override;
  int64_t Size() override { return static_cast<int64_t>(FBytes.size()); }

  void Reserve(size_t bytes) { FBytes.reserve(bytes); }
  const std::string& Bytes() const { return FBytes; }
  // Moves the bytes out and leaves the stream empty.
  std::string TakeBytes();

 private:
  std::string FBytes;
  size_t FPosition = 0;
};

}  // namespace rtl
