// The position of a converter in the structure of a form: the open objects, collections, items and lists,
// outermost first. The converters keep it in place of recursive calls, so that no input can use up the call
// stack, and error messages name it.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace rtl {

enum class TFormNode { Properties, Children, Collection, Item, List };

struct TFormFrame {
  TFormNode Node;             // an object is in its Properties first, then in its Children
  size_t Index = 0;           // Collection: the number of items so far
  std::string_view Name;      // object: its name, or its class if it has no name
  std::string_view Property;  // Properties, Item: the property that was read last
};

class TFormPath {
 public:
  bool Empty() const { return FFrames.empty(); }
  size_t Depth() const { return FFrames.size(); }
  TFormFrame& Top() { return FFrames.back(); }
  void Push(TFormNode node, std::string_view name = {}) { FFrames.push_back({node, 0, name, {}}); }
  void Pop() { FFrames.pop_back(); }

  // Returns "object Form1.Grid1, property Columns[2].Title"; "object Form1" if no property was read yet; an
  // empty string before the first object. Items count from 0.
  std::string Describe() const;

 private:
  std::vector<TFormFrame> FFrames;
};

}  // namespace rtl
