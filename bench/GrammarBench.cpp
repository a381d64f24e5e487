// Benchmarks the form parser on objects of the same shape and growing size, for which the time per byte
// should be constant, and on a text that takes exponential time without the memo.
#include <benchmark/benchmark.h>
#include <cstdint>
#include <string>

#include "target/KVAFormParser.h"

namespace {

using TShape = std::string (*)(int count);

std::string Object(const std::string& properties) {
  return "object Query1: TQuery\r\n" + properties + "end\r\n";
}

std::string ListLines(int count) {
  std::string text = "  SQL.Strings = (";
  for (int i = 0; i < count; ++i) text += "\r\n    'select Field" + std::to_string(i) + " from Table1'";
  return Object(text + ")\r\n");
}

std::string Properties(int count) {
  std::string text;
  for (int i = 0; i < count; ++i) text += "  Property" + std::to_string(i) + " = 'value'\r\n";
  return Object(text);
}

std::string NestedObjects(int count) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += "  object Field" + std::to_string(i) +
            ": TStringField\r\n    FieldName = 'NAME'\r\n    Size = 20\r\n  end\r\n";
  return Object(text);
}

std::string Levels(int count) {
  std::string text;
  for (int i = 0; i < count; ++i)
    text += "object Panel" + std::to_string(i) + ": TPanel\r\n  Caption = 'Panel'\r\n";
  for (int i = 0; i < count; ++i) text += "end\r\n";
  return Object(text);
}

std::string Pieces(int count) {
  std::string text = "  Text = \r\n";
  for (int i = 0; i < count; ++i) text += "    'a piece of a long string'#13#10 +\r\n";
  return Object(text + "    'the end'\r\n");
}

std::string CollectionItems(int count) {
  std::string text = "  ParamData = <\r\n";
  for (int i = 0; i < count; ++i)
    text +=
        "    item\r\n      DataType = ftInteger\r\n      Name = 'P" + std::to_string(i) + "'\r\n    end\r\n";
  return Object(text + "    >\r\n");
}

std::string BinaryLines(int count) {
  std::string text = "  Picture.Data = {";
  for (int i = 0; i < count; ++i)
    text += "\r\n    0A544A504547496D616765C20D0000FFD8FFE000104A46494600010101006000";
  return Object(text + "}\r\n");
}

void Report(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(state.iterations() * static_cast<int64_t>(text.size()));
}

void Parse(benchmark::State& state, TShape shape) {
  const std::string text = shape(static_cast<int>(state.range(0)));
  target::TKVAFormParser parser(mig::ParseStateClass<mig::TFormParseState>());
  for (auto _ : state) {
    int64_t position = 1;
    if (!parser.Parse(text, "<object>", position)) return state.SkipWithError("the object was refused");
  }
  Report(state, text);
}

void ParseAndPrint(benchmark::State& state, TShape shape) {
  const std::string text = shape(static_cast<int>(state.range(0)));
  target::TKVAFormParser parser(mig::ParseStateClass<mig::TFormParseState>());
  std::string printed;
  for (auto _ : state) {
    int64_t position = 1;
    if (!parser.Parse(text, "<object>", position)) return state.SkipWithError("the object was refused");
    parser.PrintObject(1, printed);
    benchmark::DoNotOptimize(printed.data());
  }
  Report(state, text);
}

BENCHMARK_CAPTURE(Parse, ListLines, ListLines)->Name("ListLines")->RangeMultiplier(10)->Range(1000, 1000000);
BENCHMARK_CAPTURE(Parse, Properties, Properties)->Name("Properties")->RangeMultiplier(10)->Range(10, 100000);
BENCHMARK_CAPTURE(Parse, NestedObjects, NestedObjects)
    ->Name("NestedObjects")
    ->RangeMultiplier(10)
    ->Range(10, 10000);
BENCHMARK_CAPTURE(Parse, Levels, Levels)->Name("Levels")->RangeMultiplier(10)->Range(10, 1000);
BENCHMARK_CAPTURE(Parse, Pieces, Pieces)->Name("Pieces")->RangeMultiplier(10)->Range(10, 100000);
BENCHMARK_CAPTURE(Parse, CollectionItems, CollectionItems)
    ->Name("CollectionItems")
    ->RangeMultiplier(10)
    ->Range(10, 100000);
BENCHMARK_CAPTURE(Parse, BinaryLines, BinaryLines)
    ->Name("BinaryLines")
    ->RangeMultiplier(10)
    ->Range(10, 100000);
BENCHMARK_CAPTURE(ParseAndPrint, ListLines, ListLines)
    ->Name("ListLines, printed")
    ->RangeMultiplier(10)
    ->Range(1000, 1000000);
BENCHMARK_CAPTURE(ParseAndPrint, Properties, Properties)
    ->Name("Properties, printed")
    ->RangeMultiplier(10)
    ->Range(10, 100000);

// Creates a parser for each object, so that the compilation of the grammar is included.
void NewParser(benchmark::State& state) {
  const std::string text = Properties(1);
  for (auto _ : state) {
    target::TKVAFormParser parser(mig::ParseStateClass<mig::TFormParseState>());
    int64_t position = 1;
    if (!parser.Parse(text, "<object>", position)) return state.SkipWithError("the object was refused");
  }
}
BENCHMARK(NewParser);

// A grammar that reads every level of nesting twice.
class TDoubling : public mig::TLL1Parser {
 public:
  explicit TDoubling(int64_t rereadAllowance) : TLL1Parser(mig::ParseStateClass<mig::TParseState>()) {
    for (const char* rule : {"<a>-<d>|<c>", "<d>-<b>y", "<c>-<b>z", "<b>-(<a>|w"}) AddRule(rule);
    DeclareHooks({});
    SetRereadAllowance(rereadAllowance);
  }
};

void Doubling(benchmark::State& state, int64_t rereadAllowance) {
  const auto levels = static_cast<size_t>(state.range(0));
  const std::string text = std::string(levels, '(') + 'w' + std::string(levels + 1, 'z');
  TDoubling parser(rereadAllowance);
  for (auto _ : state) {
    int64_t position = 1;
    if (!parser.Parse(text, "<a>", position)) return state.SkipWithError("the text was refused");
  }
  Report(state, text);
}
BENCHMARK_CAPTURE(Doubling, NoMemo, INT64_MAX)->Name("Doubling, without the memo")->DenseRange(8, 20, 4);
BENCHMARK_CAPTURE(Doubling, Memo, int64_t{1} << 16)->Name("Doubling")->DenseRange(8, 20, 4)->Arg(10000);

}  // namespace
