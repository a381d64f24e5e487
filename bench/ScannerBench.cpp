// Benchmarks the scanner against two lower bounds: a copy of the text, and a loop that looks up each byte
// in a table. All report bytes per second for the same generated texts.
#include <array>
#include <benchmark/benchmark.h>
#include <cstring>
#include <string>
#include <string_view>

#include "FormText.h"
#include "MigWizard/engine/PasParser.h"
#include "UnitText.h"

namespace bench {
namespace {

constexpr size_t kBytes = size_t{16} << 20;

enum class TText { Unit, Form };

const std::string& Text(TText which) {
  static const std::string kUnit = [] {
    TRandom random(1);
    return MakeUnitText(random, {"Sample", kBytes, true, true, false});
  }();
  static const std::string kForm = [] {
    TRandom random(1);
    return MakeFormText(random, {"Sample", kBytes, 1000, TFormShape::Mixed, false});
  }();
  return which == TText::Unit ? kUnit : kForm;
}

void Count(benchmark::State& state, const std::string& text) {
  state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) * static_cast<int64_t>(text.size()));
}

void Scanner(benchmark::State& state, TText which) {
  const std::string& text = Text(which);
  for ([[maybe_unused]] const auto turn : state) {
    mig::TPasParser scanner(text);
    std::string_view lexem;
    int codes = 0;
    while (const int code = scanner.GetNext(lexem)) codes ^= code;
    benchmark::DoNotOptimize(codes);
  }
  Count(state, text);
}

void Words(benchmark::State& state, TText which) {
  const std::string& text = Text(which);
  for ([[maybe_unused]] const auto turn : state) {
    mig::TPasParser scanner(text);
    std::string_view lexem;
    int codes = 0;
    while (const int code = scanner.GetNextWord(lexem)) codes ^= code;
    benchmark::DoNotOptimize(codes);
  }
  Count(state, text);
}

void MemoryCopy(benchmark::State& state, TText which) {
  const std::string& text = Text(which);
  std::string copy(text.size(), '\0');
  for ([[maybe_unused]] const auto turn : state) {
    std::memcpy(copy.data(), text.data(), text.size());
    benchmark::DoNotOptimize(copy.data());
    benchmark::ClobberMemory();
  }
  Count(state, text);
}

void ByteLoop(benchmark::State& state, TText which) {
  const std::string& text = Text(which);
  std::array<uint8_t, 256> kinds{};
  for (size_t i = 0; i < kinds.size(); ++i) kinds[i] = static_cast<uint8_t>(i * 7 % 5);
  for ([[maybe_unused]] const auto turn : state) {
    uint32_t last = 0;
    uint32_t changes = 0;
    for (const char c : text) {
      const uint32_t kind = kinds[static_cast<uint8_t>(c)];
      if (kind != last) ++changes;
      last = kind;
    }
    benchmark::DoNotOptimize(changes);
  }
  Count(state, text);
}

BENCHMARK_CAPTURE(Scanner, unit, TText::Unit);
BENCHMARK_CAPTURE(Words, unit, TText::Unit);
BENCHMARK_CAPTURE(MemoryCopy, unit, TText::Unit);
BENCHMARK_CAPTURE(ByteLoop, unit, TText::Unit);
BENCHMARK_CAPTURE(Scanner, form, TText::Form);
BENCHMARK_CAPTURE(Words, form, TText::Form);
BENCHMARK_CAPTURE(MemoryCopy, form, TText::Form);
BENCHMARK_CAPTURE(ByteLoop, form, TText::Form);

}  // namespace
}  // namespace bench
