// A loadable module of the host: a shared library.
#pragma once

#include <string_view>

namespace host {

class TLoadedModule {
 public:
  // Loads the module `fileName`, a full Windows path. Raises EHostError if the file is no module.
  explicit TLoadedModule(std::string_view fileName);
  // Unloads the module.
  ~TLoadedModule();
  TLoadedModule(const TLoadedModule&) = delete;
  TLoadedModule& operator=(const TLoadedModule&) = delete;

  // Returns the address of the module's export `name`, or null if there is none.
  void* Find(const char* name) const;

 private:
  void* FLibrary;
};

}  // namespace host
