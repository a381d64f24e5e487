// The stand-alone host: opening, saving, notifications of a front end, and the choice of a project on the
// command line.
#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

#include "MigWizard/run/IDEUtils.h"
#include "host/Host.h"
#include "host/HostError.h"
#include "host/ProjectChoice.h"
#include "qrl/KVAMenu.h"
#include "tests/ErrorOf.h"
#include "tests/Scratch.h"
#include "win/Diagnostics.h"
#include "win/Errors.h"

namespace host {
namespace {

using mig::TIDEUtils;
using tests::ErrorOf;
using toolsapi::BorlandIDEServices;
using toolsapi::TIntf;

std::string Name(const std::string& fileName) {
  return fileName.substr(fileName.rfind('\\') + 1);
}

class TRecorder final : public THostObserver {
 public:
  void ProjectOpened() override { Events.push_back("+project"); }
  void ProjectClosed() override { Events.push_back("-project"); }
  void ActiveProjectChanged() override { Events.push_back("active"); }
  void ModuleOpened(TModule& module) override { Events.push_back("+" + Name(module.FileName())); }
  void ModuleClosed(TModule& module) override { Events.push_back("-" + Name(module.FileName())); }
  void BufferChanged(TFileBuffer& buffer) override {
    Events.push_back((buffer.Modified() ? "*" : "=") + Name(buffer.FileName()));
  }
  void EditorShown(TFileEditor& editor) override {
    Events.push_back("show " + Name(editor.Buffer().FileName()));
  }
  void MenuChanged() override { Events.push_back("menu"); }

  // Returns the events since the last call.
  std::string Take() {
    std::string text;
    for (const std::string& event : Events) text.append(text.empty() ? "" : " ").append(event);
    Events.clear();
    return text;
  }
  std::vector<std::string> Events;
};

// Drive C: with a group of two projects: App (Main with a form, Shared, and Gone, which does not exist) and
// Tool (Shared).
class HostTest : public testing::Test {
 protected:
  HostTest() {
    for (const char* name : {"App/Main.pas", "App/main.DFM", "lib/Shared.pas", "Lone.pas"})
      FTree.Write(name, name);
    FTree.Write("App/App.dpr",
                "program App;\nuses Main in 'Main.pas' {MainForm}, Shared in '..\\Lib\\Shared.pas',\n"
                "Gone in 'Gone.pas';\nbegin end.");
    FTree.Write("Tool/Tool.dpr", "program Tool; uses Shared in '..\\lib\\Shared.pas'; begin end.");
    FTree.Write("All.bpg", "PROJECTS = App.exe Tool.exe\nApp.exe: App\\App.dpr\nTool.exe: Tool\\Tool.dpr");
    FTree.Write("None.bpg", "PROJECTS =\n");
    FTree.Write("Broken.dproj", "<Project>");
    FTree.Write("Bare.dpr", "program Bare; begin end.");
    FHost.AddObserver(FRecorder);
    FSink = win::SetDiagnosticsSink([this](std::string_view line) { FReports.emplace_back(line); });
  }
  ~HostTest() override { win::SetDiagnosticsSink(FSink); }

