// The position of a product in the host's main menu, and the removal of accelerator marks.
#pragma once

#include <string>
#include <string_view>

namespace qrl {

// A product's top-level menu.
struct TProductMenu {
  std::string MenuName;     // component name of the top-level item
  std::string MenuCaption;  // its caption
  // The caption to use if another top-level item has MenuCaption; empty if there is none.
  std::string AlternateCaption;
};

// Returns `text` without its accelerator marks "&".
std::string RemoveAmpersands(std::string_view text);

}  // namespace qrl
