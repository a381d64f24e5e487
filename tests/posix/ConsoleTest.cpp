// Text on a terminal, signals, and closed streams.
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <gtest/gtest.h>
#include <poll.h>
#include <pty.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <termios.h>
#include <unistd.h>
#include <utmp.h>

#include "cli/Console.h"
#include "cli/Interrupt.h"
#include "cli/StandardStreams.h"
#include "tests/TempTree.h"
#include "win/Diagnostics.h"

namespace cli {
namespace {

// Runs `action` in another process, after `prepare` has set up standard output. Returns its exit status.
template <typename TPrepare, typename TAction>
int InChild(TPrepare prepare, TAction action) {
  const pid_t child = fork();
  if (child == 0) {
    prepare();
    PrepareStreams();
    _exit(action());
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
}

TEST(ConsoleTest, AnInterruptIsRecordedWithoutAFileToSpare) {
  const auto useUpFiles = [] {
    const rlimit none{};
    EXPECT_EQ(setrlimit(RLIMIT_NOFILE, &none), 0);
  };
  const auto interrupt = [] {
    CatchInterrupts();
    raise(SIGTERM);
    return PendingInterrupt();
  };
  EXPECT_EQ(InChild(useUpFiles, interrupt), SIGTERM);
}

TEST(ConsoleTest, WhatIsIgnoredStaysIgnored) {
  const auto interrupt = [] {
    CatchInterrupts();
    raise(SIGHUP);
    if (PendingInterrupt() != 0) return 0;
    raise(SIGTERM);
    try {
      StopIfInterrupted("Stopped.");
    } catch (const rtl::EAbort&) {
      return PendingInterrupt();
    }
    return 0;
  };
  EXPECT_EQ(InChild([] { std::signal(SIGHUP, SIG_IGN); }, interrupt), SIGTERM);
}

TEST(ConsoleTest, AnInterruptBeforeTheWaitingIsNotLost) {
  const auto await = [] {
    alarm(300);  // ends a process that waits for ever
    CatchInterrupts();
    raise(SIGINT);
    char byte = 0;
    return static_cast<int>(ReadInput(byte));
  };
  const auto openInput = [] {
    int ends[2];
    ASSERT_EQ(pipe(ends), 0);
    dup2(ends[0], STDIN_FILENO);
  };
  EXPECT_EQ(InChild(openInput, await), static_cast<int>(TInput::Interrupted));
}

int WriteLine() {
  try {
    PrintLine("text");
    return 0;
  } catch (const EOutput& error) {
    return error.IsBrokenPipe() ? 1 : 2;
  }
}

TEST(ConsoleTest, AStandardOutputThatCannotBeWritten) {
  EXPECT_EQ(InChild(
                [] {
                  int ends[2];
                  ASSERT_EQ(pipe(ends), 0);
                  dup2(ends[1], STDOUT_FILENO);
                  close(ends[0]);
                },
                WriteLine),
            1);
  EXPECT_EQ(InChild([] { close(STDOUT_FILENO); }, WriteLine), 2);
  // No file that is opened later gets the number of a closed stream.
  EXPECT_EQ(InChild(
                [] {
                  close(STDIN_FILENO);
                  close(STDERR_FILENO);
                },
                [] { return dup(STDOUT_FILENO) > STDERR_FILENO ? 0 : 1; }),
            0);
}

TEST(ConsoleTest, AFileBeyondTheLimitIsAnError) {
  const tests::TTempTree tree;
  tree.Write("a.dfm", "object T end");
  const std::string command = "cd " + tree.HostPath() +
                              " && (ulimit -f 0; TMPDIR=. LLVM_PROFILE_FILE=/dev/null " + KVA_BINARY_DIR +
                              "/cli/kvamigrate form to-binary a.dfm -o b.dfm; echo $?) 2>&1 | cat >out.txt";
  EXPECT_EQ(std::system(command.c_str()), 0);
  EXPECT_EQ(tree.Read("out.txt"), "kvamigrate: Cannot make a temporary copy of \"" +
                                      tree.WindowsPath("a.dfm") +
                                      "\". There is not enough space on the disk.\n3\n");
  EXPECT_FALSE(tree.Exists("b.dfm"));
}

// Becomes the program, with `terminal` as its standard streams and controlling terminal.
[[noreturn]] void RunOn(int terminal, const std::string& command) {
  termios settings{};
  tcgetattr(terminal, &settings);
  settings.c_lflag &= ~static_cast<tcflag_t>(ECHO);
  tcsetattr(terminal, TCSANOW, &settings);
  std::signal(SIGINT, SIG_DFL);  // a job in the background of a script inherits that it is ignored
  if (login_tty(terminal) == 0) execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
  _exit(127);
}

// Runs the program on a terminal. Types the next of `answers` whenever it asks; one that begins with "!" is a
// command for the shell, to run before that. After the last answer the input ends. Returns the terminal's
// output, with "\n" as line ends and <dir> in place of the tree's path.
std::string OnTerminal(const tests::TTempTree& tree, const std::string& environment,
                       const std::string& arguments, std::vector<std::string> answers = {}) {
  // The program's end of the terminal stays open here, too: closing the last one can drop unread output.
  int terminal = -1, programsEnd = -1;
  EXPECT_EQ(openpty(&terminal, &programsEnd, nullptr, nullptr, nullptr), 0);
  fcntl(terminal, F_SETFL, O_NONBLOCK);
  int ended[2];  // a pipe that hangs up when the program and its pager have ended
  EXPECT_EQ(pipe(ended), 0);
  const pid_t child = fork();
  if (child == 0)
    RunOn(programsEnd, "cd " + tree.HostPath() + " && TMPDIR=. " + environment + " exec " + KVA_BINARY_DIR +
                           "/cli/kvamigrate " + arguments);
  close(ended[1]);
  std::string shown;
  char buffer[4096];
  auto answer = answers.begin();
  for (bool hasEnded = false; !hasEnded;) {
    pollfd waited[] = {{terminal, POLLIN, 0}, {ended[0], POLLIN, 0}};
    poll(waited, 2, -1);
    hasEnded = waited[1].revents != 0;
    for (ssize_t count = 0; (count = read(terminal, buffer, sizeof buffer)) > 0;)
      shown.append(buffer, static_cast<size_t>(count));
    if (hasEnded || waited[0].revents == 0 || !shown.ends_with("]? ")) continue;
    if (answer != answers.end() && answer->starts_with('!')) {
      EXPECT_EQ(std::system(("cd " + tree.HostPath() + " && " + answer++->substr(1)).c_str()), 0);
    }
    const std::string typed = answer != answers.end() ? *answer++ : "\x04";
    EXPECT_EQ(write(terminal, typed.data(), typed.size()), static_cast<ssize_t>(typed.size()));
  }
  for (const int file : {ended[0], terminal, programsEnd}) close(file);
  waitpid(child, nullptr, 0);
  std::erase(shown, '\r');
  for (const std::string& path : {tree.WindowsPath(), tree.HostPath()})
    for (size_t at; (at = shown.find(path)) != std::string::npos;) shown.replace(at, path.size(), "<dir>");
  return shown;
}

TEST(ConsoleTest, ProgressOnATerminal) {
  const tests::TTempTree tree;
  tree.MakeFolder("src");  // empty, so the line is shown once
  const std::string run = "replace --no-log --no-backup --mode bde src";
  const std::string outcome =
      "Files:     0 read, 0 changed\n"
      "There is nothing to convert. The folder has no units of its own. Does it need --subfolders?\n"
      "Replace procedure was performed sucessfully.\n";
  EXPECT_EQ(OnTerminal(tree, "TERM=xterm", run), "[0/0] \x1B[K\x1B[K" + outcome);
  for (const char* const plain : {"TERM=dumb", "NO_COLOR=1 TERM=xterm"})
    EXPECT_EQ(OnTerminal(tree, plain, run), outcome) << plain;
  EXPECT_EQ(OnTerminal(tree, "TERM=xterm", run + " -q"), "");
}

// Two units, one with a form, and one that does not change.
void WriteUnits(const tests::TTempTree& tree) {
  tree.Write("src/A.pas", "unit A;\r\nvar Q: TQuery;\r\n{$R *.dfm}\r\n");
  tree.Write("src/A.dfm", "object A: TForm\r\n  object Q: TQuery\r\n  end\r\nend\r\n");
  tree.Write("src/B.pas", "unit B;\r\nvar T: TTable;\r\n");
  tree.Write("src/C.pas", "unit C;\r\n");
}

constexpr char kPatchA[] = R"(diff --git a/A.pas b/A.pas
--- a/A.pas
+++ b/A.pas
@@ -1,3 +1,3 @@
 unit A;
-var Q: TQuery;
+var Q: TKVAQuery;
 {$R *.dfm}
diff --git a/A.dfm b/A.dfm
--- a/A.dfm
+++ b/A.dfm
@@ -1,4 +1,5 @@
 object A: TForm
-  object Q: TQuery
+    object Q: TKVAQuery
+    AutoCommit = True
   end
 end
(1/2) Replace A.pas, A.dfm [y,n,a,d,q,?]? )";
constexpr char kPatchB[] = R"(diff --git a/B.pas b/B.pas
--- a/B.pas
+++ b/B.pas
@@ -1,2 +1,2 @@
 unit B;
-var T: TTable;
+var T: TKVATable;
)";
constexpr char kAskB[] = "(2/2) Replace B.pas [y,n,a,d,q,?]? ";

TEST(ConsoleTest, APatchOnATerminal) {
  const tests::TTempTree tree;
  WriteUnits(tree);
  const std::string coloured =
      "\x1B[1mdiff --git a/B.pas b/B.pas\x1B[m\n\x1B[1m--- a/B.pas\x1B[m\n\x1B[1m+++ b/B.pas\x1B[m\n"
      "\x1B[36m@@ -1,2 +1,2 @@\x1B[m\n unit B;\n\x1B[31m-var T: TTable;\x1B[m\n"
      "\x1B[32m+var T: TKVATable;\x1B[m\n";
  const struct {
    const char* Environment;
    const char* Colour;
    std::string Shown;
  } rows[] = {
      {"TERM=xterm PAGER='cat; echo end'", "auto", coloured + "end\n"},
      {"TERM=xterm PAGER='cat; echo end' NO_COLOR=1", "auto", std::string(kPatchB) + "end\n"},
      {"TERM=dumb PAGER=false", "auto", kPatchB},
      {"TERM=xterm PAGER=", "auto", coloured},
      {"TERM=xterm PAGER='nosuch 2>/dev/null'", "auto", coloured},
      {"TERM=dumb", "always", coloured},
  };
  const char* const summary =
      "Files:     2 read, 1 to change\nLeaves:    no-new-units 1\nNext:      1 error, 0 warnings to look "
      "at\n";
  for (const auto& row : rows)
    EXPECT_EQ(OnTerminal(tree, row.Environment,
                         std::string("replace --diff --mode bde --exclude 'A.*' src --color ") + row.Colour),
              row.Shown + summary)
        << row.Environment;
}

TEST(ConsoleTest, AskingUnitByUnit) {
  const std::string a = kPatchA, b = std::string(kPatchB) + kAskB;
  const std::string summary =
      "Files:     4 read, 2 changed\nObjects:   1 converted: TQuery 1\nLeft:      no-new-units 1\n           "
      "deselected 1\n"
      "Backups:   <dir>/src/RBackup\nNext:      1 error, 0 warnings to look at: run again with --report "
      "FILE.html, or \"kvamigrate check\"\nReplace procedure was performed sucessfully.\n";
  const std::string help =
      "y - replace this unit and its forms\nn - leave them as they are\n"
      "a - replace them, and all that follow\nd - leave them, and all that follow\n"
      "q - quit asking: the same as d\n? - show this help\n"
      "Nothing is replaced before the last answer. Ctrl-C stops, and nothing is replaced at all.\n";
  const struct {
    const char* Arguments;
    std::vector<std::string> Answers;
    std::string Shown;
    const char* Backups;
  } rows[] = {
      {"",
       {"?\n", "y\n", "n\n"},
       a + help + "(1/2) Replace A.pas, A.dfm [y,n,a,d,q,?]? " + b + summary,
       "A.~DFM A.~pas RExpert.reu "},
      {"-q", {"n\n", "a\n"}, a + b, "B.~pas RExpert.reu "},
      {"-q", {"a\n"}, a, "A.~DFM A.~pas B.~pas RExpert.reu "},
      {"-q", {"y\n", "d\n"}, a + b, "A.~DFM A.~pas RExpert.reu "},
      {"-q", {"y\n"}, a + b, "A.~DFM A.~pas RExpert.reu "},  // the end of the input
      {"", {"q\n"}, a + "Files:     4 read, 0 changed\nLeft:      deselected 3\nNothing was replaced.\n", ""},
      {"-q", {"y\n", "\x03"}, a + b + "\nkvamigrate: Stopped: no file was replaced.\n", ""},
      {"-q --no-backup",
       {"y\n", "!echo >>src/C.pas", "y\n"},
       a + b + "kvamigrate: \"<dir>\\src\\C.pas\" was changed after the preview. No file was replaced.\n",
       ""},
  };
  for (const auto& row : rows) {
    const tests::TTempTree tree;
    WriteUnits(tree);
    EXPECT_EQ(OnTerminal(tree, "TERM=dumb",
                         std::string("replace -i --no-log --mode bde src ") + row.Arguments, row.Answers),
              row.Shown)
        << row.Arguments;
    std::string backups;
    if (tree.Exists("src/RBackup"))
      for (const std::string& name : tree.Names("src/RBackup")) backups += name + " ";
    EXPECT_EQ(backups, row.Backups) << row.Arguments;
  }
}

}  // namespace
}  // namespace cli
