// A reference implementation of the grammar engine and of the form parser. It uses strings throughout,
// compiles nothing beyond the inlining and the sorting, and reads everything again on every attempt. Slow,
// but easy to check.
#pragma once

#include <functional>
#include <string>
#include <utility>
#include <vector>

namespace plain {

// The parse takes too many steps.
class EOutOfSteps {};

class TEngine {
 public:
  virtual ~TEngine() = default;
  void AddRule(const std::string& given);
  bool Parse(const std::string& text, const std::string& start, size_t& position);

  // Sorted by name; alternatives are in trying order after the first Parse.
  std::vector<std::pair<std::string, std::vector<std::string>>> Rules;
  std::vector<std::string> Words;
  std::string Delims;   // the characters of <*delim>
  long Steps = 200000;  // left before EOutOfSteps

 protected:
  virtual bool ParseNonterminal(const std::string& name);
  // Returns a function that restores the client's part of the state.
  virtual std::function<void()> Snapshot() {
    return [] {};
  }
  virtual void BeforeParse() {}

  std::string FText;
  size_t FPos = 1;

 private:
  void Prepare();
  void Rewrite(std::vector<std::string>& target, const std::string& name,
               const std::vector<std::string>& inlined);
  bool MatchAlternative(const std::string& alternative);
  bool ParseTerminal(const std::string& name);

  bool FPrepared = false;
};

class TFormEngine : public TEngine {
 public:
  using TEntry = std::pair<std::string, std::string>;

  explicit TFormEngine(std::function<std::vector<TEntry>(const TEntry&)> convert);
  std::string Print(size_t level) const;

  std::vector<TEntry> Properties;
  std::vector<std::string> NestedObjects;

 protected:
  bool ParseNonterminal(const std::string& name) override;
  std::function<void()> Snapshot() override;
  void BeforeParse() override;

 private:
  std::function<std::vector<TEntry>(const TEntry&)> FConvert;
  struct {
    std::string Keyword, ObjName, ObjType, PropName;
    int Depth = 0;
    size_t NestedStart = 0;
  } FState;
  size_t FNestedCount = 0;  // over all parses
};

}  // namespace plain
