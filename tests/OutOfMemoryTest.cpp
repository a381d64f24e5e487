// Parsing and printing when memory runs out: each allocation fails once. std::bad_alloc propagates, and the
// same parser works afterwards. A separate executable, because it replaces the global operator new.
#include <cstdlib>
#include <gtest/gtest.h>
#include <new>

#include "MigWizard/engine/PasParser.h"
#include "target/KVAFormParser.h"

namespace {

long AllocationsLeft = -1;  // until one fails; negative: none fails

void* Allocate(size_t size) {
  if (AllocationsLeft >= 0 && AllocationsLeft-- == 0) throw std::bad_alloc();
  void* memory = std::malloc(size > 0 ? size : 1);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}

}  // namespace

void* operator new(size_t size) {
  return Allocate(size);
}
void* operator new[](size_t size) {
  return Allocate(size);
}
// Not counted: the library asks for such memory to sort faster, and works without it.
void* operator new(size_t size, const std::nothrow_t&) noexcept {
  return std::malloc(size > 0 ? size : 1);
}
void operator delete(void* memory) noexcept {
  std::free(memory);
}
void operator delete[](void* memory) noexcept {
  std::free(memory);
}
void operator delete(void* memory, size_t) noexcept {
  std::free(memory);
}
void operator delete[](void* memory, size_t) noexcept {
  std::free(memory);
}

namespace mig {
namespace {

class TParser : public target::TKVAFormParser {
 public:
  TParser() : TKVAFormParser(ParseStateClass<TFormParseState>()) { SetRereadAllowance(0); }
};

std::string Text(int levels) {
  std::string nested = "A = 1";
  for (int i = 0; i < levels; ++i) nested = "object N: T " + nested + " end";
  return R"(object Database1: TDatabase
  LoginPrompt = False
  Params.Strings = (
    'USER NAME=a long user name of some kind'
    'PASSWORD=tiger')
  Items = <
    item
      A = 'x'#13 +
        'y'
    end>
  object R: TQuery
  end
)" + nested +
         "\nend\n";
}

const std::string kText = Text(3);
const std::string kDeepText = Text(1100);  // takes more than one stack

std::string ParseAndPrint(TFormParser& parser, const std::string& text = kText) {
  int64_t position = 1;
  std::string printed;
  if (!parser.Parse(text, "<object>", position)) return "refused";
  parser.PrintObject(1, printed);
  return printed;
}

// Fails each allocation of `call` in turn and returns their number. `check` runs after each failure.
template <class TCall, class TCheck>
long FailEach(TCall call, TCheck check) {
  for (long failing = 0;; ++failing) {
    AllocationsLeft = failing;
    try {
      call();
      const bool isDone = AllocationsLeft >= 0;
      AllocationsLeft = -1;
      if (isDone) return failing;
      ADD_FAILURE() << "allocation " << failing << " failed unnoticed";
    } catch (const std::bad_alloc&) {
      AllocationsLeft = -1;
      check();
    }
  }
}

TEST(OutOfMemoryTest, AParserWorksAfterIt) {
  TParser reference;
  const std::string expected = ParseAndPrint(reference);
  ASSERT_NE(expected, "refused");
  EXPECT_GT(FailEach([] { TParser().SetNewType("TKVAConnection and a longer name"); }, [] {}), 40);
  std::unique_ptr<TParser> parser;
  long tried = 0;
  for (long failing = 0;; failing += 97, ++tried) {
    parser = std::make_unique<TParser>();
    AllocationsLeft = failing;
    try {
      const std::string printed = ParseAndPrint(*parser, kDeepText);
      const bool isDone = AllocationsLeft >= 0;
      AllocationsLeft = -1;
      if (isDone) break;
      ADD_FAILURE() << "allocation " << failing << " failed unnoticed: " << printed;
    } catch (const std::bad_alloc&) {
      AllocationsLeft = -1;
      ASSERT_EQ(ParseAndPrint(*parser), expected) << failing;
    }
  }
  EXPECT_GT(tried, 20);
  // A second parse reuses the parser's tables and copies of the state, so it allocates less.
  const auto check = [&] { ASSERT_EQ(ParseAndPrint(*parser), expected); };
  EXPECT_GT(FailEach([&] { ParseAndPrint(*parser); }, check), 5);
}

// Printing again after a failure has the same result as a first success, with no value indented twice.
TEST(OutOfMemoryTest, PrintingCanBeTriedAgain) {
  TParser parser;
  const std::string expected = ParseAndPrint(parser);
  int64_t position = 1;
  std::string printed;
  ASSERT_TRUE(parser.Parse(kText, "<object>", position));
  FailEach([&] { parser.PrintObject(1, printed); }, [] {});
  EXPECT_EQ(printed, expected);
}

TEST(OutOfMemoryTest, AScannerAllocatesNothing) {
  TPasParser(kText).SetText("");  // builds the tables
  AllocationsLeft = 0;
  TPasParser scanner(kText);
  std::string_view lexem;
  size_t length = 0;
  while (scanner.GetNext(lexem) != qrl::kEndOfText) length += lexem.size();
  AllocationsLeft = -1;
  EXPECT_EQ(length, kText.size());
}

}  // namespace
}  // namespace mig
