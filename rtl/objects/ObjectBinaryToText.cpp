#include "rtl/objects/ObjectBinaryToText.h"

#include <cstring>
#include <utility>

#include "rtl/objects/FloatBits.h"
#include "rtl/objects/FloatText.h"
#include "rtl/objects/FormBinaryScanner.h"
#include "rtl/objects/FormPath.h"
#include "rtl/objects/FormTextPrinter.h"
#include "rtl/text/Unicode.h"

namespace rtl {

namespace {

// One conversion. The path of the open nodes replaces a call stack.
class TBinaryForm {
 public:
  TBinaryForm(std::string_view data, TByteSink& sink, const TBinaryTextOptions& options)
      : FScanner(data, options.FirstOffset, FPath),
        FOut(sink, options.ForPeople, options.Indented),
        FForPeople(options.ForPeople) {}

  TBinaryInfo Convert();

 private:
  void Open(TFormNode node, std::string_view name = {});
  void Close();
  size_t Level() const { return FPath.Depth(); }

  void ObjectHeader();
  void Properties(TFormFrame& frame);
  void Children();
  void Collection(TFormFrame& frame);
  void List();
  void Value(size_t level);
  void Position(const TStoredInteger& position);
  void Set();
  void Float(TValueType kind, const TFloatFormat& format, TFloatStyle style, std::string_view suffix = {});
  void NarrowString(TValueType kind, std::string_view bytes, size_t level);
  void WideString(std::string_view bytes, size_t level);
  void Utf8String(std::string_view bytes, size_t level);