  std::string Modules() const {
    std::string list;
    for (int i = 0; i < FHost.ModuleCount(); ++i) list.append(Name(FHost.Module(i).FileName())).append(" ");
    return list;
  }
  tests::TScratch FTree;
  TRecorder FRecorder;
  THost FHost;
  win::TDiagnosticsSink FSink;  // the previous sink
  std::vector<std::string> FReports;
};

TEST_F(HostTest, ProjectThroughTheInterfaces) {
  EXPECT_EQ(TIDEUtils::GetProjectFileName(), "");
  EXPECT_FALSE(TIDEUtils::OpenProject(""));
  ASSERT_TRUE(TIDEUtils::OpenProject("C:\\All.bpg"));
  EXPECT_EQ(FRecorder.Take(), "+project");
  EXPECT_EQ(FReports, std::vector<std::string>{"C:\\App\\App.dpr(3): \"C:\\App\\Gone.pas\" does not exist."});
  EXPECT_EQ(TIDEUtils::GetProjectFileName(), "C:\\App\\App.dpr");
  ASSERT_EQ(TIDEUtils::GetModuleCount(), 2);
  EXPECT_EQ(TIDEUtils::GetModuleFileName(0), "C:\\App\\Main.pas");
  EXPECT_EQ(TIDEUtils::GetModuleFileName(1), "C:\\Lib\\Shared.pas");
  EXPECT_TRUE(TIDEUtils::SaveProject());

  TModule& main = FHost.OpenModule("c:\\app\\MAIN.pas");
  TModule& shared = FHost.OpenModule("C:\\lib\\shared.pas");
  FHost.OpenModule("C:\\Lone.pas");
  EXPECT_EQ(&FHost.OpenModule("C:\\App\\Main.dfm"), &main);
  EXPECT_EQ(Modules(), "All.bpg App.dpr Tool.dpr MAIN.pas shared.pas Lone.pas ");
  EXPECT_EQ(FRecorder.Take(), "+MAIN.pas +shared.pas +Lone.pas");

  // Finds source editors by their interface, as the expert does to hide the forms of a project.
  const auto module = TIDEUtils::GetModuleServices()->GetModule(3);
  ASSERT_EQ(module->GetModuleFileCount(), 2);
  EXPECT_FALSE(toolsapi::Supports<toolsapi::IOTASourceEditor>(module->GetModuleFileEditor(1)));
  const auto source = toolsapi::CastTo<toolsapi::IOTASourceEditor>(module->GetModuleFileEditor(0));
  toolsapi::CastTo<toolsapi::IOTAEditor>(source)->Show();
  EXPECT_EQ(FRecorder.Take(), "show MAIN.pas");
  ASSERT_EQ(module->GetOwnerCount(), 1);
  EXPECT_EQ(module->GetOwner(0), TIDEUtils::GetActiveProject());
  ASSERT_EQ(shared.Interface()->GetOwnerCount(), 2);
  EXPECT_EQ(shared.Interface()->GetOwner(1)->GetFileName(), "C:\\Tool\\Tool.dpr");
  EXPECT_EQ(FHost.Module(5).Interface()->GetOwnerCount(), 0);

  FHost.SetActiveProject((*FHost.Group())[1]);
  EXPECT_EQ(TIDEUtils::GetProjectFileName(), "C:\\Tool\\Tool.dpr");
  EXPECT_EQ(TIDEUtils::GetModuleCount(), 1);

  EXPECT_TRUE(TIDEUtils::CloseProjectGroup());
  EXPECT_EQ(FRecorder.Take(), "active -MAIN.pas -shared.pas -project");
  EXPECT_EQ(Modules(), "Lone.pas ");
  EXPECT_EQ(module->GetFileName(), "c:\\app\\MAIN.pas");
  EXPECT_EQ(module->GetOwnerCount(), 0);
  source->Show();
  EXPECT_EQ(FRecorder.Take(), "");
  EXPECT_TRUE(TIDEUtils::CloseProjectGroup());
}

void SetBytes(TFileBuffer& buffer, const char* text) {
  buffer.SetBytesLater([text] { return std::string(text); });
}

TEST_F(HostTest, BuffersAreSavedReloadedAndNeverLost) {
  ASSERT_TRUE(FHost.OpenProject("C:\\App\\App.dpr", true));
  TModule& main = FHost.OpenModule("C:\\App\\Main.pas");
  TFileBuffer& source = main.Editor(0).Buffer();
  TFileBuffer& form = main.Editor(1).Buffer();
  EXPECT_EQ(source.Bytes(), "App/Main.pas");
  SetBytes(source, "new");
  SetBytes(form, "new form");
  EXPECT_TRUE(TIDEUtils::SaveProject());
  EXPECT_EQ(FTree.Read("App/Main.pas"), "new");
  EXPECT_EQ(FTree.Read("App/main.DFM"), "new form");
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(FTree.HostPath("App")), {}), 3);

  FRecorder.Take();
  SetBytes(source, "mine");
  FTree.Write("App/Main.pas", "theirs");
  FTree.Write("App/main.DFM", "their form");
  EXPECT_TRUE(TIDEUtils::ReloadFile("C:\\APP\\main.PAS"));
  EXPECT_EQ(source.Bytes(), "theirs");
  EXPECT_EQ(form.Bytes(), "their form");
  EXPECT_EQ(FRecorder.Take(), "*Main.pas =Main.pas =Main.dfm");
  EXPECT_TRUE(TIDEUtils::ReloadFile("C:\\Lone.pas"));
  EXPECT_FALSE(TIDEUtils::ReloadFile("C:\\App\\Gone.pas"));
  std::filesystem::remove(FTree.HostPath("App/main.DFM"));
  EXPECT_FALSE(TIDEUtils::ReloadFile("C:\\App\\Main.pas"));
  EXPECT_EQ(form.Bytes(), "their form");

