// What rules without hooks have matched at positions of the text that is being parsed.
//
// A memory, not a record: when it is full, new results take the place of old ones. A lost result costs the
// time to find it again, and changes nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace mig {

class TLL1Memo {
 public:
  static constexpr int32_t kUnknown = -2;
  static constexpr int32_t kFailed = -1;

  // Forgets everything. Takes the same time however much there was.
  void Clear();
  // The position behind what the rule matched at `position`, or kFailed, or kUnknown.
  int32_t Find(int32_t rule, int32_t position) const;
  void Store(int32_t rule, int32_t position, int32_t result);

 private:
  struct TEntry {
    uint32_t Epoch = 0;
    int32_t Rule = 0;
    int32_t Position = 0;
    int32_t Result = 0;
  };
  size_t Home(int32_t rule, int32_t position) const;
  TEntry* Place(int32_t rule, int32_t position);
  void Grow();

  std::vector<TEntry> FEntries;  // its size is 0 or a power of two
  size_t FCount = 0;             // entries of this epoch
  uint32_t FEpoch = 1;           // entries of another epoch are free
};

}  // namespace mig
