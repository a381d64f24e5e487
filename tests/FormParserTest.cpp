// The form parser and its printer: which text is an object block, and what is collected and printed.
#include <gtest/gtest.h>
#include <random>

#include "MigWizard/form/FormParser.h"
#include "tests/ErrorOf.h"
#include "tests/PlainEngine.h"

namespace mig {
namespace {

using TEntry = plain::TFormEngine::TEntry;

// Keeps most properties; removes those in D, and returns two for those in T.
std::vector<TEntry> Convert(const TEntry& entry) {
  if (entry.first.front() == 'D') return {};
  if (entry.first.front() == 'T') return {entry, {"Twice", "made\r" + entry.second}};
  return {entry};
}

class TTestParser : public TFormParser {
 public:
  TTestParser() : TFormParser(ParseStateClass<TFormParseState>()) {}

  using TFormParser::SetMostNestedCalls;

  std::string Source;  // the results refer to this text

  void ConvertProperty(std::string_view propName, std::string_view propValue) override {
    const std::vector<TEntry> entries = Convert({std::string(propName), std::string(propValue)});
    if (!entries.empty()) AddProperty(propName, propValue);
    if (entries.size() > 1) AddMadeProperty("Twice", entries[1].second);
  }
};

// Returns the rest of `text` after the object at its beginning, or "refused".
std::string Rest(TTestParser& parser, std::string text) {
  parser.Source = std::move(text);
  int64_t position = 1;
  if (parser.Parse(parser.Source, "<object>", position))
    return parser.Source.substr(static_cast<size_t>(position) - 1);
  EXPECT_EQ(position, 1);
  EXPECT_TRUE(parser.Properties().empty() && parser.NestedObjects().empty());
  std::string printed = "old";
  parser.PrintObject(0, printed);
  EXPECT_EQ(printed, "");
  return "refused";
}

std::string Print(TTestParser& parser, std::string text, int level = 0) {
  std::string printed = Rest(parser, std::move(text));
  if (printed != "refused") parser.PrintObject(level, printed);
  return printed;
}

// Failed positions in one text must not affect objects of the next.
TEST(FormParserTest, FailedObjectsAreThoseOfTheLastParse) {
  const std::pair<const char*, std::vector<int32_t>> rows[] = {
      {"object Q: T object R: U", {13}},
      {"object Q: T A = 1 end", {}},
      {"object Q: T A = 1 inline R: U object S: V A", {31, 19}},
  };
  TTestParser parser;
  for (const auto& [text, failed] : rows) {
    Rest(parser, text);
    EXPECT_EQ(parser.FailedObjects(), failed) << text;
  }
}

TEST(FormParserTest, ObjectBlocks) {
  const std::pair<const char*, const char*> rows[] = {
      {"object Q: T\r\nend\r\n  x", "x"},
      {"object Q:T end", ""},
      {"OBJECT Q : T\tEND", ""},
      {"inherited Q: T end", ""},
      {"inline Q: T\nend\n", ""},
      {"object Q: T end;", ";"},
      {"object Q: T endx", "refused"},
      {"object Q: T [1] end", "refused"},
      {"object Q: Unit1.T end", "refused"},
      {"object 1Q: T end", "refused"},
      {"object \xC4: T end", "refused"},
      {"object Q: T", "refused"},
      {"object: T end", "refused"},
      {" object Q: T end", "refused"},
      {"object Q: T A = 1 end", ""},
      {"object Q: T A = 1end", "refused"},
      {"object Q: T A=1 B =2\nC= 3 A.B.C = 4 end", ""},
      {"object Q: T A.=1 end", "refused"},
      {"object Q: T \xC4=1 end", "refused"},
      {"object Q: T EndDate = 1 end", ""},
      {"object Q: T end_ = 1 endend = 2 END", ""},
      {"object Q: T object = 1 inheritedX = 2 end", ""},
      {"object Q: T object R: U end end x", "x"},
      {"object Q: T object R: U A = 1 end B = 2 end x", "x"},
      {"object Q: T object R: U end", "refused"},
  };
  TTestParser parser;
  for (const auto& [text, rest] : rows) EXPECT_EQ(Rest(parser, text), rest) << text;
}

std::vector<std::string> Split(const std::string& texts) {
  std::vector<std::string> parts(1);
  for (const char c : texts) c == '~' ? parts.emplace_back() : parts.back() += c;
  return parts;
}

TEST(FormParserTest, PropertyValues) {
  const std::string accepted =
      "0~-1.5~+7~1E5~2.5e+3~36526d~True~ftInteger~Form1.Query1~''~'a'~'It''s'~'a\r\nb'~'a'#13#10'b'~#13~#13'"
      "x'~'a' + 'b'~'a' +\r\n  'b'+'c'~\r\n  'a' +\r\n  'b'~()~( )~('a')~('a' 'b'\r\n'c')~( 'a' + 'b' 'c' "
      ")~(1 -2.5 3e1)~[]~[ ]~[a]~[ a,b , c ]~{}~{ }~{0aF}~{ 0A0B\r\n0C }~<>~< >~<item A = 1 end>~<\n item\n "
      "A=1\n B = <item C = 'x' end>\n end\n item D = 2 end>~<item EndValue = 1 end>";
  const std::string refused =
      ".5~1.~1e~36526.5d~$00FF00~A.B.C~'a~a'~'x' 'y'~'x' +~('a' 1)~(1 'a')~[1]~[a b]~[a,]~('a'~<item "
      "end>~<item A = 1end>~<item A = 1>~<item A = 1 endx>~{0G}~{0~#~#x~nil)~~- 1";
  TTestParser parser;
  for (const std::string& value : Split(accepted))
    EXPECT_EQ(Rest(parser, "object Q: T P = " + value + "\nend"), "");
  for (const std::string& value : Split(refused))
    EXPECT_EQ(Rest(parser, "object Q: T P = " + value + "\nend"), "refused") << value;
  for (const std::string property : {"A='a' + 'b'", "A ='a' + 'b'"})
    EXPECT_EQ(Rest(parser, "object Q: T " + property + " end"), "refused") << property;
}

TEST(FormParserTest, Printing) {
  const std::tuple<int, const char*, const char*> rows[] = {
      {0, "object Q: T end", "object Q: T\r\nend\r\n"},
      {1,
       "object Query1: TOld\n  Left=10\n  S.Strings = (\n    'a'\n      'b')\n  object F: TField\n  end \n  "
       "X = 1\nend",
       "  object Query1: TOld\r\n    Left = 10\r\n    S.Strings = (\r\n          'a'\r\n            'b')\r\n"
       "    X = 1\r\n  object F: TField\n  end\r\n  end\r\n"},
      {0, "Object q: T A = \r'x' +\r\r\n'y' end",
       "Object q: T\r\n  A =  \r\n    'x' +\r\n    \r\n    'y'\r\nend\r\n"},
      {0, "object q: T A = 'x' + 'y' D = 1 end", "object q: T\r\n  A =  'x' + 'y'\r\nend\r\n"},
      {0, "object q: T T = <\r\n> end",
       "object q: T\r\n  T = <\r\n    >\r\n  Twice = made\r\n    <\r\n    >\r\nend\r\n"},
      {0, "object q: T \t object a: b end\t  object A: B end\tobject\ta: b end end",
       "object q: T\r\n object a: b end\r\n  object A: B end\r\nobject\ta: b end\r\nend\r\n"},
      {0, "object q: T  object a: b end  object A: B end end", "object q: T\r\n  object a: b end\r\nend\r\n"},
  };
  TTestParser parser;
  for (const auto& [level, text, printed] : rows) EXPECT_EQ(Print(parser, text, level), printed) << text;

  ASSERT_EQ(Rest(parser, "object q: T S = (\n 'a') end"), "");
  parser.SetNewType("TNew");
  std::string printed;
  parser.PrintObject(0, printed);
  parser.PrintObject(1, printed);
  EXPECT_EQ(printed, "  object q: TNew\r\n    S = (\r\n           'a')\r\n  end\r\n");
  EXPECT_EQ(Print(parser, "object r: T end"), "object r: TNew\r\nend\r\n");
}

// Generates object blocks with all constructs of the grammar, some of them damaged.
class TRandomForm {
 public:
  explicit TRandomForm(unsigned seed) : FRandom(seed) {}

