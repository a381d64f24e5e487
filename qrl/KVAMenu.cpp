#include "qrl/KVAMenu.h"

namespace qrl {

const TProductMenu& Menu() {
  static const TProductMenu menu{"KORVAMenu", "&KORVA", "&KORVA Data Access"};
  return menu;
}

}  // namespace qrl