  // A file that was changed on disk is overwritten only if the user agrees.
  SetBytes(source, "mine");
  EXPECT_FALSE(source.ChangedOnDisk());
  FTree.Write("App/Main.pas", "theirs again");
  EXPECT_TRUE(source.ChangedOnDisk());
  EXPECT_FALSE(source.Save());
  EXPECT_EQ(win::GetLastError(), win::ERROR_SHARING_VIOLATION);
  FReports.clear();
  EXPECT_FALSE(TIDEUtils::SaveProject());
  EXPECT_EQ(FReports,
            std::vector<std::string>{
                "C:\\App\\Main.pas: was changed on the disk since it was loaded, and is not overwritten."});
  EXPECT_EQ(FTree.Read("App/Main.pas"), "theirs again");
  FHost.OnQueryOverwrite = [&](const TFileBuffer& buffer) {
    return &buffer == &source ? host::TOverwriteAnswer::Overwrite : host::TOverwriteAnswer::Cancel;
  };
  EXPECT_TRUE(TIDEUtils::SaveProject());
  EXPECT_EQ(FTree.Read("App/Main.pas"), "mine");
  EXPECT_FALSE(source.ChangedOnDisk());
  FTree.Write("App/Main.pas", "theirs");
  EXPECT_TRUE(source.Reload());
  EXPECT_EQ(source.Bytes(), "theirs");

  // If a file cannot be written, its module stays open and keeps its changes in memory.
  SetBytes(source, "kept");
  std::filesystem::permissions(FTree.HostPath("App/Main.pas"), std::filesystem::perms::owner_read);
  FReports.clear();
  EXPECT_FALSE(TIDEUtils::SaveProject());
  EXPECT_FALSE(TIDEUtils::CloseProjectGroup());
  EXPECT_FALSE(FHost.OpenProject("C:\\All.bpg", true));
  EXPECT_EQ(FReports.front(), "C:\\App\\Main.pas: cannot be saved. Access is denied.");
  EXPECT_EQ(FTree.Read("App/Main.pas"), "theirs");
  EXPECT_TRUE(main.IsOpen() && main.Modified());
}

// The bytes of an editor's text are made when they are needed; a text that has none is not saved, and not
// lost.
TEST_F(HostTest, BytesAreMadeLater) {
  ASSERT_TRUE(FHost.OpenProject("C:\\App\\App.dpr", true));
  TModule& main = FHost.OpenModule("C:\\App\\Main.pas");
  TFileBuffer& source = main.Editor(0).Buffer();
  TFileBuffer& form = main.Editor(1).Buffer();
  int made = 0;
  form.SetBytesLater([&]() -> std::string { throw rtl::EParserError("Form text, line 2: no."); });
  source.SetBytesLater([&] { return "later " + std::to_string(++made); });
  EXPECT_TRUE(main.Modified());
  EXPECT_EQ(made, 0);
  FReports.clear();
  EXPECT_FALSE(TIDEUtils::SaveProject());
  EXPECT_EQ(FReports, std::vector<std::string>{"C:\\App\\Main.dfm: Form text, line 2: no."});
  EXPECT_EQ(FTree.Read("App/Main.pas"), "later 1");
  EXPECT_EQ(FTree.Read("App/main.DFM"), "App/main.DFM");
  EXPECT_TRUE(form.Modified() && !source.Modified());
  form.Revert();
  EXPECT_FALSE(main.Modified());
  EXPECT_EQ(form.Bytes(), "App/main.DFM");
  EXPECT_EQ(made, 1);
}

// A restore closes the group and opens the project again.
TEST_F(HostTest, TheGroupOfAProjectIsOpenedAgain) {
  const std::tuple<const char*, const char*, const char*> rows[] = {
      {"C:\\All.bpg", "C:\\Tool\\Tool.dpr", "All.bpg App.dpr Tool.dpr "},
      {"C:\\App\\App.dpr", "C:\\Tool\\Tool.dpr", " Tool.dpr "},
  };
  for (const auto& [first, again, modules] : rows) {
    ASSERT_TRUE(FHost.OpenProject(first, true));
    ASSERT_TRUE(TIDEUtils::CloseProjectGroup());
    ASSERT_TRUE(TIDEUtils::OpenProject(again));
    EXPECT_EQ(Modules(), modules);
    EXPECT_EQ(TIDEUtils::GetProjectFileName(), again);
  }
}

