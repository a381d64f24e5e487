// A loadable module with a wizard, for tests of the host's loader. It refuses to be loaded if KVA_PROBE is
// "refuse". KVA_WIZARD says whether the host holds the wizard.
#include <cstdlib>
#include <string_view>

#include "rtl/forms/Menus.h"
#include "tests/TestHost.h"
#include "toolsapi/InterfacedObject.h"
#include "toolsapi/ToolsAPI.h"

namespace {

class TProbe final : public toolsapi::TInterfacedObject<toolsapi::IOTAWizard> {
 public:
  TProbe() { tests::SetVariable("KVA_WIZARD", "held"); }
  ~TProbe() override { tests::SetVariable("KVA_WIZARD", "released"); }
  void AfterSave() override {}
  void BeforeSave() override {}
  void Destroyed() override {}
  void Modified() override {}
  std::string GetIDString() override { return "Probe"; }
  std::string GetName() override { return "Probe"; }
  toolsapi::TWizardState GetState() override { return {}; }
  void Execute() override {}
};

}  // namespace

extern "C" KVA_EXPORTED bool INITWIZARD0001(const toolsapi::TIntf<toolsapi::IInterface>& services,
                                            toolsapi::TWizardRegisterProc registerProc,
                                            toolsapi::TWizardTerminateProc* terminate) {
  const char* const word = std::getenv("KVA_PROBE");
  const bool isOwn = toolsapi::BorlandIDEServices == nullptr;
  toolsapi::BorlandIDEServices = services;
  const auto menus = toolsapi::CastTo<toolsapi::INTAServices>(toolsapi::BorlandIDEServices);
  rtl::TMenuItem& item = menus->GetMainMenu()->NewItem();
  item.SetName("Probe");
  item.SetOnClick([isOwn](rtl::TMenuItem& sender) {
    sender.SetCaption(isOwn ? "a variable of its own" : "the program's variable");
  });
  menus->AddActionMenu("HelpMenu", nullptr, &item, true, true);
  registerProc(toolsapi::MakeIntf<TProbe>());
  *terminate = [] { tests::SetVariable("KVA_PROBE", "ended"); };
  return !word || word != std::string_view("refuse");
}
