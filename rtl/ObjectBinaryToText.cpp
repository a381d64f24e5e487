#include "rtl/ObjectBinaryToText.h"

#include <bit>
#include <cstring>
#include <utility>

#include "rtl/FloatText.h"
#include "rtl/FormPath.h"
#include "rtl/FormTextPrinter.h"
#include "rtl/Utf16.h"

namespace rtl {

namespace {

static_assert(std::endian::native == std::endian::little, "numbers are copied as they lie in the data");

// Which names a place of the data takes.
enum class TNameKind {
  Plain,     // a name, or several with dots between them
  Optional,  // or nothing
  Element,   // of a set: a name or a whole number
};

// One conversion: a cursor on the data, and the path of what is open in place of a call stack.
class TBinaryForm {
 public:
  TBinaryForm(std::string_view data, TByteSink& sink, const TBinaryTextOptions& options)
      : FBegin(data.data()),
        FNext(data.data()),
        FEnd(data.data() + data.size()),
        FOptions(options),
        FOut(sink, options.ForPeople, options.Indented) {}

  TBinaryInfo Convert();

 private:
  [[noreturn]] void Fail(const char* at, std::string_view reason) const;
  [[noreturn]] void FailShort(uint64_t count, std::string_view what) const;
  [[noreturn]] void FailEnd(std::string_view what) const;

  // Cursor. Each operation moves behind what it gives; `what` names it in a message.
  size_t Left() const { return static_cast<size_t>(FEnd - FNext); }
  std::string_view Take(uint64_t count, std::string_view what) {
    if (count > Left()) FailShort(count, what);
    return {std::exchange(FNext, FNext + count), static_cast<size_t>(count)};
  }
  template <typename T>
  T Number(std::string_view what) {
    T number;
    std::memcpy(&number, Take(sizeof(T), what).data(), sizeof(T));
    return number;
  }
  std::string_view ShortText(std::string_view what) {
    const uint8_t length = Number<uint8_t>(what);
    return Take(length, what);
  }
  std::string_view LongText(size_t unitSize, std::string_view what);
  std::string_view Name(TNameKind kind, std::string_view what);
  uint8_t Peek(std::string_view what) const {
    if (FNext == FEnd) FailEnd(what);
    return static_cast<uint8_t>(*FNext);
  }
  bool EndOfList(std::string_view what) {  // takes the 0 byte
    if (Peek(what) != 0) return false;
    ++FNext;
    return true;
  }

  void Open(TFormNode node, std::string_view name = {});
  void Close();
  size_t Level() const { return FPath.Depth(); }

  void ObjectHeader();
  void Properties(TFormFrame& frame);
  void Children();
  void Collection(TFormFrame& frame);
  void List();
  void Value(size_t level);
  void Position();
  void Set();
  void Float(const TFloatFormat& format, TFloatStyle style, std::string_view suffix);
  void NarrowString(TValueType kind, std::string_view bytes, size_t level);
  void WideString(std::string_view bytes, size_t level);
  void Utf8String(std::string_view bytes, size_t level);

