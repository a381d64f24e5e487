// Results of rules without hooks, by position of the text that is being parsed.
//
// An insurance, not a part of ordinary parsing. Ordered choice with backtracking takes exponential time for
// some texts: a level of nesting that is read once for each of two alternatives doubles the work for all
// levels inside it. The machine switches the memo on when a parse has read many times the length of its text
// (TLL1Parser::SetRereadAllowance); from then on the work is in proportion to the text. In 15,572 objects of
// real forms that never happened. The benchmark rows `Doubling` show the difference.
//
// The memo is a cache: a full window of slots loses an old result. A lost result costs the time to find it
// again, and changes nothing else.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace mig {

class TLL1Memo {
 public:
  static constexpr int32_t kUnknown = -2;
  static constexpr int32_t kFailed = -1;

  // Forgets all results, in constant time.
  void Clear();
  // Returns the position after the rule's match at `position`, or kFailed, or kUnknown.
  int32_t Find(int32_t rule, int32_t position) const;
  // Stores a result of Find. An exception leaves the memo as it was.
  void Store(int32_t rule, int32_t position, int32_t result);

 private:
  struct TSlot {
    uint32_t Epoch = 0;
    int32_t Rule = 0;
    int32_t Position = 0;
    int32_t Result = 0;
  };
  using TSlots = std::vector<TSlot>;

  static size_t Hash(int32_t rule, int32_t position);
  TSlot* FindSlot(TSlots& slots, int32_t rule, int32_t position) const;
  void Grow();

  TSlots FSlots;        // its size is 0 or a power of two
  size_t FCount = 0;    // slots of the present epoch
  uint32_t FEpoch = 1;  // slots of other epochs are free
};

}  // namespace mig
