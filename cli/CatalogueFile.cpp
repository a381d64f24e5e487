#include "cli/CatalogueFile.h"

#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/TypedPath.h"
#include "rtl/text/Files.h"

namespace cli {

target::TCatalogue LoadCatalogue(const std::string& typed) {
  if (typed.empty()) return target::TCatalogue::BuiltIn();
  return {rtl::ReadFile(WindowsPath(typed)), typed};
}

int RunCatalogue(const TCommandLine& line) {
  PrintText(LoadCatalogue(line.Catalogue).Text());
  return kExitOk;
}

}  // namespace cli
