// The program on a console: text of all scripts, colours, questions and Ctrl-C. The console is a pseudo
// console, which Windows 10 and Wine have.
#include <algorithm>
#include <gtest/gtest.h>
#include <regex>
#include <thread>

#include "tests/TempTree.h"
#include "win/windows/WindowsErrors.h"
#include "win/windows/WindowsText.h"

namespace cli {
namespace {

constexpr DWORD kMostMilliseconds = 60'000;

class TPseudoConsole {
 public:
  explicit TPseudoConsole(short columns) {
    HANDLE ends[4] = {};
    CreatePipe(&ends[0], &ends[1], nullptr, 0);
    CreatePipe(&ends[2], &ends[3], nullptr, 0);
    const win::THandle input(ends[0]), output(ends[3]);
    FInput = win::THandle(ends[1]);
    FOutput = win::THandle(ends[2]);
    if (Create) Create({columns, 50}, input.Get(), output.Get(), 0, &FConsole);
  }
  ~TPseudoConsole() { End(); }
  TPseudoConsole(const TPseudoConsole&) = delete;
  TPseudoConsole& operator=(const TPseudoConsole&) = delete;

  bool Exists() const { return FConsole != nullptr; }
  // Ends the output. What was written before can still be read.
  void End() {
    if (FConsole) Close(FConsole);
    FConsole = nullptr;
  }
  HANDLE Input() const { return FInput.Get(); }
  HANDLE Output() const { return FOutput.Get(); }

  win::THandle Start(std::wstring line, const std::wstring& folder) const {
    constexpr DWORD_PTR kPseudoConsole = 0x20016;
    SIZE_T size = 0;
    InitializeProcThreadAttributeList(nullptr, 1, 0, &size);
    std::vector<char> list(size);
    STARTUPINFOEXW start{};
    start.StartupInfo.cb = sizeof start;
    start.StartupInfo.dwFlags = STARTF_USESTDHANDLES;
    start.lpAttributeList = reinterpret_cast<LPPROC_THREAD_ATTRIBUTE_LIST>(list.data());
    InitializeProcThreadAttributeList(start.lpAttributeList, 1, 0, &size);
    UpdateProcThreadAttribute(start.lpAttributeList, 0, kPseudoConsole, FConsole, sizeof FConsole, nullptr,
                              nullptr);
    PROCESS_INFORMATION process{};
    CreateProcessW(nullptr, line.data(), nullptr, nullptr, FALSE, EXTENDED_STARTUPINFO_PRESENT, nullptr,
                   folder.c_str(), &start.StartupInfo, &process);
    DeleteProcThreadAttributeList(start.lpAttributeList);
    const win::THandle thread(process.hThread);
    return win::THandle(process.hProcess);
  }

 private:
  template <class TFunction>
  static TFunction* Find(const char* name) {
    return reinterpret_cast<TFunction*>(
        reinterpret_cast<void*>(GetProcAddress(GetModuleHandleW(L"kernel32.dll"), name)));
  }
  static inline const auto Create =
      Find<HRESULT WINAPI(COORD, HANDLE, HANDLE, DWORD, void**)>("CreatePseudoConsole");
  static inline const auto Close = Find<void WINAPI(void*)>("ClosePseudoConsole");

  void* FConsole = nullptr;
  win::THandle FInput, FOutput;
};

// Returns the output of a console without what moves the cursor; a line keeps its colours.
std::string Shown(const std::string& output) {
  static const std::regex moves("\x1B\\[[0-9;?]*[A-HJKhlsu]|\r|\x1B\\[m(?=\x1B\\[H)|\x1B\\][^\x07]*\x07");
  return std::regex_replace(output, moves, "");
}

class WindowsConsoleTest : public testing::Test {
 protected:
  void SetUp() override {
    if (!TPseudoConsole(80).Exists()) GTEST_SKIP() << "this version of Windows has no pseudo console";
    FTree.Write("src/A.pas", "unit A;\r\nvar Q: TQuery;\r\n");
    FTree.Write("src/B.pas", "unit B;\r\nvar T: TTable;\r\n");
  }

