// Reads a source file: detects its encoding by the byte order mark, and returns its working text.
#pragma once

#include <string>

#include "qrl/Encoding.h"
#include "rtl/text/Streams.h"

namespace mig {

struct TTextFile {
  const qrl::TEncoding* Encoding = &qrl::TEncoding::Default();
  std::string Text;  // without the mark
};

// Reads from the stream's position to its end. Text with the mark FF FE is UTF-16, text with EF BB BF is
// UTF-8, and text without a mark is in the source code page. Raises rtl::EConvertError for UTF-16 with an odd
// number of bytes.
TTextFile ReadTextFile(rtl::TStream& stream);
// The same for the contents of a whole file.
TTextFile DecodeTextFile(std::string bytes);

}  // namespace mig
