#include "desktop/ReviewMarks.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include "desktop/QtText.h"
#include "rtl/text/Exceptions.h"
#include "rtl/text/Files.h"
#include "win/FileApi.h"

namespace desktop {

namespace {

constexpr std::array<const char*, 2> kKeys = {"reviewed", "done"};
constexpr char kFolder[] = "folder";

}  // namespace

TReviewMarks::TReviewMarks(std::string_view fileName) : FFileName(fileName) {
  if (FFileName.empty()) return;
  std::string text;
  try {
    text = rtl::ReadFile(FFileName);
  } catch (const rtl::EStreamError&) {
    return;
  }
  const QJsonObject root = QJsonDocument::fromJson(QByteArray::fromStdString(text)).object();
  FFolder = FromQt(root[kFolder].toString());
  for (size_t i = 0; i < kKeys.size(); ++i) {
    const QJsonArray keys = root[kKeys[i]].toArray();
    for (const auto& key : keys) FMarks[i].insert(FromQt(key.toString()));
  }
}

void TReviewMarks::Set(TKind kind, const std::string& key, bool isSet) {
  if (isSet) {
    FMarks[Index(kind)].insert(key);
  } else {
    FMarks[Index(kind)].erase(key);
  }
}

bool TReviewMarks::Save() const {
  if (FFileName.empty()) return true;
  QJsonObject root = {{kFolder, ToQt(FFolder)}};
  for (size_t i = 0; i < kKeys.size(); ++i) {
    QJsonArray list;
    for (const std::string& key : FMarks[i]) list.append(ToQt(key));
    root[kKeys[i]] = list;
  }
  return win::ReplaceFileContents(FFileName, QJsonDocument(root).toJson().toStdString());
}

}  // namespace desktop
