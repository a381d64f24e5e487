#include "diff/BinaryPatch.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <zlib.h>

namespace diff {
namespace {

constexpr size_t kBytesALine = 52;
constexpr char kDigits[] =
    "0123456789ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz!#$%&()*+-;<=>?@^_`{|}~";

std::string Deflate(std::string_view bytes) {
  uLongf size = compressBound(static_cast<uLong>(bytes.size()));
  std::string result(size, '\0');
  if (compress2(reinterpret_cast<Bytef*>(result.data()), &size, reinterpret_cast<const Bytef*>(bytes.data()),
                static_cast<uLong>(bytes.size()), Z_BEST_COMPRESSION) != Z_OK) {
    throw std::bad_alloc();  // the buffer is large enough, so nothing else can fail
  }
  result.resize(size);
  return result;
}

// Appends the base-85 digits of up to 52 bytes; the last group of four is filled up with zeros.
void AppendBase85(std::string& out, std::string_view bytes) {
  for (size_t at = 0; at < bytes.size(); at += 4) {
    uint32_t group = 0;
    for (size_t i = at; i < at + 4; ++i)
      group = group << 8 | (i < bytes.size() ? static_cast<unsigned char>(bytes[i]) : 0U);
    char digits[5];
    for (int i = 4; i >= 0; --i, group /= 85) digits[i] = kDigits[group % 85];
    out.append(digits, sizeof digits);
  }
}

// The length prefix of a line: A to Z for 1 to 26 bytes, a to z for 27 to 52.
char LengthPrefix(size_t count) {
  return static_cast<char>(count <= 26 ? 'A' + count - 1 : 'a' + count - 27);
}

void AppendLiteral(std::string& out, std::string_view bytes) {
  out.append("literal ").append(std::to_string(bytes.size())).append("\n");
  std::string deflated = Deflate(bytes);
  for (std::string_view rest = deflated; !rest.empty();) {
    const std::string_view line = rest.substr(0, kBytesALine);
    rest.remove_prefix(line.size());
    out += LengthPrefix(line.size());
    AppendBase85(out, line);
    out += '\n';
  }
  out += '\n';
}

}  // namespace

std::string BinaryPatch(std::string_view oldBytes, std::string_view newBytes) {
  std::string out = "GIT binary patch\n";
  AppendLiteral(out, newBytes);
  AppendLiteral(out, oldBytes);
  return out;
}

}  // namespace diff
