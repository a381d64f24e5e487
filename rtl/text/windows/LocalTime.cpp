#include "rtl/text/LocalTime.h"

#include <iterator>

#include "win/windows/WindowsApi.h"
#include "win/windows/WindowsText.h"

namespace rtl {

std::string DateTimeNowToStr() {
  SYSTEMTIME now;
  GetLocalTime(&now);
  wchar_t date[128] = {}, time[128] = {};
  GetDateFormatEx(LOCALE_NAME_USER_DEFAULT, DATE_SHORTDATE, &now, nullptr, date, std::size(date), nullptr);
  GetTimeFormatEx(LOCALE_NAME_USER_DEFAULT, 0, &now, nullptr, time, std::size(time));
  return win::ToUtf8OrReplaced(date) + " " + win::ToUtf8OrReplaced(time);
}

}  // namespace rtl
