#include "desktop/SourceText.h"

#include <QHash>
#include <memory>

#include "MigWizard/passes/FormFile.h"
#include "MigWizard/passes/TextFile.h"
#include "desktop/QtText.h"
#include "rtl/text/Streams.h"
#include "win/paths/CodePage.h"

namespace desktop {

namespace {

constexpr uint32_t kUtf8CodePage = 65001;

// Converts characters to the bytes of the source code page. Where two byte sequences mean one character, it
// writes the first. A file with the second does not convert back to its bytes, and so is not editable.
class TCodePageWriter {
 public:
  explicit TCodePageWriter(uint32_t codePage) : CodePage(codePage) {
    for (int byte = 128; byte < 256; ++byte) {
      const std::string lead(1, static_cast<char>(byte));
      if (!win::IsDBCSLeadByte(static_cast<uint8_t>(byte))) {
        Add(lead);
        continue;
      }
      for (int trail = 0; trail < 256; ++trail) {
        if (win::IsDBCSTrailByte(static_cast<uint8_t>(trail))) Add(lead + static_cast<char>(trail));
      }
    }
  }

  const uint32_t CodePage;

  std::optional<std::string> Write(const QString& text, QString& missing) const {
    std::string bytes;
    bytes.reserve(static_cast<size_t>(text.size()));
    for (qsizetype i = 0; i < text.size(); ++i) {
      if (text[i].unicode() < 128) {
        bytes += static_cast<char>(text[i].unicode());
        continue;
      }
      const QString character = text.mid(i, text[i].isHighSurrogate() ? 2 : 1);
      const auto found = FBytes.constFind(character);
      if (found == FBytes.constEnd()) {
        missing = character;
        return std::nullopt;
      }
      bytes += *found;
      i += character.size() - 1;
    }
    return bytes;
  }

 private:
  void Add(const std::string& bytes) {
    const QString character = ToQt(win::SourceToUtf8(bytes));
    if (character.contains(QChar::ReplacementCharacter) || FBytes.contains(character)) return;
    FBytes.insert(character, bytes);
  }

  QHash<QString, std::string> FBytes;
};

const TCodePageWriter& CodePageWriter() {
  static std::unique_ptr<TCodePageWriter> writer;
  if (!writer || writer->CodePage != win::GetACP()) writer = std::make_unique<TCodePageWriter>(win::GetACP());
  return *writer;
}

}  // namespace

TSourceText::TSourceText(std::string_view bytes, bool isForm) {
  try {
    Read(bytes, isForm);
  } catch (const std::exception& error) {
    FEncoding = "Unreadable";
    FReadOnlyReason = ToQt(error.what());
  }
}

void TSourceText::Read(std::string_view bytes, bool isForm) {
  mig::TFormFile file;
  if (isForm) {
    file = mig::DecodeFormFile(std::string(bytes));
  } else {
    mig::TTextFile source = mig::DecodeTextFile(std::string(bytes));
    file.Encoding = source.Encoding;
    file.Text = std::move(source.Text);
  }
  if (*file.Encoding == qrl::TEncoding::Unicode()) {
    FKind = TKind::Utf16;
    FEncoding = "UTF-16";
  } else if (*file.Encoding == qrl::TEncoding::UTF8()) {
    FKind = TKind::Utf8;
    FEncoding = "UTF-8";
  } else {
    FEncoding = file.IsBinary ? QString("Binary form") : QString("Code page %1").arg(win::GetACP());
  }
  FText = ToQt(FKind == TKind::CodePage ? win::SourceToUtf8(file.Text) : file.Text);
  FHasCarriageReturns = !FText.contains('\n') || FText.contains("\r\n");
  if (file.IsBinary) {
    FReadOnlyReason = "a binary form is shown as text";
    FText.remove('\r');
    return;
  }
  if (FHasCarriageReturns) FText.replace("\r\n", "\n");
  QString missing;
  if (Encode(FText, missing) != bytes) {
    FReadOnlyReason = "as text it would not keep all its bytes";
    FText.replace("\r\n", "\n").replace('\r', '\n');
  }
}

std::optional<std::string> TSourceText::Encode(const QString& text, QString& missing) const {
  QString lines = text;
  if (FHasCarriageReturns) lines.replace("\n", "\r\n");
  if (FKind == TKind::Utf8) return "\xEF\xBB\xBF" + FromQt(lines);
  if (FKind == TKind::Utf16) {
    std::string bytes = "\xFF\xFE";
    bytes.reserve(2 + 2 * static_cast<size_t>(lines.size()));
    for (const QChar unit : lines) {
      bytes += static_cast<char>(unit.unicode() & 0xFF);
      bytes += static_cast<char>(unit.unicode() >> 8);
    }
    return bytes;
  }
  if (win::GetACP() == kUtf8CodePage) return FromQt(lines);
  return CodePageWriter().Write(lines, missing);
}

}  // namespace desktop
