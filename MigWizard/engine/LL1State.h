// The state of a parse besides its text, and the stack of copies that backtracking restores it from.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <vector>

namespace mig {

class TLL1Parser;

// The position of a parse. A client derives from it and adds all data that must be undone when an alternative
// fails. Lists of the parser are undone through a count in the state: an Assign that finds a list longer than
// the count that it has just copied shortens the list.
class TParseState {
 public:
  explicit TParseState(TLL1Parser& owner) : FOwner(owner) {}
  virtual ~TParseState() = default;
  TParseState(const TParseState&) = delete;
  TParseState& operator=(const TParseState&) = delete;

  // Copies everything but the owner. The engine saves the live state by assigning it to a copy, and restores
  // it by assigning the copy to it. An override calls the inherited operation first, and raises
  // rtl::EInvalidCast for a source of a class that lacks its fields.
  virtual void Assign(const TParseState& source) { Pos = source.Pos; }

  // The parser that the state was made for.
  TLL1Parser& Owner() const { return FOwner; }

  int32_t Pos = 1;  // of the next character to read, counted from 1

 private:
  TLL1Parser& FOwner;
};

// A class of states: makes a state for a parser that may still be under construction.
using TParseStateClass = std::function<std::unique_ptr<TParseState>(TLL1Parser& owner)>;

template <class TState>
TParseStateClass ParseStateClass() {
  return [](TLL1Parser& owner) { return std::make_unique<TState>(owner); };
}

// A stack of copies of a state. The objects are reused, so a push allocates only when the stack grows beyond
// its greatest height so far.
class TStateStack {
 public:
  using TMaker = std::function<std::unique_ptr<TParseState>()>;

  explicit TStateStack(TMaker maker) : FMaker(std::move(maker)) {}

  // Pushes a copy of `state` and returns its index; the bottom has index 0.
  int32_t Push(const TParseState& state);
  const TParseState& operator[](int32_t copy) const { return *FCopies[static_cast<size_t>(copy)]; }
  // Pops the copy of that index and all above it.
  void PopTo(int32_t copy) { FCount = copy; }
  // Pops all copies, and frees the memory that only an unusual parse has needed.
  void Clear();

 private:
  TMaker FMaker;
  std::vector<std::unique_ptr<TParseState>> FCopies;
  int32_t FCount = 0;
};

}  // namespace mig
