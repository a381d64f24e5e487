// Text on a terminal, signals, and closed streams.
#include <csignal>
#include <cstdlib>
#include <gtest/gtest.h>
#include <pty.h>
#include <sys/wait.h>
#include <unistd.h>

#include "cli/Console.h"
#include "cli/Interrupt.h"
#include "tests/TempTree.h"
#include "win/Diagnostics.h"

namespace cli {
namespace {

TEST(ConsoleTest, NothingThatATerminalActsOnPassesThrough) {
  const std::pair<const char*, const char*> rows[] = {
      {"Main.pas", "Main.pas"},
      {"\x1B[2J", "\\x1B[2J"},
      {"a\r\nb\tc\x7F", "a\\x0D\\x0Ab\\x09c\\x7F"},
      {"\xC2\x9B"
       "2J",
       "\\xC2\\x9B2J"},  // the eight-bit control sequence introducer
      {"\x9B"
       "2J",
       "\\x9B2J"},                                          // the same in an eight-bit code page
      {"\xE2\x80\xAEsap.niaM", "\\xE2\\x80\\xAEsap.niaM"},  // right to left
      {"\xE2\x81\xA6x", "\\xE2\\x81\\xA6x"},
      {"\xE2\x80\xA8x", "\\xE2\\x80\\xA8x"},  // line separator
      {"\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80", "\xC3\xA4\xE6\x97\xA5\xF0\x9F\x98\x80"},
      {"\xC3\xA4\xE6\x97", "\xC3\xA4\\xE6\\x97"},
      {"\xC0\xAF\xF8", "\\xC0\\xAF\\xF8"},
  };
  for (const auto& [text, printed] : rows) EXPECT_EQ(win::PrintableName(text), printed);
}

TEST(ConsoleTest, WhatIsIgnoredStaysIgnored) {
  std::signal(SIGHUP, SIG_IGN);
  CatchInterrupts();
  raise(SIGHUP);
  EXPECT_EQ(PendingInterrupt(), 0);
  raise(SIGTERM);
  EXPECT_EQ(PendingInterrupt(), SIGTERM);
  EXPECT_THROW(StopIfInterrupted("Stopped."), rtl::EAbort);
}

// Runs `action` in another process, after `prepare` has set up standard output. Returns its exit status.
template <typename TPrepare, typename TAction>
int InChild(TPrepare prepare, TAction action) {
  const pid_t child = fork();
  if (child == 0) {
    prepare();
    PrepareConsole();
    _exit(action());
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : -WTERMSIG(status);
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

// Runs the program on a terminal, and returns the terminal's output.
std::string OnTerminal(const tests::TTempTree& tree, const std::string& environment,
                       const std::string& arguments) {
  int terminal = -1;
  const pid_t child = forkpty(&terminal, nullptr, nullptr, nullptr);
  if (child == 0) {
    const std::string command = "cd " + tree.HostPath() + " && TMPDIR=. " + environment + " " +
                                KVA_BINARY_DIR + "/cli/kvamigrate " + arguments;
    execl("/bin/sh", "sh", "-c", command.c_str(), nullptr);
    _exit(127);
  }
  std::string shown;
  char buffer[4096];
  for (ssize_t count = 0; (count = read(terminal, buffer, sizeof buffer)) > 0;)
    shown.append(buffer, static_cast<size_t>(count));
  close(terminal);
  waitpid(child, nullptr, 0);
  return shown;
}

TEST(ConsoleTest, ProgressOnATerminal) {
  const tests::TTempTree tree;
  tree.MakeFolder("src");  // empty, so the line is shown once
  const std::string run = "replace --no-log --no-backup --mode bde src";
  const std::string outcome =
      "Files:     0 read, 0 changed\r\n"
      "There is nothing to convert. The folder has no units of its own. Does it need --subfolders?\r\n"
      "Replace procedure was performed sucessfully.\r\n";
  EXPECT_EQ(OnTerminal(tree, "TERM=xterm", run), "\r[0/0] \x1B[K\r\x1B[K" + outcome);
  for (const char* const plain : {"TERM=dumb", "NO_COLOR=1 TERM=xterm"})
    EXPECT_EQ(OnTerminal(tree, plain, run), outcome) << plain;
  EXPECT_EQ(OnTerminal(tree, "TERM=xterm", run + " -q"), "");
}

}  // namespace
}  // namespace cli