  const char* FBegin;
  const char* FNext;
  const char* FEnd;
  const TBinaryTextOptions& FOptions;
  TFormTextPrinter FOut;
  TFormPath FPath;
  std::u16string FUnits;  // kept between strings for its memory
  TBinaryInfo FInfo;
  bool FEmptyStringSeen = false;
};

void TBinaryForm::Fail(const char* at, std::string_view reason) const {
  std::string message = "Form data at offset ";
  message += std::to_string(FOptions.FirstOffset + static_cast<size_t>(at - FBegin));
  message.append(": ").append(reason);
  const std::string path = FPath.Describe();
  if (!path.empty()) message.append(" (").append(path).append(")");
  throw EFilerError(message + ".");
}

void TBinaryForm::FailShort(uint64_t count, std::string_view what) const {
  Fail(FNext, std::string(what) + " of " + std::to_string(count) + " bytes, but only " +
                  std::to_string(Left()) + " are left");
}

void TBinaryForm::FailEnd(std::string_view what) const {
  Fail(FNext, "the data ends where " + std::string(what) + " must follow");
}

std::string_view TBinaryForm::LongText(size_t unitSize, std::string_view what) {
  const char* at = FNext;
  const int32_t length = Number<int32_t>(what);
  if (length < 0) Fail(at, std::string(what) + " of negative length " + std::to_string(length));
  return Take(static_cast<uint64_t>(length) * unitSize, what);
}

// Names, dots between them.
bool IsDottedName(std::string_view text) {
  if (text.empty() || !IsNameStart(text[0])) return false;
  bool dots = false;
  for (const char character : text.substr(1)) {
    if (IsNamePart(character)) continue;
    if (character != '.') return false;
    dots = true;
  }
  if (!dots) return true;
  for (size_t dot = text.find('.'); dot != std::string_view::npos; dot = text.find('.', dot + 1))
    if (dot + 1 == text.size() || !IsNameStart(text[dot + 1])) return false;
  return true;
}

bool IsWholeNumber(std::string_view text) {
  if (!text.empty() && text[0] == '-') text.remove_prefix(1);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

std::string_view TBinaryForm::Name(TNameKind kind, std::string_view what) {
  const char* at = FNext;
  const std::string_view name = ShortText(what);
  if (IsDottedName(name)) return name;
  if (kind == TNameKind::Optional && name.empty()) return name;
  if (kind == TNameKind::Element && IsWholeNumber(name)) return name;
  Fail(at, std::string(what) + " that is no name");
}

void TBinaryForm::Open(TFormNode node, std::string_view name) {
  if (FPath.Depth() == kMaxNesting)
    Fail(FNext, "nesting of more than " + std::to_string(kMaxNesting) + " levels");
  FPath.Push(node, name);
}

// Leaves an item of the path. A value that ends a property line ends the line.
void TBinaryForm::Close() {
  FPath.Pop();
  if (FPath.Empty()) return;
  const TFormNode node = FPath.Top().Node;
  if (node == TFormNode::Properties || node == TFormNode::Item) FOut.EndLine();
}

TBinaryInfo TBinaryForm::Convert() {
  if (Left() < kObjectSignature.size() ||
      std::memcmp(FNext, kObjectSignature.data(), kObjectSignature.size()) != 0)
    Fail(FNext, "the signature TPF0 is missing");
  FNext += kObjectSignature.size();
  ObjectHeader();
  while (!FPath.Empty()) {
    TFormFrame& frame = FPath.Top();
    switch (frame.Node) {
      case TFormNode::Properties:
      case TFormNode::Item:
        Properties(frame);
        break;
      case TFormNode::Children:
        Children();
        break;
      case TFormNode::Collection:
        Collection(frame);
        break;
      case TFormNode::List:
        List();
        break;
    }
  }
  FInfo.Size = static_cast<size_t>(FNext - FBegin);
  return std::move(FInfo);
}

void TBinaryForm::ObjectHeader() {
  const size_t level = Level();
  uint8_t flags = 0;
  if ((Peek("an object") & kPrefixMark) == kPrefixMark) {
    flags = static_cast<uint8_t>(*FNext) & 0x0F;
    const bool bothKeywords = (flags & ffInherited) && (flags & ffInline);
    if (bothKeywords || flags > (ffInherited | ffChildPos | ffInline)) Fail(FNext, "unknown object flags");
    ++FNext;
  }
  const char* position = FNext;
  if (flags & ffChildPos) {
    // Its place in the text is at the end of the line.
    const uint8_t kind = Peek("an object's position");
    Take(kind == vaInt8 ? 2 : kind == vaInt16 ? 3 : kind == vaInt32 ? 5 : 0, "an object's position");
    if (FNext == position) Fail(position, "an object's position is no integer");
  }
  const std::string_view className = Name(TNameKind::Plain, "a class name");
  const std::string_view name = Name(TNameKind::Optional, "an object's name");
  FOut.Indent(level);
  FOut.Text(flags & ffInherited ? "inherited " : flags & ffInline ? "inline " : "object ");
  if (!name.empty()) {
    FOut.Text(name);
    FOut.Text(": ");
  }
  FOut.Text(className);
  if (flags & ffChildPos) {
    const char* end = std::exchange(FNext, position);
    Position();
    FNext = end;
  }
  FOut.EndLine();
  if (FPath.Empty()) FInfo.ClassName = className;
  Open(TFormNode::Properties, name.empty() ? className : name);
}

void TBinaryForm::Position() {
  FOut.Text(" [");
  switch (Number<uint8_t>("a position")) {
    case vaInt8:
      FOut.Integer(Number<int8_t>("a position"));
      break;
    case vaInt16:
      FOut.Integer(Number<int16_t>("a position"));
      break;
    default:
      FOut.Integer(Number<int32_t>("a position"));
      break;
  }
  FOut.Text("]");
}

void TBinaryForm::Properties(TFormFrame& frame) {
  // Until the list ends or a value opens a level of its own.
  const size_t depth = FPath.Depth();
  const size_t level = Level();
  while (frame.Property = {}, !EndOfList("a property")) {
    frame.Property = Name(TNameKind::Plain, "a property's name");
    FOut.PropertyName(level, frame.Property);
    Value(level);
    if (FPath.Depth() != depth) return;
    FOut.EndLine();
  }
  if (frame.Node == TFormNode::Item) {
    FOut.Indent(level - 1);
    FOut.Text("end");
    FPath.Pop();
  } else {
    frame.Node = TFormNode::Children;
  }
}

void TBinaryForm::Children() {
  if (!EndOfList("an object")) return ObjectHeader();
  FPath.Pop();
  FOut.Indent(Level());
  FOut.Text("end");
  FOut.EndLine();
}

void TBinaryForm::Collection(TFormFrame& frame) {
  if (EndOfList("a collection item")) {
    FOut.Text(">");
    return Close();
  }
  ++frame.Index;
  FOut.EndLine();
  FOut.Indent(Level());
  FOut.Text("item");
  const uint8_t kind = Peek("a collection item");
  if (kind == vaInt8 || kind == vaInt16 || kind == vaInt32) Position();
  const char* at = FNext;
  if (Number<uint8_t>("a collection item") != vaList)
    Fail(at, "a collection item that is no list of properties");
  FOut.EndLine();
  Open(TFormNode::Item);
}

void TBinaryForm::List() {
  const size_t depth = FPath.Depth();
  const size_t level = Level();
  while (!EndOfList("a value")) {
    FOut.EndLine();
    FOut.Indent(level);
    Value(level);
    if (FPath.Depth() != depth) return;
  }
  FOut.Text(")");
  Close();
}

// A value whose first line has the indentation `level`. Lists and collections are only opened.
void TBinaryForm::Value(size_t level) {
  const char* at = FNext;
  const uint8_t kind = Number<uint8_t>("a value");
  switch (kind) {
    case vaNull:
      return FOut.Text("Null");
    case vaList:
      FOut.Text("(");
      return Open(TFormNode::List);
    case vaInt8:
      return FOut.Integer(Number<int8_t>("an integer"));
    case vaInt16:
      return FOut.Integer(Number<int16_t>("an integer"));
    case vaInt32:
      return FOut.Integer(Number<int32_t>("an integer"));
    case vaInt64:
      return FOut.Integer(Number<int64_t>("an integer"));
    case vaExtended:
      return Float(kExtendedFormat, TFloatStyle::Fraction, {});
    case vaDouble:
      return Float(kDoubleFormat, TFloatStyle::Marked, {});
    case vaSingle:
      return Float(kSingleFormat, TFloatStyle::Short, "s");
    case vaDate:
      return Float(kDoubleFormat, TFloatStyle::Short, "d");
    case vaCurrency:
      FOut.Integer(Number<int64_t>("a currency value"));
      return FOut.Text("c");
    case vaString:
      return NarrowString(vaString, ShortText("a string"), level);
    case vaLString:
      return NarrowString(vaLString, LongText(1, "a string"), level);
    case vaWString:
      return WideString(LongText(2, "a wide string"), level);
    case vaUTF8String:
      return Utf8String(LongText(1, "a UTF-8 string"), level);
    case vaIdent:
      return FOut.Text(Name(TNameKind::Plain, "an identifier"));
    case vaFalse:
      return FOut.Text("False");
    case vaTrue:
      return FOut.Text("True");
    case vaNil:
      return FOut.Text("nil");
    case vaBinary:
      return FOut.Binary(LongText(1, "binary data"), level);
    case vaSet:
      return Set();
    case vaCollection:
      FOut.Text("<");
      return Open(TFormNode::Collection);
    default:
      Fail(at, "unknown kind of value " + std::to_string(kind));
  }
}

void TBinaryForm::Set() {
  FOut.Text("[");
  for (bool first = true; !EndOfList("an element of a set"); first = false) {
    if (!first) FOut.Text(", ");
    FOut.Text(Name(TNameKind::Element, "an element of a set"));
  }
  FOut.Text("]");
}

void TBinaryForm::Float(const TFloatFormat& format, TFloatStyle style, std::string_view suffix) {
  const char* at = FNext;
  const size_t size = format.Precision == 64 ? 10 : format.Precision == 53 ? 8 : 4;
  TFloat value;
  if (!DecodeFloat(Take(size, "a floating-point number").data(), format, value))
    Fail(at, "a floating-point number that is infinite, not a number or not normalised");
  FOut.Float(value, format, style);
  FOut.Text(suffix);
}

void TBinaryForm::NarrowString(TValueType kind, std::string_view bytes, size_t level) {
  if (bytes.empty() && !std::exchange(FEmptyStringSeen, true)) FInfo.EmptyString = kind;
  FOut.NarrowString(bytes, level);
}

void TBinaryForm::WideString(std::string_view bytes, size_t level) {
  if (bytes.empty()) return NarrowString(vaWString, bytes, level);
  FUnits.resize(bytes.size() / 2);
  std::memcpy(FUnits.data(), bytes.data(), bytes.size());
  FOut.WideString(FUnits, level);
}

void TBinaryForm::Utf8String(std::string_view bytes, size_t level) {
  if (bytes.empty()) return NarrowString(vaUTF8String, bytes, level);
  FUnits.clear();
  const size_t malformed = Utf8ToUtf16(bytes, TSurrogates::Refuse, FUnits);
  if (malformed != std::string_view::npos) Fail(bytes.data() + malformed, "malformed UTF-8");
  FOut.WideString(FUnits, level);
}

}  // namespace

TBinaryInfo ObjectBinaryToText(std::string_view binary, TByteSink& text, const TBinaryTextOptions& options) {
  TBinaryInfo info = TBinaryForm(binary, text, options).Convert();
  text.Flush();
  return info;
}

std::string ObjectBinaryToText(std::string_view binary, const TBinaryTextOptions& options,
                               TBinaryInfo& info) {
  std::string text;
  // Generous, because memory that is not written to is not taken, and growing would hold the text twice.
  text.reserve(binary.size() * 4 + 4096);
  TStringSink sink(text);
  info = ObjectBinaryToText(binary, sink, options);
  return text;
}

TBinaryInfo ObjectBinaryToText(TStream& input, TStream& output, const TBinaryTextOptions& options) {
  const int64_t start = input.Position();
  const std::string binary = input.ReadToEnd();
  TStreamSink sink(output);
  TBinaryInfo info = ObjectBinaryToText(binary, sink, options);
  input.SetPosition(start + static_cast<int64_t>(info.Size));
  return info;
}

}  // namespace rtl