  TFormPath FPath;
  TFormBinaryScanner FScanner;
  TFormTextPrinter FOut;
  const bool FForPeople;
  std::u16string FUnits;  // a member, so that its memory is used for all strings
  TBinaryInfo FInfo;
  bool FEmptyStringSeen = false;
};

void TBinaryForm::Open(TFormNode node, std::string_view name) {
  if (FPath.Depth() == kMaxNesting)
    FScanner.Fail("nesting of more than " + std::to_string(kMaxNesting) + " levels");
  FPath.Push(node, name);
}

// Closes the innermost node. If it was the value of a property, the line ends.
void TBinaryForm::Close() {
  FPath.Pop();
  if (FPath.Empty()) return;
  const TFormNode node = FPath.Top().Node;
  if (node == TFormNode::Properties || node == TFormNode::Item) FOut.EndLine();
}

TBinaryInfo TBinaryForm::Convert() {
  if (!FScanner.AcceptSignature()) FScanner.Fail("the signature TPF0 is missing");
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
  FInfo.Size = FScanner.Offset();
  return std::move(FInfo);
}

void TBinaryForm::ObjectHeader() {
  const size_t level = Level();
  uint8_t flags = 0;
  if (const uint8_t first = FScanner.Peek("an object"); (first & kPrefixMark) == kPrefixMark) {
    flags = first & ~kPrefixMark;
    const bool bothKeywords = (flags & ffInherited) && (flags & ffInline);
    if (bothKeywords || flags > (ffInherited | ffChildPos | ffInline)) FScanner.Fail("unknown object flags");
    FScanner.Take(1, "an object");
  }
  TStoredInteger position{};
  if (flags & ffChildPos) position = FScanner.SmallInteger("an object's position");
  const std::string_view className = FScanner.Name(TNameRule::Plain, "a class name");
  const std::string_view name = FScanner.Name(TNameRule::Optional, "an object's name");
  FOut.Indent(level);
  FOut.Text(flags & ffInherited ? "inherited " : flags & ffInline ? "inline " : "object ");
  if (!name.empty()) {
    FOut.Text(name);
    FOut.Text(": ");
  }
  FOut.Text(className);
  if (flags & ffChildPos) Position(position);
  FOut.EndLine();
  if (FPath.Empty()) FInfo.ClassName = className;
  Open(TFormNode::Properties, name.empty() ? className : name);
}

void TBinaryForm::Position(const TStoredInteger& position) {
  FOut.Text(" [");
  FOut.Integer(position);
  FOut.Text("]");
}

void TBinaryForm::Properties(TFormFrame& frame) {
  // Up to the end of the list, or to a value that opens a node of its own.
  const size_t depth = FPath.Depth();
  const size_t level = Level();
  while (frame.Property = {}, !FScanner.EndOfList("a property")) {
    frame.Property = FScanner.Name(TNameRule::Plain, "a property's name");
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
  if (!FScanner.EndOfList("an object")) return ObjectHeader();
  FPath.Pop();
  FOut.Indent(Level());
  FOut.Text("end");
  FOut.EndLine();
}

void TBinaryForm::Collection(TFormFrame& frame) {
  if (FScanner.EndOfList("a collection item")) {
    FOut.Text(">");
    return Close();
  }
  ++frame.Index;
  FOut.EndLine();
  FOut.Indent(Level());
  FOut.Text("item");
  const uint8_t kind = FScanner.Peek("a collection item");
  if (kind == vaInt8 || kind == vaInt16 || kind == vaInt32)
    Position(FScanner.SmallInteger("a collection item"));
  const char* at = FScanner.Position();
  if (FScanner.Number<uint8_t>("a collection item") != vaList)
    FScanner.FailAt(at, "a collection item that is no list of properties");
  FOut.EndLine();
  Open(TFormNode::Item);
}

void TBinaryForm::List() {
  const size_t depth = FPath.Depth();
  const size_t level = Level();
  while (!FScanner.EndOfList("a value")) {
    FOut.EndLine();
    FOut.Indent(level);
    Value(level);
    if (FPath.Depth() != depth) return;
  }
  FOut.Text(")");
  Close();
}

// Converts a value whose first line has the indentation `level`. Lists and collections are only opened.
void TBinaryForm::Value(size_t level) {
  const char* at = FScanner.Position();
  const uint8_t kind = FScanner.Number<uint8_t>("a value");
  switch (kind) {
    case vaNull:
      return FOut.Text("Null");
    case vaList:
      FOut.Text("(");
      return Open(TFormNode::List);
    case vaInt8:
    case vaInt16:
    case vaInt32:
    case vaInt64:
      return FOut.Integer(FScanner.Integer(kind, "an integer"));
    case vaExtended:
      return Float(vaExtended, kExtendedFormat, TFloatStyle::Fraction);
    case vaDouble:
      return Float(vaDouble, kDoubleFormat, TFloatStyle::Marked);
    case vaSingle:
      return Float(vaSingle, kSingleFormat, TFloatStyle::Short, "s");
    case vaDate:
      return Float(vaDate, kDoubleFormat, TFloatStyle::Short, "d");
    case vaCurrency:
      FOut.Integer({FScanner.Number<int64_t>("a currency value"), 0});
      return FOut.Text("c");
    case vaString:
      return NarrowString(vaString, FScanner.ShortText("a string"), level);
    case vaLString:
      return NarrowString(vaLString, FScanner.LongText(1, "a string"), level);
    case vaWString:
      return WideString(FScanner.LongText(2, "a wide string"), level);
    case vaUTF8String:
      return Utf8String(FScanner.LongText(1, "a UTF-8 string"), level);
    case vaIdent:
      return FOut.Text(FScanner.Name(TNameRule::Plain, "an identifier"));
    case vaFalse:
      return FOut.Text("False");
    case vaTrue:
      return FOut.Text("True");
    case vaNil:
      return FOut.Text("nil");
    case vaBinary:
      return FOut.Binary(FScanner.LongText(1, "binary data"), level);
    case vaSet:
      return Set();
    case vaCollection:
      FOut.Text("<");
      return Open(TFormNode::Collection);
    default:
      FScanner.FailAt(at, "unknown kind of value " + std::to_string(kind));
  }
}

void TBinaryForm::Set() {
  FOut.Text("[");
  for (bool first = true; !FScanner.EndOfList("an element of a set"); first = false) {
    if (!first) FOut.Text(", ");
    FOut.Text(FScanner.Name(TNameRule::Element, "an element of a set"));
  }
  FOut.Text("]");
}

void TBinaryForm::Float(TValueType kind, const TFloatFormat& format, TFloatStyle style,
                        std::string_view suffix) {
  const char* at = FScanner.Position();
  const std::string_view bytes = FScanner.Take(static_cast<size_t>(format.Size()), "a floating-point number");
  TFloat value;
  if (DecodeFloat(bytes.data(), format, value)) {
    FOut.Float(value, format, style);
    return FOut.Text(suffix);
  }
  if (FForPeople)
    FScanner.FailAt(at, "a floating-point number that is infinite, not a number or not normalised");
  FOut.Text(FormatFloatBits(kind, bytes));
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
  if (malformed != std::string_view::npos) FScanner.FailAt(bytes.data() + malformed, "malformed UTF-8");
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
  // Generous, because untouched memory costs nothing, and growing would need both blocks at the same time.
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
