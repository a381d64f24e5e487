#include "cli/Pager.h"

namespace cli {

void TPager::Finish() {}

bool TPager::Start() {
  return false;
}

void TPager::Write(std::string_view /*text*/) {}

}  // namespace cli
