// What a parse knows besides its text, and the copies of it that backtracking goes back to.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace mig {

class TLL1Parser;

// The position of a parse. A client derives from it and adds every piece of data that a failed alternative
// must take back. Data that lives elsewhere, in lists of the parser, is undone through a count in the state:
// an Assign that finds the list longer than the count that it has just copied cuts the list.
class TParseState {
 public:
  explicit TParseState(TLL1Parser& owner) : FOwner(owner) {}
  virtual ~TParseState() = default;
  TParseState(const TParseState&) = delete;
  TParseState& operator=(const TParseState&) = delete;

  // Copies all but the owner. The engine copies in both directions: the live state into a copy, and back. An
  // override calls the inherited operation first. Raises EInvalidCast for a source of a class that has not
  // its fields.
  virtual void Assign(const TParseState& source) { Pos = source.Pos; }

  TLL1Parser& Owner() const { return FOwner; }

  int32_t Pos = 1;  // of the next character to read, counted from 1

 private:
  TLL1Parser& FOwner;
};

// A class of states, as a parser takes it: what makes an object of that class for a parser that may still be
// under construction.
using TParseStateClass = std::function<std::unique_ptr<TParseState>(TLL1Parser& owner)>;

template <class TState>
TParseStateClass ParseStateClass() {
  return [](TLL1Parser& owner) { return std::make_unique<TState>(owner); };
}

// Copies of a state, the last one made on top. The objects are used again, so that a copy allocates nothing
// once the stack has been as high before.
class TStateStack {
 public:
  using TMaker = std::function<std::unique_ptr<TParseState>()>;

  explicit TStateStack(TMaker maker) : FMaker(std::move(maker)) {}

  // Copies `state` onto the top. The number of the copy; copies count from 0 at the bottom.
  int32_t Push(const TParseState& state);
  const TParseState& operator[](int32_t copy) const { return *FCopies[static_cast<size_t>(copy)]; }
  // Drops that copy and all above it.
  void CutTo(int32_t copy) { FCount = copy; }
  // Drops all copies, and gives memory back that only an unusual parse has needed.
  void Clear();

 private:
  TMaker FMaker;
  std::vector<std::unique_ptr<TParseState>> FCopies;
  int32_t FCount = 0;
};

}  // namespace mig
