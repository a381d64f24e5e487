// Line diffs, patches and alignment.
#include <algorithm>
#include <array>
#include <cstdlib>
#include <gtest/gtest.h>
#include <map>
#include <string>
#include <vector>

#include "diff/GitPatch.h"
#include "diff/LineAlignment.h"
#include "diff/LineDiff.h"
#include "diff/Sha1.h"
#include "tests/TempTree.h"

namespace {

using diff::TDiffLine;
using diff::TIgnore;
using TKind = diff::TDiffLine::TKind;

// Random numbers that are the same on every machine.
class TRandom {
 public:
  uint32_t Below(uint32_t limit) {
    FSeed = FSeed * 1664525 + 1013904223;
    return (FSeed >> 16) % limit;
  }

 private:
  uint32_t FSeed = 1;
};

size_t LongestCommon(const std::string& left, const std::string& right) {
  std::vector<std::vector<size_t>> common(left.size() + 1, std::vector<size_t>(right.size() + 1));
  for (size_t i = left.size(); i-- > 0;) {
    for (size_t j = right.size(); j-- > 0;) {
      common[i][j] =
          left[i] == right[j] ? common[i + 1][j + 1] + 1 : std::max(common[i + 1][j], common[i][j + 1]);
    }
  }
  return common[0][0];
}

// A line is a letter. The script converts one text to the other, and is as short as the one found by a full
// table.
TEST(LineDiffTest, IsAShortestScript) {
  TRandom random;
  for (int round = 0; round < 2000; ++round) {
    std::array<std::string, 2> sides, texts, found;
    for (size_t side = 0; side < 2; ++side) {
      for (uint32_t i = random.Below(12); i > 0; --i) {
        sides[side] += static_cast<char>('a' + random.Below(4) + side * random.Below(2));
        texts[side] += sides[side].back() + std::string(side == 0 ? "\n" : "\r\n");
      }
    }
    size_t same = 0;
    int oldLine = 0;
    int newLine = 0;
    for (const TDiffLine& line : diff::DiffLines(texts[0], texts[1], TIgnore::LineEnds)) {
      found[0] += line.Old.substr(0, 1);
      found[1] += line.New.substr(0, 1);
      ASSERT_EQ(line.OldLine, line.Kind == TKind::Added ? 0 : ++oldLine);
      ASSERT_EQ(line.NewLine, line.Kind == TKind::Removed ? 0 : ++newLine);
      same += line.Kind == TKind::Same;
    }
    ASSERT_EQ(found, sides);
    ASSERT_EQ(same, LongestCommon(sides[0], sides[1])) << sides[0] << "|" << sides[1];
  }
}

TEST(LineDiffTest, IgnoresWhatItIsTold) {
  const std::string before = "object A\r\n  Left = 1\n\tTop=2";
  const std::string after = "object A\n    Left  =  1\nTop = 2\n";
  const auto kinds = [&](TIgnore ignore) {
    std::string marks;
    for (const TDiffLine& line : diff::DiffLines(before, after, ignore))
      marks += line.Kind == TKind::Same ? ' ' : line.Kind == TKind::Removed ? '-' : '+';
    return marks;
  };
  EXPECT_EQ(kinds(TIgnore::Nothing), "---+++");
  EXPECT_EQ(kinds(TIgnore::LineEnds), " --++");
  EXPECT_EQ(kinds(TIgnore::Space), "   ");
}

struct TPatchCase {
  const char* What;
  std::string Path, Before, After, Patch;
};

TEST(GitPatchTest, WholePatches) {
  const TPatchCase cases[] = {
      {"nothing changed", "A.pas", "x\n", "x\n", ""},
      {"one line of a file, CR LF kept", "A.pas", "a\r\nb\r\nc\r\nd\r\ne\r\n", "a\r\nb\r\nc\r\nd\r\nE\r\n",
       "diff --git a/A.pas b/A.pas\n--- a/A.pas\n+++ b/A.pas\n@@ -2,4 +2,4 @@\n b\r\n c\r\n "
       "d\r\n-e\r\n+E\r\n"},
      {"no end of the last line", "A.pas", "a", "a\n",
       "diff --git a/A.pas b/A.pas\n--- a/A.pas\n+++ b/A.pas\n"
       "@@ -1 +1 @@\n-a\n\\ No newline at end of file\n+a\n"},
      {"an empty file", "A.pas", "", "a\n",
       "diff --git a/A.pas b/A.pas\n--- a/A.pas\n+++ b/A.pas\n@@ -0,0 +1 @@\n+a\n"},
      {"a name with blanks", "my forms/A b.dfm", "a\n", "b\n",
       "diff --git a/my forms/A b.dfm b/my forms/A b.dfm\n--- a/my forms/A b.dfm\t\n+++ b/my forms/A "
       "b.dfm\t\n"
       "@@ -1 +1 @@\n-a\n+b\n"},
      {"a name with a quote and a tab", "a\"\t\x01.pas", "a\n", "b\n",
       "diff --git \"a/a\\\"\\t\\001.pas\" \"b/a\\\"\\t\\001.pas\"\n--- \"a/a\\\"\\t\\001.pas\"\n"
       "+++ \"b/a\\\"\\t\\001.pas\"\n@@ -1 +1 @@\n-a\n+b\n"},
      {"six lines between two changes: one hunk; seven: two", "A",
       "1\n2\n3\n4\n5\n6\n7\n8\na\nb\nc\nd\ne\nf\ng\nh\n", "x\n2\n3\n4\n5\n6\n7\nx\na\nb\nc\nd\ne\nf\ng\nx\n",
       "diff --git a/A b/A\n--- a/A\n+++ b/A\n"
       "@@ -1,11 +1,11 @@\n-1\n+x\n 2\n 3\n 4\n 5\n 6\n 7\n-8\n+x\n a\n b\n c\n"
       "@@ -13,4 +13,4 @@\n e\n f\n g\n-h\n+x\n"},
  };
  for (const TPatchCase& row : cases) {
    EXPECT_EQ(diff::GitPatch({row.Path, row.Before, row.After, {}, {}}), row.Patch) << row.What;
  }
  EXPECT_EQ(diff::GitPatch({"A.dfm", "a\n b\n", "c\n  b\n", {}, {}}, TIgnore::Space),
            "# For reading only: this patch leaves white space out.\n"
            "diff --git a/A.dfm b/A.dfm\n--- a/A.dfm\n+++ b/A.dfm\n@@ -1,2 +1,2 @@\n-a\n+c\n   b\n");
  EXPECT_EQ(diff::GitPatch({"A.dfm", "a\n", " a\n", {}, {}}, TIgnore::Space), "");
  EXPECT_EQ(
      diff::GitPatch({"F.dfm", std::string("a\0", 2), std::string("b\0", 2), "a\n", "b\n"}, TIgnore::Space),
      "# For reading only: this patch leaves white space out.\n# --- a/F.dfm\n# +++ b/F.dfm\n# @@ -1 +1 "
      "@@\n# -a\n# +b\n");
}

TEST(GitPatchTest, Sha1) {
  // The examples of FIPS 180, and a length at which the padding needs a block of its own.
  EXPECT_EQ(diff::Sha1Hex("abc"), "a9993e364706816aba3e25717850c26c9cd0d89d");
  EXPECT_EQ(diff::Sha1Hex("abcdbcdecdefdefgefghfghighijhijkijkljklmklmnlmnomnopnopq"),
            "84983e441c3bd26ebaae4aa1f95129e5e54670f1");
  EXPECT_EQ(diff::Sha1Hex(std::string(1'000'000, 'a')), "34aa973cd4c4daa4f61eeb2bdbad27316534016f");
}

// `git apply` converts files with all mixes of line ends, marks and NULs to exactly the new ones, and back.
TEST(GitPatchTest, AppliedItGivesTheNewBytes) {
  if (!tests::HasGit()) GTEST_SKIP() << "there is no git";
  const tests::TTempTree tree;
  const std::vector<std::string> pieces = {
      "a\n",     "b\r\n",         "c\r\r\n",        "\r", "d", "\n", "\xEF\xBB\xBFuses X;\r\n", "\xE9\xFC\n",
      "--- x\n", "@@ -1 +1 @@\n", "\\ No newline\n"};
  const std::vector<std::string> names = {"Main.pas", "sub dir/A b.dfm", "q\"uote\t.pas", "Größe/Ж.dfm",
                                          "-x.pas"};
  TRandom random;
  std::map<std::string, std::array<std::string, 2>> files;
  std::string patch;
  for (uint32_t i = 0; i < 120; ++i) {
    std::array<std::string, 2> sides;
    for (uint32_t count = random.Below(30); count > 0; --count) {
      const std::string& piece = pieces[random.Below(static_cast<uint32_t>(pieces.size()))];
      if (random.Below(5) != 0) sides[0] += piece;
      if (random.Below(5) != 0) sides[1] += piece;
    }
    if (i % 7 == 0) sides[1] += std::string("\0\x01", 2);
    if (i % 14 == 0) sides[0] += std::string(70, '\0');
    if (sides[0].empty() || sides[1].empty()) continue;  // such a patch would create or delete the file
    const std::string name = std::to_string(i) + "/" + names[i % names.size()];
    files[name] = sides;
    tree.Write(name, sides[0]);
    patch += diff::GitPatch({name, sides[0], sides[1], "readable\n", "-\n"});
  }
  tree.Write("the.patch", patch);
  const std::string apply =
      "cd '" + tree.HostPath() + "' && git -c core.autocrlf=false apply --whitespace=nowarn ";
  ASSERT_EQ(std::system((apply + "the.patch").c_str()), 0);
  for (const auto& [name, sides] : files) EXPECT_EQ(tree.Read(name), sides[1]) << name;
  ASSERT_EQ(std::system((apply + "-R the.patch").c_str()), 0);
  for (const auto& [name, sides] : files) EXPECT_EQ(tree.Read(name), sides[0]) << name;
}

// Returns a side-by-side view as text: one row per line, "old|new".
std::string Rows(const std::string& before, const std::string& after) {
  const std::vector<TDiffLine> lines = diff::DiffLines(before, after);
  std::string result;
  for (const diff::TDiffRow& row : diff::AlignLines(lines)) {
    const auto text = [](std::string_view line) { return std::string(line.substr(0, line.find('\n'))); };
    result += (row.Old ? text(row.Old->Old) : "") + "|" + (row.New ? text(row.New->New) : "") + "\n";
  }
  return result;
}

TEST(LineAlignmentTest, PutsLinesThatAreAlikeSideBySide) {
  EXPECT_EQ(Rows("object Q: TQuery\n  DatabaseName = 'X'\n  Left = 1\nend\n",
                 "  object Q: TKVAQuery\n  Connection = DM.X\n    Left = 1\n    AutoCommit = True\nend\n"),
            "object Q: TQuery|  object Q: TKVAQuery\n"
            "  DatabaseName = 'X'|\n"
            "|  Connection = DM.X\n"
            "  Left = 1|    Left = 1\n"
            "|    AutoCommit = True\n"
            "end|end\n");
}

// Runs that are too long for the table of pairs are matched ignoring white space.
TEST(LineAlignmentTest, AlignsLargeBlocks) {
  std::string before, after, rows;
  for (int i = 0; i < 3000; ++i) {
    const std::string number = std::to_string(i);
    before += "  Left = " + number + "\n";
    rows += "  Left = " + number + "|    Left = " + number + "\n";
    after += "    Left = " + number + "\n";
    if (i % 1000 == 10) {
      after += "AutoCommit = True\n";
      rows += "|AutoCommit = True\n";
    }
  }
  EXPECT_EQ(Rows(before, after), rows);
}

TEST(LineAlignmentTest, Words) {
  const diff::TWordDiff words = diff::DiffWords("  Query1: TQuery;\r\n", "  Query1: TKVAQuery; {x}\r\n");
  EXPECT_EQ(words.Old, (std::vector<diff::TSpan>{{10, 6}}));
  EXPECT_EQ(words.New, (std::vector<diff::TSpan>{{10, 9}, {20, 4}}));
}

}  // namespace