  std::string Text() {
    std::string text = std::string(Below(4), ' ') + Object(3);
    for (size_t i = Below(3); i > 0; --i) Damage(text);
    return text + Any({"", "\r\n", "  end\n", "x"});
  }

 private:
  size_t Below(size_t limit) { return FRandom() % limit; }
  std::string Any(std::initializer_list<const char*> choices) {
    return choices.begin()[Below(choices.size())];
  }
  std::string Delim() { return Any({" ", "\r\n", "\r\n    ", "\n", "\t", "  "}); }
  std::string MaybeDelim() { return Below(2) == 0 ? "" : Delim(); }
  std::string Name() {
    return Any({"A", "Data", "T1", "_x", "EndDate", "objectx", "item", "Inherited", "e"});
  }

  std::string List(const std::string& separator, const std::function<std::string()>& element) {
    std::string text;
    for (size_t i = Below(4); i > 0; --i)
      text.append(element()).append(i > 1 ? separator + Delim() : MaybeDelim());
    return MaybeDelim() + text;
  }
  std::string String() {
    std::string text = Any({"'a'", "''", "'it''s'", "#13", "'x'#10'y'", "'end'", "'\r\n'"});
    while (Below(4) == 0) text += MaybeDelim() + "+" + MaybeDelim() + Any({"'a'", "#9"});
    return text;
  }
  std::string Number() { return Any({"", "-", "+"}) + Any({"1", "23", "1.5", "1e5", "2.5E-3"}); }
  std::string Property(int depth) {
    return Name() + Any({"", "", ".Strings"}) + MaybeDelim() + "=" + MaybeDelim() + Value(depth) + Delim();
  }
  std::string Value(int depth) {
    const size_t kind = Below(9);
    if (kind == 0) return Name() + "." + Name();
    if (kind == 1) return "[" + List(",", [this] { return Name(); }) + "]";
    if (kind == 2) return "{" + List("", [this] { return Any({"0A", "ff00"}); }) + "}";
    if (kind == 3) return "(" + List("", [this] { return Number(); }) + ")";
    if (kind == 4) return "(" + List("", [this] { return String(); }) + ")";
    if (kind == 5) return Number();
    if (kind > 6 || depth == 0) return String();
    return "<" + List("", [&] { return "item" + Delim() + Property(depth - 1) + "end"; }) + ">";
  }
  std::string Object(int depth) {
    std::string text = Any({"object", "object", "OBJECT", "inherited", "inline"}) + Delim() + Name() +
                       MaybeDelim() + ":" + MaybeDelim() + Name() + Delim();
    for (size_t i = Below(4); i > 0; --i)
      text += depth > 0 && Below(3) == 0 ? Object(depth - 1) + Delim() : Property(depth);
    return text + Any({"end", "END"});
  }
  void Damage(std::string& text) {
    const size_t from = Below(text.size() + 1), length = Below(6);
    const std::string part = text.substr(from, length);
    const size_t kind = Below(6);
    if (kind == 1) text.erase(from + (text.size() - from) / 2);
    if (kind == 4) text.insert(from, Any({"'", " ", "+", "<", "(", "end", "=", " end "}));
    if (kind == 0 || kind == 3) text.erase(from, length);
    if (kind == 2 || kind == 3) text.insert(Below(text.size() + 1), part);
  }

