#include "MigWizard/run/DatabaseNames.h"

#include <utility>

#include "MigWizard/passes/FormFile.h"
#include "MigWizard/passes/FormPass.h"
#include "MigWizard/run/RunErrors.h"
#include "win/paths/CodePage.h"

namespace mig {
namespace {

// Returns the same key for an alias in forms of different encodings.
std::string AliasKey(std::string_view alias, const qrl::TEncoding& encoding) {
  return encoding == qrl::TEncoding::Default() ? win::SourceToUtf8(alias) : std::string(alias);
}

}  // namespace

void TDatabaseNames::Collect(const std::string& fileName, std::string bytes, bool takesInherited) {
  WithFileInErrors(fileName, [&] {
    const TFormFile form = DecodeFormFile(std::move(bytes));
    const std::string_view text = form.Text;
    FindDatabaseNames(text.substr(0, text.find('\0')), *form.Encoding, takesInherited,
                      [&](const TDeclaredDatabase& database) {
                        rtl::TStringList& list =
                            database.IsInherited && !takesInherited ? FInherited : FDatabases;
                        list.SetValue(AliasKey(database.Alias, *form.Encoding), database.Component);
                      });
  });
}

std::string TDatabaseNames::Find(std::string_view alias, const qrl::TEncoding& encoding) {
  const std::lock_guard lock(FMutex);
  return std::string(FDatabases.Values(AliasKey(alias, encoding)));
}

std::string TDatabaseNames::FindInherited(std::string_view alias, const qrl::TEncoding& encoding) {
  const std::lock_guard lock(FMutex);
  return std::string(FInherited.Values(AliasKey(alias, encoding)));
}

}  // namespace mig
