// The door to the host, against a host that records what is asked of it; and the counting of interfaces.
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "MigWizard/IDEUtils.h"
#include "qrl/KVAMenu.h"
#include "rtl/Exceptions.h"
#include "toolsapi/InterfacedObject.h"

namespace mig {
namespace {

using toolsapi::BorlandIDEServices;
using toolsapi::MakeIntf;
using toolsapi::TIntf;

std::vector<std::string> CallLog;
int AliveCount = 0;

template <class TInterface>
class TFakeModule : public toolsapi::TInterfacedObject<TInterface> {
 public:
  explicit TFakeModule(std::string name) : FName(std::move(name)) { ++AliveCount; }
  ~TFakeModule() override { --AliveCount; }
  std::string GetFileName() override { return FName; }
  int GetModuleFileCount() override { return 0; }
  TIntf<toolsapi::IOTAEditor> GetModuleFileEditor(int) override { return nullptr; }
  int GetOwnerCount() override { return 0; }
  TIntf<toolsapi::IOTAProject> GetOwner(int) override { return nullptr; }
  bool Save(bool changeName, bool forceSave) override {
    CallLog.push_back("Save " + FName + (changeName ? " +name" : "") + (forceSave ? " +force" : ""));
    return FName != "unwilling";
  }
  bool Close() override {
    CallLog.push_back("Close " + FName);
    return FName != "unwilling";
  }

 private:
  std::string FName;
};

class TFakeInfo final : public toolsapi::TInterfacedObject<toolsapi::IOTAModuleInfo> {
 public:
  explicit TFakeInfo(int index) : FIndex(index) {}
  std::string GetFileName() override { return "module " + std::to_string(FIndex); }

 private:
  int FIndex;
};

class TFakeProject final : public TFakeModule<toolsapi::IOTAProject> {
 public:
  using TFakeModule::TFakeModule;
  int GetModuleCount() override { return 3; }
  TIntf<toolsapi::IOTAModuleInfo> GetModule(int index) override { return MakeIntf<TFakeInfo>(index); }
};

class TFakeGroup final : public TFakeModule<toolsapi::IOTAProjectGroup> {
 public:
  TFakeGroup(std::string name, TIntf<toolsapi::IOTAProject> active)
      : TFakeModule(std::move(name)), FActive(std::move(active)) {}
  TIntf<toolsapi::IOTAProject> GetActiveProject() override { return FActive; }

 private:
  TIntf<toolsapi::IOTAProject> FActive;
};

// Its modules are made from words: "unit", "group", "group:PROJECT".
class TFakeModules final : public toolsapi::TInterfacedObject<toolsapi::IOTAModuleServices> {
 public:
  explicit TFakeModules(std::vector<std::string> words) : FWords(std::move(words)) {}
  int GetModuleCount() override { return static_cast<int>(FWords.size()); }
  TIntf<toolsapi::IOTAModule> GetModule(int index) override {
    const std::string& word = FWords[static_cast<size_t>(index)];
    if (word == "unit") return MakeIntf<TFakeModule<toolsapi::IOTAModule>>(word);
    const size_t colon = word.find(':');
    TIntf<toolsapi::IOTAProject> active;
    if (colon != word.npos) active = MakeIntf<TFakeProject>(word.substr(colon + 1));
    return MakeIntf<TFakeGroup>(word.substr(0, colon), active);
  }

