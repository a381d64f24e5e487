// The conversion of one form file, from bytes to bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cli {

enum class TFormKind {
  Text,
  Binary,     // with its resource header
  BareBinary  // the object stream alone
};

// What a file is, by its first bytes. Anything that is not binary is text.
TFormKind KindOfForm(std::string_view bytes);

struct TConvertedForm {
  bool Changed = false;  // else it was of the wanted kind, and Bytes are what they were
  std::string Bytes;
  size_t Dropped =
      0;  // bytes behind the form that are not part of it; white space behind a text does not count
};

// The text is made for people: rtl/FormTextPrinter.h. The resource of a binary form that comes from text, or
// from a bare stream, is named after the form's class. Raises rtl::EFilerError, rtl::EParserError or
// rtl::EConvertError.
TConvertedForm ConvertFormBytes(std::string bytes, TFormKind wanted);

}  // namespace cli
