// The aliases of a project's databases and the components that replace them.
#pragma once

#include <mutex>
#include <string>
#include <string_view>

#include "qrl/Encoding.h"
#include "rtl/text/StringList.h"

namespace mig {

class TDatabaseNames {
 public:
  // Reads a form file and adds its databases. Raises what opening, reading or decoding it raises.
  void Collect(const std::string& fileName);

  // Returns the component of an alias, "Root.Component", or an empty string. `encoding` is that of the form
  // that names the alias. May be called by several threads, but not together with Collect.
  std::string Find(std::string_view alias, const qrl::TEncoding& encoding);

 private:
  rtl::TStringList FDatabases;  // alias=Root.Component, the alias in UTF-8
  std::mutex FMutex;            // for look-ups: the list builds its index on the first one
};

}  // namespace mig