  // Runs the program. Types the next of `answers` when it asks, or presses Ctrl-C for "\x03", which Wine does
  // not take from a terminal. Returns "STATUS|output", with <dir> for the tree.
  std::string Run(const std::string& arguments, std::vector<std::string> answers = {}, short columns = 200) {
    TPseudoConsole console(columns);
    const std::wstring folder = win::ToWideOrReplaced(FTree.HostPath());
    const std::string event = "kvatests." + std::to_string(GetCurrentProcessId());
    const win::THandle press(CreateEventA(nullptr, FALSE, FALSE, event.c_str()));
    const win::THandle process =
        console.Start(win::ToWideOrReplaced(KVA_BINARY_DIR "/cli/onconsole.exe " + event +
                                            " " KVA_BINARY_DIR "/cli/kvamigrate.exe " + arguments),
                      folder);
    std::string output;
    std::thread reader([&] {
      char buffer[4096];
      DWORD count = 0;
      auto answer = answers.begin();
      while (ReadFile(console.Output(), buffer, sizeof buffer, &count, nullptr) && count > 0) {
        output.append(buffer, count);
        if (!Shown(output).ends_with("]?") && !Shown(output).ends_with("]? ")) continue;
        if (answer == answers.end()) continue;
        DWORD done = 0;
        if (*answer == "\x03") {
          SetEvent(press.Get());
        } else {
          WriteFile(console.Input(), answer->data(), static_cast<DWORD>(answer->size()), &done, nullptr);
        }
        output += "<" + std::to_string(answer - answers.begin()) + ">";
        ++answer;
      }
    });
    if (WaitForSingleObject(process.Get(), kMostMilliseconds) != WAIT_OBJECT_0)
      TerminateProcess(process.Get(), 999);
    DWORD status = 0;
    GetExitCodeProcess(process.Get(), &status);
    console.End();
    reader.join();
    std::string text = std::to_string(status) + "|" + Shown(output);
    for (size_t at; (at = text.find(FTree.WindowsPath())) != std::string::npos;)
      text.replace(at, FTree.WindowsPath().size(), "<dir>");
    return text;
  }

  tests::TTempTree FTree;
};

TEST_F(WindowsConsoleTest, TextOfAllScripts) {
  EXPECT_EQ(
      Run("form to-text Größe表示Ж.dfm"),
      "3|kvamigrate: Cannot open file \"Größe表示Ж.dfm\". The system cannot find the file specified.\n");
}

TEST_F(WindowsConsoleTest, APatchInColours) {
  EXPECT_EQ(Run("replace --diff -q --mode bde --exclude A.* src"),
            "0|\x1B[1mdiff --git a/B.pas b/B.pas\x1B[m\n\x1B[1m--- a/B.pas\x1B[m\n\x1B[1m+++ b/B.pas\x1B[m\n"
            "\x1B[36m@@ -1,2 +1,2 @@\x1B[m\n unit B;\n\x1B[31m-var T: TTable;\x1B[m\n\x1B[32m+var T: "
            "TKVATable;\x1B[m\n");
}

TEST_F(WindowsConsoleTest, ProgressIsAsWideAsTheConsole) {
  const std::string shown = Run("replace --dry-run --mode bde src", {}, 30);
  const std::regex line(R"(\[\d+/\d+\] [^\x1B\n]*\\src\\[AB]\.pas)");
  const std::sregex_iterator first(shown.begin(), shown.end(), line), none;
  EXPECT_NE(first, none) << shown;
  for (auto it = first; it != none; ++it) EXPECT_EQ(it->length(), 29) << shown;
}

TEST_F(WindowsConsoleTest, AskingUnitByUnit) {
  const std::string run = "replace -i -q --color never --no-log --no-backup --mode bde src";
  const std::string a =
      "diff --git a/A.pas b/A.pas\n--- a/A.pas\n+++ b/A.pas\n@@ -1,2 +1,2 @@\n unit A;\n-var Q: TQuery;\n"
      "+var Q: TKVAQuery;\n(1/2) Replace A.pas [y,n,a,d,q,?]?<0>";
  const std::string b =
      "diff --git a/B.pas b/B.pas\n--- a/B.pas\n+++ b/B.pas\n@@ -1,2 +1,2 @@\n unit B;\n-var T: TTable;\n"
      "+var T: TKVATable;\n(2/2) Replace B.pas [y,n,a,d,q,?]?<1>";
  EXPECT_EQ(Run(run, {"y\r", "\x03"}),
            "130|" + a + "y\n" + b + "\nkvamigrate: Stopped: no file was replaced.\n");
  EXPECT_EQ(FTree.Read("src/A.pas"), "unit A;\r\nvar Q: TQuery;\r\n");
  EXPECT_EQ(Run(run, {"n\r", "y\r"}), "0|" + a + "n\n" + b + "y\n");
  EXPECT_EQ(FTree.Read("src/A.pas"), "unit A;\r\nvar Q: TQuery;\r\n");
  EXPECT_EQ(FTree.Read("src/B.pas"), "unit B;\r\nvar T: TKVATable;\r\n");
}

}  // namespace
}  // namespace cli