TEST_F(HostTest, TheUserIsAsked) {
  const struct {
    TSaveAnswer Answer;
    bool Closed, Saved;
    const char* OnDisk;
  } rows[] = {
      {TSaveAnswer::Cancel, false, false, "lib/Shared.pas"},
      {TSaveAnswer::No, true, false, "lib/Shared.pas"},
      {TSaveAnswer::Yes, true, true, "changed"},
  };
  for (const auto& row : rows) {
    ASSERT_TRUE(FHost.OpenProject("C:\\All.bpg", true));
    SetBytes(FHost.OpenModule("C:\\lib\\Shared.pas").Editor(0).Buffer(), "changed");
    FHost.OnQuerySave = [&](TModule& module) {
      EXPECT_EQ(module.FileName(), "C:\\lib\\Shared.pas");
      return row.Answer;
    };
    EXPECT_EQ(TIDEUtils::GetActiveProject()->Save(false, false), row.Saved);
    EXPECT_FALSE(TIDEUtils::GetActiveProject()->Save(true, true));
    EXPECT_EQ(TIDEUtils::CloseProjectGroup(), row.Closed);
    EXPECT_EQ(FTree.Read("lib/Shared.pas"), row.OnDisk);
    if (!row.Closed) {
      FHost.OnQuerySave = [](TModule&) { return TSaveAnswer::No; };
      ASSERT_TRUE(TIDEUtils::CloseProjectGroup());
    }
  }
}

TEST_F(HostTest, ProjectsComeAndGo) {
  ASSERT_TRUE(FHost.OpenProject("C:\\App\\App.dpr", true));
  ASSERT_TRUE(FHost.OpenProject("C:\\Tool\\Tool.dpr", false));
  EXPECT_EQ(FHost.ActiveProject()->FileName(), "C:\\Tool\\Tool.dpr");
  ASSERT_TRUE(FHost.OpenProject("C:/app/x/../app.DPR", false));
  EXPECT_EQ(FHost.Group()->Count(), 2);
  FHost.OpenModule("C:\\App\\Main.pas");
  FHost.OpenModule("C:\\lib\\Shared.pas");
  EXPECT_EQ(FRecorder.Take(), "+project +project active active +Main.pas +Shared.pas");

  // After a failure, the open group stays open.
  EXPECT_EQ(ErrorOf([&] { TIDEUtils::OpenProject("C:\\Broken.dproj"); }),
            "C:\\Broken.dproj(1): this is not well-formed XML: Start-end tags mismatch.");
  EXPECT_EQ(ErrorOf([&] { FHost.OpenModule("C:\\App\\Gone.pas"); }),
            "C:\\App\\Gone.pas: this file does not exist.");
  EXPECT_EQ(Modules(), " App.dpr Tool.dpr Main.pas Shared.pas ");

  TIntf<TProject> app(FHost.ActiveProject());
  EXPECT_TRUE(app->Close());
  EXPECT_EQ(Modules(), " Tool.dpr Shared.pas ");
  EXPECT_EQ(FRecorder.Take(), "-Main.pas -project active");
  EXPECT_EQ(app->GetModuleCount(), 2);
  EXPECT_TRUE(FHost.ActiveProject()->GetModule(0) && FHost.Group()->Close());
  ASSERT_TRUE(FHost.OpenProject("C:\\None.bpg", true));
  EXPECT_EQ(TIDEUtils::GetActiveProject(), nullptr);
  EXPECT_EQ(TIDEUtils::GetProjectFileName(), "");
  EXPECT_EQ(TIDEUtils::GetModuleCount(), 0);
  EXPECT_FALSE(TIDEUtils::SaveProject());
}

TEST_F(HostTest, MenuAndEnd) {
  TIntf<toolsapi::IInterface> services;
  {
    FHost.~THost();
    EXPECT_EQ(BorlandIDEServices, nullptr);
    new (&FHost) THost();
    FHost.AddObserver(FRecorder);
    TIDEUtils::AddExpertMenuItem(qrl::Menu(), "&Wizard", "W", nullptr);
    EXPECT_FALSE(FRecorder.Take().empty());
    ASSERT_EQ(FHost.MainMenu().Items().Count(), 5);
    EXPECT_EQ(FHost.MainMenu().Items()[3].Name(), qrl::Menu().MenuName);
    const auto menus = toolsapi::CastTo<toolsapi::INTAServices>(BorlandIDEServices);
    EXPECT_EQ(ErrorOf([&] { menus->AddActionMenu("No", nullptr, &FHost.MainMenu().NewItem(), true, true); }),
              "There is no menu item \"No\".");
    services = BorlandIDEServices;
    FHost.~THost();
    new (&FHost) THost();
  }
  const auto modules = toolsapi::CastTo<toolsapi::IOTAModuleServices>(services);
  EXPECT_EQ(ErrorOf([&] { modules->GetModuleCount(); }), "The host has ended.");
  EXPECT_EQ(ErrorOf([&] { THost second; }), "There is a host already.");
}

