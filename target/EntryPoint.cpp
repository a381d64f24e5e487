// The loadable module's only export. What lives as long as the module - options, replacers, class maps - is
// made on the first call and freed when the module is unloaded; by then the host has let go of the expert.

#include "rtl/Application.h"
#include "target/Catalogue.h"
#include "target/KVAExpert.h"

namespace {

target::TKVAMigration& Migration() {
  static target::TKVAMigration migration(target::TCatalogue::BuiltIn());
  return migration;
}

}  // namespace

extern "C" [[gnu::visibility("default")]] bool INITWIZARD0001(
    const toolsapi::TIntf<toolsapi::IInterface>& services, toolsapi::TWizardRegisterProc registerProc,
    toolsapi::TWizardTerminateProc*) {
  try {
    if (!toolsapi::BorlandIDEServices) toolsapi::BorlandIDEServices = services;
    registerProc(target::MakeExpert(Migration()));
  } catch (const std::exception& exception) {
    rtl::Application().HandleException(exception);
  }
  return true;
}
