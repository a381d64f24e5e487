#include "desktop/SourceText.h"

#include <QHash>
#include <algorithm>
#include <limits>
#include <map>
#include <mutex>

#include "MigWizard/passes/TextFile.h"
#include "desktop/QtText.h"
#include "rtl/objects/ObjectBinaryToText.h"
#include "rtl/objects/ObjectTextToBinary.h"
#include "rtl/text/Streams.h"
#include "win/paths/CodePage.h"

namespace desktop {

namespace {

// Converts characters to the bytes of a code page. Where two byte sequences mean one character, it
// writes the first. A file with the second does not convert back to its bytes, and so is not editable.
class TCodePageWriter {
 public:
  explicit TCodePageWriter(uint32_t codePage) {
    for (int byte = 128; byte < 256; ++byte) {
      const std::string lead(1, static_cast<char>(byte));
      if (!win::IsDBCSLeadByteEx(codePage, static_cast<uint8_t>(byte))) {
        Add(codePage, lead);
        continue;
      }
      for (int trail = 0; trail < 256; ++trail) {
        if (win::IsDBCSTrailByte(static_cast<uint8_t>(trail))) Add(codePage, lead + static_cast<char>(trail));
      }
    }
  }

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
  void Add(uint32_t codePage, const std::string& bytes) {
    const QString character = ToQt(win::CodePageToUtf8(codePage, bytes));
    if (character.contains(QChar::ReplacementCharacter) || FBytes.contains(character)) return;
    FBytes.insert(character, bytes);
  }

  QHash<QString, std::string> FBytes;
};

// Returns the writer of a code page. May be called by several threads.
const TCodePageWriter& CodePageWriter(uint32_t codePage) {
  static std::mutex mutex;
  static std::map<uint32_t, const TCodePageWriter> writers;
  const std::lock_guard lock(mutex);
  return writers.try_emplace(codePage, codePage).first->second;
}

}  // namespace

TSourceText::TSourceText(std::string_view bytes, bool isForm, uint32_t codePage)
    : FCodePage(codePage != 0 ? codePage : win::GetACP()) {
  try {
    if (isForm && mig::IsBinaryForm(bytes)) {
      ReadBinary(bytes);
    } else {
      Read(bytes);
    }
  } catch (const std::exception& error) {
    FEncoding = "Unreadable";
    FReadOnlyReason = ToQt(error.what());
  }
}

void TSourceText::Read(std::string_view bytes) {
  const mig::TTextFile file = mig::DecodeTextFile(std::string(bytes));
  if (*file.Encoding == qrl::TEncoding::Unicode()) {
    FKind = TKind::Utf16;
    FEncoding = "UTF-16";
  } else if (*file.Encoding == qrl::TEncoding::UTF8()) {
    FKind = TKind::Utf8;
    FEncoding = "UTF-8";
  } else {
    FEncoding = QString("Code page %1").arg(FCodePage);
  }
  SetText(file.Text);
  QString missing;
  if (Encode(FText, missing) != bytes) FReadOnlyReason = "as text it would not keep all its bytes";
}

// The text is that for people, unless it does not give the same bytes again.
void TSourceText::ReadBinary(std::string_view bytes) {
  FEncoding = "Binary form";
  FBinary.emplace();
  const std::string_view data = mig::ReadFormHeader(bytes, *FBinary);
  const std::string_view form = bytes.substr(0, bytes.size() - data.size());
  QString missing;
  for (const bool isForPeople : {true, false}) {
    rtl::TBinaryInfo info;
    const rtl::TBinaryTextOptions options = {.ForPeople = isForPeople, .FirstOffset = form.size()};
    try {
      SetText(rtl::ObjectBinaryToText(data, options, info));
    } catch (const rtl::EFilerError&) {
      if (!isForPeople) throw;  // damaged, or the form has a number without a text
      continue;
    }
    FBinary->EmptyString = info.EmptyString;
    FReadOnlyReason.clear();
    if (Encode(FText, missing) == bytes.substr(0, form.size() + info.Size)) return;
    FReadOnlyReason = "as text it would not keep all its bytes";
  }
}

void TSourceText::SetText(const std::string& text) {
  FText = ToQt(FKind == TKind::CodePage ? win::CodePageToUtf8(FCodePage, text) : text);
  const qsizetype feeds = FText.count('\n'), returns = FText.count('\r'), pairs = FText.count("\r\n");
  FLineEnds = feeds == pairs && returns == pairs ? TLineEnds::CrLf
              : returns == 0                     ? TLineEnds::Lf
                                                 : TLineEnds::Mixed;
  if (FLineEnds == TLineEnds::CrLf) FText.remove('\r');
}

QString TSourceText::LineEnds() const {
  switch (FLineEnds) {
    case TLineEnds::CrLf:
      return "CR LF";
    case TLineEnds::Lf:
      return "LF";
    default:
      return "Mixed line ends";
  }
}

bool TSourceText::CanHold(const QString& text, QString& missing) const {
  return FKind != TKind::CodePage || EncodeText(text, missing);
}

std::optional<std::string> TSourceText::Encode(const QString& text, QString& missing) const {
  QString lines = text;
  if (FLineEnds == TLineEnds::CrLf) lines.replace("\n", "\r\n");
  std::optional<std::string> bytes = EncodeText(lines, missing);
  if (!FBinary || !bytes) return bytes;
  return EncodeBinary(*bytes);
}

std::string TSourceText::EncodeBinary(const std::string& text) const {
  rtl::TTextInfo info;
  const std::string data = rtl::ObjectTextToBinary(text, {.EmptyString = FBinary->EmptyString}, info);
  const size_t rest = text.find_first_not_of(" \t\r\n", info.Size);
  if (rest != std::string::npos) {
    const auto line = std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(rest), '\n') + 1;
    throw rtl::EParserError("Form text, line " + std::to_string(line) + ": text after the end of the form.");
  }
  if (data.size() > static_cast<size_t>(std::numeric_limits<int32_t>::max()))
    throw rtl::EParserError("A form of more than 2 GB.");
  mig::TRCData header = *FBinary;
  header.Size = static_cast<int32_t>(data.size());
  return mig::FormHeader(header) + data;
}

std::optional<std::string> TSourceText::EncodeText(const QString& lines, QString& missing) const {
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
  if (FCodePage == win::kUtf8CodePage) return FromQt(lines);
  return CodePageWriter(FCodePage).Write(lines, missing);
}

}  // namespace desktop
