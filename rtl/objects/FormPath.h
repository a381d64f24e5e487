// Where in a form a converter is: the open objects, collections, items and lists, outermost first. The
// converters walk with it instead of calling themselves, so that no input can use up the call stack, and a
// failure can say where it happened.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rtl {

enum class TFormNode { Properties, Children, Collection, Item, List };

struct TFormFrame {
  TFormNode Node;             // an object is in its Properties first, then in its Children
  size_t Index = 0;           // Collection: items so far
  std::string_view Name;      // object: its name, or its class where it has none
  std::string_view Property;  // Properties, Item: the property that was met last
};

class TFormPath {
 public:
  bool Empty() const { return FFrames.empty(); }
  size_t Depth() const { return FFrames.size(); }
  TFormFrame& Top() { return FFrames.back(); }
  void Push(TFormNode node, std::string_view name = {}) { FFrames.push_back({node, 0, name, {}}); }
  void Pop() { FFrames.pop_back(); }

  // "object Form1.Grid1, property Columns[2].Title"; "object Form1" where no property was met; empty before
  // the first object. Items count from 0.
  std::string Describe() const;

 private:
  std::vector<TFormFrame> FFrames;
};

}  // namespace rtl
