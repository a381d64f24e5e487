// Converts any bytes as a whole file, a unit or a form by the first byte. The result does not depend on the
// files that were converted before.
#include "MigWizard/passes/FileConversion.h"
#include "MigWizard/passes/FindingRules.h"
#include "MigWizard/passes/FormFile.h"
#include "fuzz/Require.h"
#include "rtl/text/Exceptions.h"
#include "target/KVAFormParser.h"

namespace {

struct TConverter {
  TConverter()
      : Converter(Classes, "DBTABLES", ", KVA",
                  std::make_unique<target::TKVAFormParser>(mig::ParseStateClass<mig::TFormParseState>())) {
    Classes.AddClass("TQuery", "TKVAQuery");
    Classes.AddClass("TDatabase", "TKVAConnection");
    Classes.AddClass("TTable", "TKVATable");
    Converter.OnGetReplacement = [](std::string_view, std::string_view newClass) {
      return std::string(newClass);
    };
    Converter.OnGetDatabase = [](std::string_view alias, const qrl::TEncoding&) {
      return alias == "DB" ? std::string("Main.DB") : std::string();
    };
  }
  mig::TClassMap Classes;
  mig::TFileConverter Converter;
};

std::string MessageOf(const std::exception_ptr& failure) {
  if (!failure) return {};
  try {
    std::rethrow_exception(failure);
  } catch (const rtl::Exception& error) {
    return error.what();
  }
}

void RequireSame(const mig::TFileConversion& left, const mig::TFileConversion& right) {
  fuzz::Require(MessageOf(left.Failure) == MessageOf(right.Failure), "both fail alike");
  fuzz::Require(left.Changes == right.Changes && left.IsChanged == right.IsChanged, "both change alike");
  fuzz::Require(left.Mark == right.Mark && left.Bytes == right.Bytes, "both give the same bytes");
  fuzz::Require(left.FormFiles == right.FormFiles, "both name the same forms");
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size) {
  if (size == 0) return 0;
  static TConverter used;
  const bool isUnit = data[0] % 2 == 1;
  const std::string fileName = isUnit ? "C:\\App\\Unit1.pas" : "C:\\App\\Unit1.dfm";
  const std::string bytes(reinterpret_cast<const char*>(data) + 1, size - 1);
  const mig::TFileConversion converted = used.Converter.Convert(fileName, bytes);
  TConverter fresh;
  RequireSame(converted, fresh.Converter.Convert(fileName, bytes));

  const bool failed = converted.Failure || converted.WriteFailure;
  fuzz::Require(converted.IsChanged || converted.Bytes.empty(),
                "an unchanged file has no bytes to be written");
  if (failed || !converted.IsChanged) return 0;
  const std::string written = std::string(converted.Mark) + converted.Bytes;
  if (!isUnit) {
    const mig::TFormFile form = mig::DecodeFormFile(written);
    fuzz::Require(form.IsBinary == mig::IsBinaryForm(bytes), "a form stays of its kind");
  }
  return 0;
}
