#include "rtl/text/LocalTime.h"

#include <cerrno>
#include <ctime>
#include <locale.h>
#include <memory>
#include <new>
#include <type_traits>

namespace rtl {
namespace {

struct TFreeLocale {
  void operator()(locale_t locale) const { freelocale(locale); }
};
using TLocale = std::unique_ptr<std::remove_pointer_t<locale_t>, TFreeLocale>;

// Returns the locale of the environment, or the classic one if that is not installed. std::locale("") is not
// used, because it ends the process when memory runs out in it.
TLocale UserLocale() {
  TLocale locale(newlocale(LC_TIME_MASK, "", nullptr));
  if (!locale && errno != ENOMEM) locale.reset(newlocale(LC_TIME_MASK, "C", nullptr));
  if (!locale) throw std::bad_alloc();
  return locale;
}

}  // namespace

std::string DateTimeNowToStr() {
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  char text[256];
  return {text, strftime_l(text, sizeof text, "%x %X", &local, UserLocale().get())};
}

}  // namespace rtl
