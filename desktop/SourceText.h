// Converts a source or form file to text for display, and edited text back to bytes.
//
// A file can be edited only if its text converts back to exactly its bytes. All other files are read-only:
// binary forms, bytes that the code page lacks, mixed line ends.
#pragma once

#include <QString>
#include <optional>
#include <string>
#include <string_view>

namespace desktop {

class TSourceText {
 public:
  // `bytes` are those of a file, including a byte order mark. With `isForm`, binary forms are recognised.
  // Raises nothing: if the file cannot be read as text, the text is empty and ReadOnlyReason has the reason.
  TSourceText(std::string_view bytes, bool isForm);

  // Returns the text. Lines end with LF alone.
  const QString& Text() const { return FText; }
  // "UTF-8", "Windows-1252", "Binary form".
  const QString& Encoding() const { return FEncoding; }
  // "CR LF" or "LF".
  QString LineEnds() const { return FHasCarriageReturns ? "CR LF" : "LF"; }
  // Empty if the text can be edited; otherwise the reason why not.
  const QString& ReadOnlyReason() const { return FReadOnlyReason; }
  // Returns the bytes of a file of this kind with that text, whose lines end with LF. If the encoding lacks
  // one of its characters, returns nullopt and stores that character in `missing`.
  std::optional<std::string> Encode(const QString& text, QString& missing) const;

 private:
  enum class TKind { CodePage, Utf8, Utf16 };
  void Read(std::string_view bytes, bool isForm);

  TKind FKind = TKind::CodePage;
  bool FHasCarriageReturns = true;
  QString FText;
  QString FEncoding;
  QString FReadOnlyReason;
};

}  // namespace desktop
