// The rule of the hosts' copiers for existing targets.
#pragma once

namespace win {

// The kinds of entries that a copy may replace.
enum class TOverwriting {
  Document,  // a writable file, or a link, which is followed
  Own,       // any file, no link
  Name       // a writable file, or a link, which is itself replaced
};

}  // namespace win
