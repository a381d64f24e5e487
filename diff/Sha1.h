// SHA-1, as FIPS 180-4 defines it. Version control names file contents by it; it protects nothing.
#pragma once

#include <string>
#include <string_view>

namespace diff {

// Returns the digest of `bytes` as 40 lower-case hexadecimal digits.
std::string Sha1Hex(std::string_view bytes);

}  // namespace diff
