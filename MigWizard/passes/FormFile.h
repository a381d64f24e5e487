// The container of a form file: either text, with or without a mark, or a 16-bit resource whose data is the
// binary form of an object stream. Whichever it was, what is read is text; and what is written has the same
// kind again.
//
//   FF 0A 00   resource type 10, by which a binary form file is told: anything else is text
//   name, 00   the resource's name; or FF and two bytes, a number
//   30 10      memory flags, ignored on reading
//   size       of the data, 4 bytes
//   data       rtl/ObjectValues.h
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>

#include "qrl/Encoding.h"
#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/text/Streams.h"

namespace mig {

// What a binary form file says besides its form.
struct TRCData {
  std::string Name;                             // the bytes before the flags, without the 00 that ends a text
  int32_t Size = 0;                             // as the header gives it; the form itself says where it ends
  rtl::TValueType EmptyString = rtl::vaString;  // how the file stores empty strings
  size_t TrailingBytes = 0;                     // behind the form; they are no part of it and are not kept
};

struct TFormFile {
  bool IsBinary = false;
  TRCData RCData;                                               // of a binary one
  const qrl::TEncoding* Encoding = &qrl::TEncoding::Default();  // Default for a binary one
  std::string Text;  // without a mark; that of a binary one without indentation
};

// Whether a file with these first bytes, of which three count, is a binary form file. One that the file does
// not have counts as 00.
[[nodiscard]] bool IsBinaryForm(std::string_view file);
// The object data in the bytes of a binary form file, to the end of the file; fills the name and the size. A
// header that is cut short gives no data.
std::string_view ReadFormHeader(std::string_view file, TRCData& rcData);
// The header for that name and size.
std::string FormHeader(const TRCData& rcData);

// Reads from the stream's position to its end. Raises rtl::EFilerError, with the offset from that position,
// on damaged binary data, and rtl::EConvertError on UTF-16 with an odd number of bytes.
TFormFile ReadFormFile(rtl::TStream& stream);
// The same for the bytes of a whole file.
TFormFile DecodeFormFile(std::string bytes);

// Writes, at the stream's position, a file of the kind that `form` says. `output` is the form's text in
// `form.Encoding`, without a mark; `form.Text` is not looked at. Raises rtl::EParserError if a binary form is
// to be made of text that is none.
void WriteFormFile(rtl::TStream& stream, std::string_view output, const TFormFile& form);

}  // namespace mig
