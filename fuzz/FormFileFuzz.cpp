// Takes any bytes as a whole form file and as a whole unit: marks, UTF-16, resource headers. A file that is
// read and not changed is written with the same bytes.
#include "MigWizard/passes/FormFile.h"
#include "MigWizard/passes/TextFile.h"
#include "fuzz/Require.h"
#include "rtl/text/Exceptions.h"

namespace {

// The bytes of a text file that holds `text`.
std::string Written(const qrl::TEncoding& encoding, std::string_view text, std::string_view bytes) {
  constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
  const bool hasUtf8Mark = encoding == qrl::TEncoding::UTF8() && bytes.starts_with(kUtf8Mark);
  return std::string(hasUtf8Mark ? kUtf8Mark : encoding.WrittenMark()) + encoding.GetBytes(text);
}

void CheckUnit(const std::string& bytes) {
  try {
    const mig::TTextFile file = mig::DecodeTextFile(bytes);
    fuzz::Require(Written(*file.Encoding, file.Text, bytes) == bytes,
                  "a unit comes back with the same bytes");
  } catch (const rtl::EConvertError&) {
    fuzz::Require(bytes.size() % 2 == 1, "only UTF-16 with an odd number of bytes is refused");
  }
}

void CheckTextForm(const mig::TFormFile& form, const std::string& bytes) {
  fuzz::Require(Written(*form.Encoding, form.Text, bytes) == bytes,
                "a text form comes back with the same bytes");
}

void CheckBinaryForm(const mig::TFormFile& form) {
  rtl::TMemoryStream stream;
  mig::WriteFormFile(stream, form.Text, form);
  const std::string written(stream.Bytes());
  fuzz::Require(mig::IsBinaryForm(written), "a binary form is written as one");
  const mig::TFormFile again = mig::DecodeFormFile(written);
  fuzz::Require(again.Text == form.Text, "a binary form comes back with the same text");
  fuzz::Require(again.RCData.Name == form.RCData.Name,
                "a binary form comes back with the same resource name");
  fuzz::Require(again.RCData.TrailingBytes == 0, "nothing is added");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  const std::string bytes(reinterpret_cast<const char*>(data), size);
  CheckUnit(bytes);
  try {
    const mig::TFormFile form = mig::DecodeFormFile(bytes);
    if (form.IsBinary) {
      CheckBinaryForm(form);
    } else {
      CheckTextForm(form, bytes);
    }
  } catch (const rtl::EFilerError&) {
  } catch (const rtl::EConvertError&) {
  }
  return 0;
}
