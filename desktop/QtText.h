// Text between the program (UTF-8) and Qt (UTF-16).
#pragma once

#include <QString>
#include <string>
#include <string_view>

namespace desktop {

inline QString ToQt(std::string_view text) {
  return QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size()));
}
inline std::string FromQt(const QString& text) {
  return text.toStdString();
}

}  // namespace desktop
