// Reading a source file: its encoding, told by the mark at its beginning, and its working text.
#pragma once

#include <string>

#include "qrl/Encoding.h"
#include "rtl/text/Streams.h"

namespace mig {

struct TTextFile {
  const qrl::TEncoding* Encoding = &qrl::TEncoding::Default();
  std::string Text;  // without the mark
};

// Reads from the stream's position to its end: FF FE begins UTF-16, EF BB BF UTF-8, anything else is text in
// the source code page. Raises rtl::EConvertError on UTF-16 with an odd number of bytes.
TTextFile ReadTextFile(rtl::TStream& stream);
// The same for the bytes of a whole file.
TTextFile DecodeTextFile(std::string bytes);

}  // namespace mig