  std::mt19937 FRandom;
};

TEST(FormParserTest, AgreesWithThePlainParserOnRandomForms) {
  TTestParser parser;
  plain::TFormEngine reference(Convert);
  int compared = 0, matches = 0;
  for (unsigned seed = 0; seed < 4000; ++seed) {
    const std::string text = TRandomForm(seed).Text();
    size_t position = text.find_first_not_of(' ') + 1;
    auto ownPosition = static_cast<int64_t>(position);
    reference.Steps = 4000;
    bool expected = false;
    try {
      expected = reference.Parse(text, "<object>", position);
    } catch (const plain::EOutOfSteps&) {
      reference = plain::TFormEngine(Convert);
      continue;
    }
    ASSERT_EQ(parser.Parse(text, "<object>", ownPosition), expected) << text;
    ASSERT_EQ(ownPosition, static_cast<int64_t>(position)) << text;
    ++compared;
    if (!expected) continue;
    ++matches;
    ASSERT_EQ(parser.Properties().size(), reference.Properties.size()) << text;
    std::string printed;
    parser.PrintObject(1, printed);
    ASSERT_EQ(printed, reference.Print(1)) << text;
  }
  EXPECT_GT(compared, 3000);
  EXPECT_GT(matches, 1200);
}

std::string Repeat(int count, const std::function<std::string(int)>& part) {
  std::string text;
  for (int i = 0; i < count; ++i) text += part(i);
  return text;
}

// None of these may take disproportionate time, or use up the call stack.
TEST(FormParserTest, LargeObjects) {
  const auto number = [](int i) { return std::to_string(i); };
  TTestParser parser;
  const std::string list = Repeat(1000000, [](int) { return "\r\n    'line'"; });
  EXPECT_EQ(Rest(parser, "object Q: T S = (" + list + ") end"), "");
  EXPECT_EQ(parser.Properties()[0].Lines().size(), 1000001U);
  EXPECT_EQ(Rest(parser, "object Q: T S = (" + list + " end"), "refused");
  EXPECT_EQ(Rest(parser, "object Q: T S = <item A = (" + list + ") end end"), "refused");

  const auto piece = [](int) { return "'piece' +\n"; };
  EXPECT_EQ(Rest(parser, "object Q: T S = " + Repeat(100000, piece) + "'' end"), "");
  EXPECT_EQ(Rest(parser, "object Q: T S = " + Repeat(100000, piece) + "$ end"), "refused");
  EXPECT_EQ(Rest(parser, "object Q: T S = (" + Repeat(100000, piece) + "'open end"), "refused");
  const auto collection = [](int) { return "<item A = "; };
  EXPECT_EQ(Rest(parser, "object Q: T S = " + Repeat(20000, collection) + "$ end"), "refused");

  const std::string properties = Repeat(100000, [&](int i) { return "P" + number(i) + " = 1\n"; });
  EXPECT_EQ(Rest(parser, "object Q: T " + properties + "end"), "");
  EXPECT_EQ(parser.Properties().size(), 100000U);
  EXPECT_EQ(Rest(parser, "object Q: T " + properties), "refused");

  const std::string nested =
      Repeat(10000, [&](int i) { return "object N" + number(i) + ": T\nA = 1\nend\n"; });
  EXPECT_EQ(Rest(parser, "object Q: T " + nested + "end"), "");
  EXPECT_EQ(parser.NestedObjects().size(), 10000U);
}

TEST(FormParserTest, DeepObjects) {
  const auto open = [](int i) { return "object N" + std::to_string(i) + ": T\nA = 1\n"; };
  const auto close = [](int) { return "end\n"; };
  TTestParser parser;
  EXPECT_EQ(Rest(parser, Repeat(5000, open) + Repeat(5000, close)), "");
  EXPECT_EQ(Rest(parser, Repeat(5000, open) + Repeat(4999, close)), "refused");
  parser.SetMostNestedCalls(1500);  // two lines each
  EXPECT_EQ(tests::ErrorOf<ENestingTooDeep>([&] { return Rest(parser, Repeat(1501, open)); }),
            "Object \"N0\": the nesting at line 2999 is too deep.");
  EXPECT_EQ(Print(parser, "object Q: T A = 1 object R: U end end"),
            "object Q: T\r\n  A = 1\r\n object R: U end\r\nend\r\n");
}

TEST(FormParserTest, StatesOfOtherClassesAreRefused) {
  EXPECT_THROW(TFormParser(ParseStateClass<TParseState>()), rtl::EInvalidCast);
  TTestParser parser;
  TFormParseState state(parser);
  EXPECT_THROW(state.Assign(TParseState(parser)), rtl::EInvalidCast);
}

}  // namespace
}  // namespace mig
