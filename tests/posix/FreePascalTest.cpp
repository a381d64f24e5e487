// Compares with the conversions of another run-time library, where both have the same rules: everything
// except numbers with a suffix, wide strings and the positions of objects. The layout of text differs, so
// the comparison ignores white space.
#include <cstdlib>
#include <filesystem>
#include <gtest/gtest.h>
#include <sstream>
#include <string>
#include <vector>

#include "MigWizard/passes/TextFile.h"
#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/objects/ObjectTextToBinary.h"
#include "rtl/text/SysUtils.h"
#include "tests/GeneratedTree.h"
#include "tests/RunCommand.h"

namespace {

namespace fs = std::filesystem;

// Returns `text` without white space outside of quotes.
std::string Bare(std::string_view text) {
  std::string bare;
  bool quoted = false;
  for (const char c : text) {
    if (c == '\'') quoted = !quoted;
    if (quoted || c > ' ') bare += c;
  }
  return bare;
}

// What the generated forms lack.
const std::string kRareForm = R"(inherited F: TF
  I = <item A = -128 B = 127 C = -129 D = 128 E = -32768 F = 32767 G = 32768 H = -2147483648 end
    item J = 2147483648 K = -9223372036854775808 L = <item M = 1 end item end> end item end>
  N = nil O = DM2.Q1 P = [] Q = {} R = () S = <> T = (
    'a'#9'b' '' 'O''Hara'#13#10)
  U = ')" + std::string(600, 'x') +
                              R"('
  inline G: TG
    inherited TEdit
    end
  end
end
)";

TEST(FreePascalTest, GeneratedForms) {
  const tests::TTempTree tree;
  const auto convert = [&](const std::string& kind, std::string_view input) {
    tree.Write("in", input);
    const std::string command = std::string(KVA_FPCFORMS) + " " + kind + " " + tree.HostPath("in") + " " +
                                tree.HostPath("out") + " 1 >/dev/null";
    EXPECT_EQ(std::system(command.c_str()), 0);
    return tree.Read("out");
  };
  for (uint32_t seed = 0; seed <= 20; ++seed) {
    bench::TRandom random(seed);
    const std::string form =
        seed == 0 ? kRareForm : bench::MakeFormText(random, {"Form1", size_t{2000} * seed, size_t{4} * seed});
    rtl::TTextInfo textInfo;
    const std::string binary = rtl::ObjectTextToBinary(form, {}, textInfo);
    rtl::TBinaryInfo info;
    const std::string text = rtl::ObjectBinaryToText(binary, {}, info);
    const std::string theirs = convert("text", binary);
    ASSERT_EQ(Bare(text), Bare(theirs)) << seed;
    ASSERT_TRUE(rtl::ObjectTextToBinary(text, {}, textInfo) == binary) << seed;
    ASSERT_TRUE(rtl::ObjectTextToBinary(theirs, {}, textInfo) == binary) << seed;
    ASSERT_TRUE(convert("binary", text) == binary) << seed;
    const std::string people = rtl::ObjectBinaryToText(binary, {.ForPeople = true}, info);
    ASSERT_TRUE(convert("binary", people) == binary) << seed;
  }
}

// Returns what Free Pascal's parser says about each unit: "ok", or an error.
std::vector<std::string> Parsed(const tests::TTempTree& tree, const std::vector<std::string>& units) {
  std::string list;
  for (const std::string& unit : units) {
    tree.Write("parsed/" + unit, mig::DecodeTextFile(tree.Read(unit)).Text);  // it takes no UTF-16
    list += tree.HostPath("parsed/" + unit) + "\n";
  }
  tree.Write("list", list);
  const std::string command =
      std::string(KVA_PARSEUNITS) + " <" + tree.HostPath("list") + " >" + tree.HostPath("errors");
  EXPECT_EQ(std::system(command.c_str()), 0);
  std::vector<std::string> results;
  std::istringstream lines(tree.Read("errors"));
  for (std::string line; std::getline(lines, line);) results.push_back(line);
  EXPECT_EQ(results.size(), units.size());
  return results;
}

// Returns who makes binary data of a form, and whether the data are equal.
std::string MadeBinary(const tests::TTempTree& tree, const std::string& form) {
  std::string text, ours;
  try {
    text = mig::DecodeFormFile(tree.Read(form)).Text;
    rtl::TTextInfo info;
    ours = rtl::ObjectTextToBinary(text, {}, info);
  } catch (const rtl::Exception&) {
    return "damaged";
  }
  tree.Write("in", text);
  const std::string command = std::string(KVA_FPCFORMS) + " binary " + tree.HostPath("in") + " " +
                              tree.HostPath("out") + " 1 >/dev/null 2>&1";
  if (std::system(command.c_str()) != 0) return "ours alone";
  return tree.Read("out") == ours ? "both" : "both, not equal";
}

// What it takes before a completed run, it takes after it.
TEST(FreePascalTest, TakesWhatIsCompleted) {
  const fs::path sources = KVA_SOURCE_DIR;
  struct TTree {
    fs::path From;  // empty: generated
    std::string Run;
  };
  std::vector<TTree> trees = {{sources / "examples/bde", "--mode bde src/LendDesk.dproj"},
                              {sources / "examples/ibx", "--mode ibx src/PressHouse.dproj"},
                              {{}, "--mode bde src --subfolders"},
                              {{}, "--mode ibx src --subfolders"}};
  for (const auto& entry : fs::directory_iterator(sources / "tests/golden")) {
    std::ifstream file(entry.path() / "mode");
    std::string mode;
    if (fs::exists(entry.path() / "in") && file >> mode)
      trees.push_back({entry.path() / "in", "--mode " + mode + " src --subfolders"});
  }
  size_t parsedUnits = 0, madeForms = 0;
  for (const TTree& row : trees) {
    const tests::TTempTree tree;
    if (row.From.empty()) {
      tests::WriteGeneratedTree(tree, "src", 7, row.Run.starts_with("--mode ibx"));
    } else {
      fs::copy(row.From, tree.HostPath("src"), fs::copy_options::recursive);
    }
    std::vector<std::string> units, forms;
    for (const auto& entry : fs::recursive_directory_iterator(tree.HostPath("src"))) {
      const std::string name = fs::relative(entry.path(), tree.HostPath()).string();
      const std::string extension = rtl::LowerCase(entry.path().extension().string());
      if (extension == ".pas" || extension == ".dpr") units.push_back(name);
      if (extension == ".dfm" || extension == ".nfm") forms.push_back(name);
    }
    const std::vector<std::string> before = Parsed(tree, units);
    std::vector<std::string> made;
    for (const std::string& form : forms) made.push_back(MadeBinary(tree, form));
    const std::string outcome =
        tests::RunCommand(tree, "replace -q --no-backup --no-log --keep-going --complete all " + row.Run);
    EXPECT_TRUE(outcome.starts_with("0|") || outcome.starts_with("1|")) << row.From << outcome;
    const std::vector<std::string> after = Parsed(tree, units);
    for (size_t i = 0; i < units.size(); ++i) {
      if (before[i] != "ok") continue;
      ++parsedUnits;
      EXPECT_EQ(after[i], "ok") << row.From << "\n" << tree.Read(units[i]);
    }
    for (size_t i = 0; i < forms.size(); ++i) {
      if (made[i] == "damaged") continue;
      ++madeForms;
      EXPECT_EQ(MadeBinary(tree, forms[i]), made[i]) << row.From << "\n" << tree.Read(forms[i]);
    }
  }
  EXPECT_GT(parsedUnits, 100U);
  EXPECT_GT(madeForms, 100U);
}

}  // namespace
