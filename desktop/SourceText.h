// The text of a source or form file as people read it, and its bytes again.
//
// A file is only ever edited as text if its own text gives back its own bytes. Whatever does not - binary
// forms, bytes that the code page lacks, lines that end now so and now so - is shown, and stays as it is.
#pragma once

#include <QString>
#include <optional>
#include <string>
#include <string_view>

namespace desktop {

class TSourceText {
 public:
  // `bytes` are a file's, its mark among them. With `isForm` a binary form is taken for what it is. Never
  // raises: a file that cannot be read as text has an empty one, with the reason.
  TSourceText(std::string_view bytes, bool isForm);

  // Lines end with LF alone.
  const QString& Text() const { return FText; }
  // "UTF-8", "Windows-1252", "Binary form".
  const QString& Encoding() const { return FEncoding; }
  // "CR LF" or "LF".
  QString LineEnds() const { return FHasCarriageReturns ? "CR LF" : "LF"; }
  // Empty where the text can be edited; otherwise why it cannot.
  const QString& ReadOnlyReason() const { return FReadOnlyReason; }
  // The bytes of a file of this kind with that text, lines ended with LF; nothing when the encoding lacks one
  // of its characters, which `missing` then is.
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
