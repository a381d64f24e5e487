// The two conversions of forms, for comparison with those of another run-time library (bench/fpcforms.pas).
//
//   FormConversionBench text|binary INPUT OUTPUT REPEATS
//
// converts INPUT to its text or binary form in memory, REPEATS times, writes the result to OUTPUT, and
// prints the processor time of the fastest conversion in seconds. Like its counterpart, it reuses the
// memory of the output.
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <fstream>
#include <iterator>
#include <string>

#include "rtl/objects/ByteSink.h"
#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/objects/ObjectTextToBinary.h"

namespace {

double Seconds() {
  std::timespec time{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &time);
  return static_cast<double>(time.tv_sec) + static_cast<double>(time.tv_nsec) * 1E-9;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 5) return 2;
  const bool toText = std::string(argv[1]) == "text";
  std::ifstream file(argv[2], std::ios::binary);
  const std::string input{std::istreambuf_iterator<char>(file), {}};
  std::string output;
  double best = 1E9;
  for (int repeats = std::atoi(argv[4]); repeats > 0; --repeats) {
    output.clear();
    const double start = Seconds();
    rtl::TStringSink sink(output);
    if (toText) {
      rtl::ObjectBinaryToText(input, sink);
    } else {
      rtl::ObjectTextToBinary(input, sink);
    }
    best = std::min(best, Seconds() - start);
  }
  std::ofstream(argv[3], std::ios::binary).write(output.data(), static_cast<std::streamsize>(output.size()));
  std::printf("%.6f\n", best);
}
