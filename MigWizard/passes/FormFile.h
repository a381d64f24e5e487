// Reads and writes the container of a form file: either text, with or without a byte order mark, or a 16-bit
// resource that holds the binary form of an object stream. Reading returns text in both cases; writing keeps
// the kind of the file.
//
//   FF 0A 00   resource type 10, which identifies a binary form file; everything else is text
//   name, 00   the resource's name; or FF and two bytes, a number
//   30 10      memory flags, ignored on reading
//   size       of the data, 4 bytes
//   data       rtl/objects/ObjectValues.h
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "qrl/Encoding.h"
#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/text/Streams.h"

namespace mig {

// The properties of a binary form file other than its form.
struct TRCData {
  std::string Name;                             // the bytes before the flags, without a terminating 00
  int32_t Size = 0;                             // as in the header; the form itself determines its end
  rtl::TValueType EmptyString = rtl::vaString;  // how the file stores empty strings
  size_t TrailingBytes = 0;                     // bytes after the form, which are ignored and not kept
};

struct TFormFile {
  bool IsBinary = false;
  TRCData RCData;                                               // of a binary form
  const qrl::TEncoding* Encoding = &qrl::TEncoding::Default();  // Default for a binary form
  std::string Text;  // without a mark; without indentation for a binary form
};

// Returns True if `file` begins like a binary form file. Only the first three bytes count; missing bytes
// count as 00.
[[nodiscard]] bool IsBinaryForm(std::string_view file);
// Returns the object data of a binary form file, to the end of the file, and sets the name and the size in
// `rcData`. Returns an empty view if the header is truncated.
std::string_view ReadFormHeader(std::string_view file, TRCData& rcData);
// Returns the header for the name and the size in `rcData`.
std::string FormHeader(const TRCData& rcData);

// Reads the contents of a form file. Raises rtl::EFilerError, with the offset from their beginning, for
// damaged binary data, and rtl::EConvertError for UTF-16 with an odd number of bytes.
TFormFile DecodeFormFile(std::string bytes);

// Writes a file of the same kind as `form` at the stream's position. `output` is the form's text in
// `form.Encoding`, without a mark; `form.Text` is ignored. Raises rtl::EParserError if `form` is binary and
// `output` is not a valid form.
void WriteFormFile(rtl::TStream& stream, std::string_view output, const TFormFile& form);

}  // namespace mig
