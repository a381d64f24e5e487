// Maps the aliases of a project's databases to the components that replace them.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "qrl/Encoding.h"
#include "rtl/text/StringList.h"

namespace mig {

class TDatabaseNames {
 public:
  // Adds the databases of a form file with the contents `bytes`; those under `inherited` or `inline` only if
  // `takesInherited` is True. Passes on exceptions of decoding it.
  void Collect(const std::string& fileName, std::string bytes, bool takesInherited);

  // Returns the component of an alias, "Root.Component", or an empty string. `encoding` is that of the form
  // that refers to the alias. Several threads may call Find and FindInherited at a time, but not together
  // with Collect.
  std::string Find(std::string_view alias, const qrl::TEncoding& encoding);
  // The same for the databases that Collect did not add because they are inherited.
  std::string FindInherited(std::string_view alias, const qrl::TEncoding& encoding);

 private:
  rtl::TStringList FDatabases;  // alias=Root.Component, the alias in UTF-8
  rtl::TStringList FInherited;  // the same
  std::mutex FMutex;            // for look-ups: the first one builds the list's index
};

}  // namespace mig
