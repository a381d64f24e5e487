// The layout of converted objects: a form keeps the indentation and the line ends that it had.
#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace completion {

// A change that the conversion made in a form's text.
struct TFormEdit {
  size_t Begin = 0,
         End = 0;    // the text that is replaced, in bytes, 0-based: an object, from its keyword to what
                     // the parse took after its `end`, or the name of a class
  std::string Text;  // what replaces it: an object as printed, or the new class
  int Level = -1;    // the nesting level at which the object was printed; -1 for a class name
};

// Returns `text` with the edits, which are in the order of the text and do not overlap. Objects are laid out like
// their originals: a line that means the same as a line of the original keeps its bytes, all others are indented to
// the object's place and end as the lines of the form do. White space after an object stays.
std::string LayOutForm(std::string_view text, const std::vector<TFormEdit>& edits);

}  // namespace completion