TEST_F(HostTest, ChoicesOfACommandLine) {
  const auto open = [&](const char* file, const char* active = "") {
    std::string name;
    const std::string error = ErrorOf([&] { name = OpenProjectForRun(FHost, file, active).FileName(); });
    return name.empty() ? error : name;
  };
  EXPECT_EQ(open("c:/All.bpg"), "C:\\App\\App.dpr");
  EXPECT_EQ(open(FTree.HostPath("All.bpg").c_str(), "tool"), "C:\\Tool\\Tool.dpr");
  EXPECT_EQ(open("C:\\All.bpg", "TOOL.DPR"), "C:\\Tool\\Tool.dpr");
  EXPECT_EQ(open("C:\\All.bpg", FTree.HostPath("Tool/Tool.dpr").c_str()), "C:\\Tool\\Tool.dpr");
  EXPECT_EQ(ErrorOf<EChoiceError>([&] { OpenProjectForRun(FHost, "C:\\All.bpg", "Toolbox"); }),
            "There is no project \"Toolbox\", only: App.dpr, Tool.dpr.");
  FTree.Write("Twin/App.dpr", "program App; uses Shared in '..\\lib\\Shared.pas';");
  FTree.Write("Twins.bpg", "PROJECTS = a b\na: App\\App.dpr\nb: Twin\\App.dpr");
  EXPECT_EQ(open("C:\\Twins.bpg", "app"), "More than one project is called \"app\"; give its path.");
  EXPECT_EQ(open("C:\\Twins.bpg", "twin\\app.DPR"), "C:\\Twin\\App.dpr");
  EXPECT_EQ(open("C:\\Twins.bpg", "Twin/App.dpr"), "C:\\Twin\\App.dpr");
  FTree.Write("App.dpr", "program App; uses Shared in 'lib\\Shared.pas';");
  FTree.Write("Twins.bpg", "PROJECTS = a b\na: App\\App.dpr\nb: App.dpr");
  EXPECT_EQ(open("C:\\Twins.bpg", "App.dpr"), "C:\\App.dpr");
  EXPECT_EQ(open("C:\\None.bpg"), "C:\\None.bpg: this group has no projects.");
  EXPECT_EQ(open("C:\\Bare.dpr"), "C:\\Bare.dpr: this project has no units.");
  EXPECT_EQ(open("Q:\\x.dpr"),
            win::CanMapDrives()
                ? "Q:\\x.dpr: this path has no drive."
                : "Cannot open file \"Q:\\x.dpr\". The system cannot find the file specified.");

  const TProject& app = OpenProjectForRun(FHost, "C:\\App\\App.dpr");
  EXPECT_EQ(SelectUnits(app, {}), (std::vector<std::string>{"Main.pas", "Shared.pas"}));
  EXPECT_EQ(SelectUnits(app, {"SHARED.pas", "shared.PAS"}), std::vector<std::string>{"Shared.pas"});
  const std::vector<std::string> gone = {"Main.pas", "Gone.pas"};
  EXPECT_EQ(ErrorOf<EChoiceError>([&] { SelectUnits(app, gone); }),
            "The project \"C:\\App\\App.dpr\" has no unit \"Gone.pas\".");
}

TEST_F(HostTest, WizardModules) {
  const std::string probe = win::ToWindowsPath(KVA_PROBE_MODULE);
  for (const bool refuses : {false, true}) {
    tests::SetVariable("KVA_PROBE", refuses ? "refuse" : "run");
    const std::string expected = refuses ? probe + ": this wizard refused to be loaded." : "none";
    EXPECT_EQ(ErrorOf([&] { FHost.LoadWizardModule(probe); }), expected);
    EXPECT_STREQ(getenv("KVA_WIZARD"), refuses ? "released" : "held");
    FHost.MainMenu().FindItem("Probe")->Click();
    EXPECT_EQ(FHost.MainMenu().FindItem("Probe")->Caption(), "a variable of its own");
    FHost.~THost();
    new (&FHost) THost();
    EXPECT_STREQ(getenv("KVA_PROBE"), "ended");
    EXPECT_STREQ(getenv("KVA_WIZARD"), "released");
  }
  FTree.Write("text.so", "no module");
  const std::string error = ErrorOf([&] { FHost.LoadWizardModule("C:\\text.so"); });
  EXPECT_TRUE(error.starts_with("C:\\text.so: this module cannot be loaded: ")) << error;
}

}  // namespace
}  // namespace host
