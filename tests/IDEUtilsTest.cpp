// The interface to the host: its menu, missing services, and reference counts.
#include <gtest/gtest.h>

#include "MigWizard/run/IDEUtils.h"
#include "RecordingHost.h"
#include "qrl/KVAMenu.h"
#include "tests/ErrorOf.h"

namespace mig {
namespace {

using toolsapi::TIntf;

// Counts the live objects.
class TCounted final : public toolsapi::TInterfacedObject<toolsapi::IOTASourceEditor> {
 public:
  explicit TCounted(int& alive) : FAlive(alive) { ++FAlive; }
  ~TCounted() override { --FAlive; }
  std::string GetFileName() override { return {}; }
  void Show() override {}

 private:
  int& FAlive;
};

TEST(IDEUtilsTest, WithoutHost) {
  EXPECT_EQ(TIDEUtils::GetProjectGroup(), nullptr);
  EXPECT_TRUE(TIDEUtils::CloseProjectGroup());
  EXPECT_THROW(TIDEUtils::GetModuleServices(), rtl::EInvalidCast);
  EXPECT_THROW(TIDEUtils::ReloadFile("x"), rtl::EInvalidCast);
}

// Returns "name=caption" for each item, with children in brackets.
std::string Dump(const rtl::TMenuItem& parent) {
  std::string text;
  for (int i = 0; i < parent.Count(); ++i) {
    text.append(i == 0 ? "" : " ").append(parent[i].Name()).append("=").append(parent[i].Caption());
    if (parent[i].Count() > 0) text.append("[").append(Dump(parent[i])).append("]");
  }
  return text;
}

TEST(IDEUtilsTest, ExpertMenuItem) {
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
    test::THostState host;
    const test::THostInForce inForce(host);
    rtl::TMainMenu& menu = host.MainMenu;
    for (const auto& [name, caption] : row.Items) {
      rtl::TMenuItem& item = menu.NewItem();
      item.SetName(name);
      item.SetCaption(caption);
      menu.Items().Insert(menu.Items().Count(), item);
    }
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

TEST(IDEUtilsTest, Interfaces) {
  int alive = 0;
  TIntf<toolsapi::IOTAEditor> editor = toolsapi::MakeIntf<TCounted>(alive);
  {
    const auto source = toolsapi::Supports<toolsapi::IOTASourceEditor>(editor);
    EXPECT_EQ(editor, TIntf<toolsapi::IOTAEditor>(source));
    EXPECT_EQ(source->AddRef(), 3);
    EXPECT_EQ(source->Release(), 2);
    editor = nullptr;
    EXPECT_EQ(alive, 1);
    const auto cast = [&] { return toolsapi::CastTo<toolsapi::IOTAModuleServices>(source); };
    EXPECT_EQ(tests::ErrorOf<rtl::EInvalidCast>(cast), "Interface not supported: IOTAModuleServices.");
  }
  EXPECT_EQ(alive, 0);
  EXPECT_THROW(editor->Show(), rtl::EAssertionFailed);

  // The same object implements both, as their IInterface shows.
  test::THostState host;
  const test::THostInForce inForce(host);
  const auto menus = toolsapi::CastTo<toolsapi::INTAServices>(toolsapi::BorlandIDEServices);
  EXPECT_EQ(toolsapi::Supports<toolsapi::IInterface>(menus),
            toolsapi::Supports<toolsapi::IInterface>(TIDEUtils::GetActionServices()));
}

}  // namespace
}  // namespace mig
