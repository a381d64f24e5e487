// The conversion of one form file, from bytes to bytes.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace cli {

enum class TFormKind {
  Text,
  Binary,     // object data after a resource header
  BareBinary  // object data alone
};

// Returns the kind of a file, decided from its first bytes. Everything that is not binary is text.
TFormKind KindOfForm(std::string_view bytes);

struct TConvertedForm {
  bool Changed = false;  // false if the form already was of the wanted kind; Bytes are the input then
  std::string Bytes;
  size_t Dropped =
      0;  // number of bytes after the form, which are dropped; white space after a text is not counted
};

// Converts a form to the wanted kind. Text is laid out for people, as the IDE writes it. The resource of a
// binary form is named after the form's class if the input has no resource header. Raises rtl::EFilerError,
// rtl::EParserError or rtl::EConvertError.
TConvertedForm ConvertFormBytes(std::string bytes, TFormKind wanted);

}  // namespace cli
