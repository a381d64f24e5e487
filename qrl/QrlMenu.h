// What a product tells about its place in the host's main menu, and the text of a caption without its marks.
#pragma once

#include <string>
#include <string_view>

namespace qrl {

// A product's top-level menu.
struct TProductMenu {
  std::string MenuName;     // component name of the top-level item
  std::string MenuCaption;  // its caption
  std::string
      AlternateCaption;  // its caption when another top-level item has the first one; empty: there is none
};

// `text` without its accelerator marks "&".
std::string RemoveAmpersands(std::string_view text);

}  // namespace qrl
