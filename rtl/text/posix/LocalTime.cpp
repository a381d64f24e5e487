#include "rtl/text/LocalTime.h"

#include <ctime>
#include <locale>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace rtl {

std::string DateTimeNowToStr() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::locale user = std::locale::classic();
  try {
    user = std::locale("");
  } catch (const std::runtime_error&) {  // the environment names a locale that is not installed
  }
  std::ostringstream text;
  text.imbue(user);
  const std::string_view pattern = "%x %X";
  std::use_facet<std::time_put<char>>(user).put(text, text, ' ', &local, pattern.data(),
                                                pattern.data() + pattern.size());
  return text.str();
}

}  // namespace rtl