 private:
  std::vector<std::string> FWords;
};

class TFakeActions final
    : public toolsapi::TInterfacedObject<toolsapi::IOTAActionServices, toolsapi::INTAServices> {
 public:
  explicit TFakeActions(rtl::TMainMenu* menu = nullptr) : FMenu(menu) {}
  bool ReloadFile(std::string_view fileName) override { return Note("Reload ", fileName); }
  bool OpenProject(std::string_view fileName, bool newProjGroup) override {
    return Note(newProjGroup ? "OpenNew " : "Open ", fileName);
  }
  rtl::TMainMenu* GetMainMenu() override { return FMenu; }
  void AddActionMenu(std::string_view name, rtl::TAction* action, rtl::TMenuItem* item, bool insertAfter,
                     bool insertAsChild) override {
    rtl::TMenuItem& place = *FMenu->FindItem(name);
    EXPECT_EQ(action, nullptr);
    EXPECT_EQ(insertAfter, insertAsChild);
    rtl::TMenuItem& parent = insertAsChild ? place : *place.Parent();
    parent.Insert(insertAsChild ? parent.Count() : parent.IndexOf(place), *item);
  }

 private:
  static bool Note(const char* call, std::string_view name) {
    CallLog.push_back(call + std::string(name));
    return name == "good";
  }
  rtl::TMainMenu* FMenu;
};

class IDEUtilsTest : public testing::Test {
 protected:
  void SetUp() override { CallLog.clear(); }
  void TearDown() override {
    BorlandIDEServices = nullptr;
    EXPECT_EQ(AliveCount, 0);
  }
};

TEST_F(IDEUtilsTest, Projects) {
  const struct {
    std::vector<std::string> Modules;
    const char* Project;
    bool Saved, Closed;
    std::vector<std::string> Calls;
  } rows[] = {
      {{}, "", false, true, {}},
      {{"unit"}, "", false, true, {}},
      {{"unit", "group"}, "", false, true, {"Close group"}},
      {{"group:P", "unit"}, "P", true, true, {"Save P +force", "Close group"}},
      {{"unit", "group:P", "other:Q"}, "P", true, true, {"Save P +force", "Close group"}},
      {{"unwilling:unwilling"}, "unwilling", false, false, {"Save unwilling +force", "Close unwilling"}},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(testing::PrintToString(row.Modules));
    CallLog.clear();
    BorlandIDEServices = MakeIntf<TFakeModules>(row.Modules);
    EXPECT_EQ(TIDEUtils::GetProjectFileName(), row.Project);
    EXPECT_EQ(TIDEUtils::GetModuleCount(), *row.Project ? 3 : 0);
    if (*row.Project) {
      EXPECT_EQ(TIDEUtils::GetModuleFileName(2), "module 2");
    }
    EXPECT_EQ(TIDEUtils::SaveProject(), row.Saved);
    EXPECT_EQ(TIDEUtils::CloseProjectGroup(), row.Closed);
    EXPECT_EQ(CallLog, row.Calls);
    EXPECT_THROW(TIDEUtils::OpenProject("x"), rtl::EInvalidCast);
  }
}

TEST_F(IDEUtilsTest, WithoutHost) {
  EXPECT_EQ(TIDEUtils::GetProjectGroup(), nullptr);
  EXPECT_EQ(TIDEUtils::GetProjectFileName(), "");
  EXPECT_TRUE(TIDEUtils::CloseProjectGroup());
  EXPECT_THROW(TIDEUtils::GetModuleServices(), rtl::EInvalidCast);
  EXPECT_THROW(TIDEUtils::ReloadFile("x"), rtl::EInvalidCast);
}

TEST_F(IDEUtilsTest, Actions) {
  BorlandIDEServices = TIntf<toolsapi::INTAServices>(MakeIntf<TFakeActions>());
  EXPECT_TRUE(TIDEUtils::OpenProject("good"));
  EXPECT_FALSE(TIDEUtils::OpenProject(""));
  EXPECT_FALSE(TIDEUtils::ReloadFile("bad"));
  EXPECT_EQ(CallLog, (std::vector<std::string>{"OpenNew good", "OpenNew ", "Reload bad"}));
  try {
    TIDEUtils::GetProjectGroup();
    ADD_FAILURE();
  } catch (const rtl::EInvalidCast& error) {
    EXPECT_STREQ(error.what(), "Interface not supported: IOTAModuleServices.");
  }
}

// "name=caption" for each item, children in brackets.
std::string Dump(const rtl::TMenuItem& parent) {
  std::string text;
  for (int i = 0; i < parent.Count(); ++i) {
    text.append(i == 0 ? "" : " ").append(parent[i].Name()).append("=").append(parent[i].Caption());
    if (parent[i].Count() > 0) text.append("[").append(Dump(parent[i])).append("]");
  }
  return text;
}

TEST_F(IDEUtilsTest, ExpertMenuItem) {
  const qrl::TProductMenu plain{"Own", "&Prod", ""};
  const qrl::TProductMenu careful{"Own", "&Prod", "Al&t"};
  const struct {
    std::vector<std::pair<const char*, const char*>> Items;
    const qrl::TProductMenu& Menu;
    const char* Result;
  } rows[] = {
      {{{"F", "&File"}, {"H", "&Help"}}, plain, "F=&File Own=&Prod[I=&Go] H=&Help"},
      {{{"H", "&Help"}}, careful, "Own=&Prod[I=&Go] H=&Help"},
      {{{"X", "p&ROD"}, {"H", "&Help"}}, plain, "X=p&ROD Own=&Prod[I=&Go] H=&Help"},
      {{{"X", "p&ROD"}, {"H", "&Help"}}, careful, "X=p&ROD Own=Al&t[I=&Go] H=&Help"},
      {{{"H", "Prod"}}, careful, "Own=Al&t[I=&Go] H=Prod"},
      {{{"X", "Product"}, {"H", "&Help"}}, careful, "X=Product Own=&Prod[I=&Go] H=&Help"},
      {{{"F", "&File"}, {"Own", "Old"}, {"H", "&Help"}}, plain, "F=&File Own=&Prod[I=&Go] H=&Help"},
      {{{"X", "&Prod"}, {"Own", "Old"}}, careful, "X=&Prod Own=Al&t[I=&Go]"},
      {{{"Own", "&Prod"}, {"X", "&Prod"}}, careful, "Own=&Prod[I=&Go] X=&Prod"},
      {{{"own", "Other"}, {"H", "&Help"}}, plain, "own=Other Own=&Prod[I=&Go] H=&Help"},
  };
  for (const auto& row : rows) {
    SCOPED_TRACE(row.Result);
    rtl::TMainMenu menu;
    for (const auto& [name, caption] : row.Items) {
      rtl::TMenuItem& item = menu.NewItem();
      item.SetName(name);
      item.SetCaption(caption);
      menu.Items().Insert(menu.Items().Count(), item);
    }
    BorlandIDEServices = TIntf<toolsapi::INTAServices>(MakeIntf<TFakeActions>(&menu));
    int clicks = 0;
    TIDEUtils::AddExpertMenuItem(row.Menu, "&Go", "I", [&](rtl::TMenuItem&) { ++clicks; });
    EXPECT_EQ(Dump(menu.Items()), row.Result);
    menu.FindItem("Own")->Click();
    menu.FindItem("I")->Click();
    EXPECT_EQ(clicks, 1);
    TIDEUtils::AddExpertMenuItem(row.Menu, "Next", "J", nullptr);
    EXPECT_EQ(Dump(*menu.FindItem("Own")), "I=&Go J=Next");
  }
  EXPECT_EQ(qrl::RemoveAmpersands(qrl::Menu().MenuCaption), "KORVA");
}

TEST_F(IDEUtilsTest, Interfaces) {
  TIntf<toolsapi::IOTAModule> module = MakeIntf<TFakeGroup>("group", nullptr);
  {
    const auto group = toolsapi::Supports<toolsapi::IOTAProjectGroup>(module);
    ASSERT_TRUE(group);
    EXPECT_EQ(module, TIntf<toolsapi::IOTAModule>(group));
    EXPECT_EQ(group->AddRef(), 3);
    EXPECT_EQ(group->Release(), 2);
    module = nullptr;
    EXPECT_EQ(AliveCount, 1);
    EXPECT_FALSE(toolsapi::Supports<toolsapi::IOTAEditor>(group));
  }
  EXPECT_EQ(AliveCount, 0);
  EXPECT_THROW(module->Close(), rtl::EAssertionFailed);

  const auto actions = MakeIntf<TFakeActions>();
  const auto services =
      toolsapi::CastTo<toolsapi::INTAServices>(TIntf<toolsapi::IOTAActionServices>(actions));
  EXPECT_EQ(toolsapi::Supports<toolsapi::IInterface>(services),
            toolsapi::Supports<toolsapi::IInterface>(TIntf<toolsapi::IOTAActionServices>(actions)));
}

}  // namespace
}  // namespace mig
