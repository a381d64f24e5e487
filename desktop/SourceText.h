// Converts a source or form file to text for display, and edited text back to bytes.
//
//   TSourceText source(bytes, /*isForm=*/true);
//   std::optional<std::string> again = source.Encode(source.Text(), missing);   // == bytes
//
// A file can be edited only if its text converts back to exactly its bytes. All other files are read-only,
// such as those with bytes that the code page lacks. A binary form is shown as indented text, and becomes a
// binary form again.
#pragma once

#include <QString>
#include <optional>
#include <string>
#include <string_view>

#include "MigWizard/passes/FormFile.h"

namespace desktop {

class TSourceText {
 public:
  // `bytes` are those of a file, including a byte order mark. With `isForm`, binary forms are recognised.
  // Without a mark the text is in `codePage`, one of win::SupportedCodePages, or 0 for the source code page.
  // Raises nothing: if the file cannot be read as text, the text is empty and ReadOnlyReason has the reason.
  TSourceText(std::string_view bytes, bool isForm, uint32_t codePage = 0);

  // Returns the text. Lines end with LF alone, or as in the file if they do not all end alike.
  const QString& Text() const { return FText; }
  // "UTF-8", "Code page 1252", "Binary form".
  const QString& Encoding() const { return FEncoding; }
  // Returns whether the code page decides how the bytes are read.
  bool IsInCodePage() const { return FKind == TKind::CodePage; }
  // "CR LF", "LF" or "Mixed line ends".
  QString LineEnds() const;
  // Empty if the text can be edited; otherwise the reason why not.
  const QString& ReadOnlyReason() const { return FReadOnlyReason; }
  void MakeReadOnly(const QString& reason) { FReadOnlyReason = reason; }

  // Returns whether the encoding has all characters of `text`. If not, stores the first that it lacks in
  // `missing`.
  bool CanHold(const QString& text, QString& missing) const;
  // Returns the bytes of a file of this kind with that text, whose lines end as in Text. If the encoding
  // lacks one of its characters, returns nullopt and stores that character in `missing`. Raises
  // rtl::EParserError "Form text, line N: ..." if this is a binary form and the text is not a valid form.
  std::optional<std::string> Encode(const QString& text, QString& missing) const;

 private:
  enum class TKind { CodePage, Utf8, Utf16 };
  enum class TLineEnds { CrLf, Lf, Mixed };
  void Read(std::string_view bytes);
  void ReadBinary(std::string_view bytes);
  void SetText(const std::string& text);
  std::string EncodeBinary(const std::string& text) const;
  std::optional<std::string> EncodeText(const QString& lines, QString& missing) const;

  uint32_t FCodePage;
  TKind FKind = TKind::CodePage;
  TLineEnds FLineEnds = TLineEnds::CrLf;
  std::optional<mig::TRCData> FBinary;  // of a binary form
  QString FText;
  QString FEncoding;
  QString FReadOnlyReason;
};

}  // namespace desktop
