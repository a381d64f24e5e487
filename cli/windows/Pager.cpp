#include "cli/Pager.h"

namespace cli {

TPager::~TPager() = default;

bool TPager::Start() {
  return false;
}

void TPager::Write(std::string_view /*text*/) {}

}  // namespace cli
