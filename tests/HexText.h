// Converts hexadecimal text to bytes, for readable tables.
#pragma once

#include <string>
#include <string_view>

namespace tests {

// Converts text such as "06 03 'abc' 00": pairs of digits and quoted text, separated by any number of
// blanks.
inline std::string FromHex(std::string_view hex) {
  const auto digit = [](char c) { return c <= '9' ? c - '0' : c - 'A' + 10; };
  std::string bytes;
  for (size_t at = 0; at < hex.size(); ++at) {
    if (hex[at] == ' ') continue;
    if (hex[at] == '\'') {
      for (++at; hex[at] != '\''; ++at) bytes += hex[at];
    } else {
      bytes += static_cast<char>(digit(hex[at]) * 16 + digit(hex[at + 1]));
      ++at;
    }
  }
  return bytes;
}

inline std::string ToHex(std::string_view bytes) {
  std::string hex;
  for (const char byte : bytes) {
    if (!hex.empty()) hex += ' ';
    hex += "0123456789ABCDEF"[static_cast<unsigned char>(byte) >> 4];
    hex += "0123456789ABCDEF"[byte & 15];
  }
  return hex;
}

}  // namespace tests
