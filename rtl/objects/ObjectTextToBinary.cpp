#include "rtl/objects/ObjectTextToBinary.h"

#include <algorithm>
#include <cstring>
#include <limits>

#include "rtl/objects/FloatBits.h"
#include "rtl/objects/FloatText.h"
#include "rtl/objects/FormPath.h"
#include "rtl/objects/FormTextScanner.h"
#include "rtl/text/SysUtils.h"
#include "rtl/text/Unicode.h"

namespace rtl {

namespace {

constexpr size_t kPositionWidth = 2;  // 32 bits

// One conversion. The path of the open nodes replaces a call stack.
class TTextForm {
 public:
  TTextForm(std::string_view text, TByteSink& sink, const TTextBinaryOptions& options)
      : FScanner(text, options.Utf8, FPath), FSink(sink), FOptions(options) {}

  TTextInfo Convert();

 private:
  void Open(TFormNode node, std::string_view name = {});

  // Reads the keyword of an object as flags. Returns false if none comes next.
  bool AcceptObject(uint8_t& flags);
  void ObjectHeader(uint8_t flags);
  void Properties(TFormFrame& frame);
  void Children(TFormFrame& frame);
  void Collection(TFormFrame& frame);
  void List();
  void Value();
  void Name();
  void Set();
  void Number();
  void Float(TNumberType type, std::string_view text);
  void String();
  void WideString(std::u16string_view units);

  // Writing.
  void Byte(uint8_t byte) { FSink.Append(static_cast<char>(byte)); }
  template <typename T>
  void Raw(T number);
  void ShortText(std::string_view text);
  void LongText(TValueType kind, size_t length, std::string_view bytes);
  void Integer(const TStoredInteger& integer, size_t widest);
  void Position();

  TFormPath FPath;
  TFormTextScanner FScanner;
  TByteSink& FSink;
  const TTextBinaryOptions& FOptions;
  TTextInfo FInfo;
  std::string FUtf8;  // a member, so that its memory is used for all strings
};

template <typename T>
void TTextForm::Raw(T number) {
  char bytes[sizeof(T)];
  std::memcpy(bytes, &number, sizeof(T));
  FSink.Append({bytes, sizeof(T)});
}

void TTextForm::ShortText(std::string_view text) {
  Byte(static_cast<uint8_t>(text.size()));
  FSink.Append(text);
}

// `length` is in the unit of `kind`.
void TTextForm::LongText(TValueType kind, size_t length, std::string_view bytes) {
  if (length > static_cast<size_t>(std::numeric_limits<int32_t>::max()))
    FScanner.Fail("more than 2 GB in a value");
  Byte(kind);
  Raw(static_cast<int32_t>(length));
  FSink.Append(bytes);
}

// Writes an integer value. `widest` is the largest width that is valid here.
void TTextForm::Integer(const TStoredInteger& integer, size_t widest) {
  const size_t width = std::min(WidthOf(integer.Value) + integer.ExtraWidth, widest);
  Byte(kIntegerKinds[width]);
  switch (width) {
    case 0:
      return Raw(static_cast<int8_t>(integer.Value));
    case 1:
      return Raw(static_cast<int16_t>(integer.Value));
    case 2:
      return Raw(static_cast<int32_t>(integer.Value));
    default:
      return Raw(integer.Value);
  }
}

void TTextForm::Open(TFormNode node, std::string_view name) {
  if (FPath.Depth() == kMaxNesting)
    FScanner.Fail("nesting of more than " + std::to_string(kMaxNesting) + " levels");
  FPath.Push(node, name);
}

TTextInfo TTextForm::Convert() {
  FSink.Append(kObjectSignature);
  uint8_t flags = 0;
  if (!AcceptObject(flags)) FScanner.Fail("an object expected");
  ObjectHeader(flags);
  while (!FPath.Empty()) {
    TFormFrame& frame = FPath.Top();
    switch (frame.Node) {
      case TFormNode::Properties:
      case TFormNode::Item:
        Properties(frame);
        break;
      case TFormNode::Children:
        Children(frame);
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

bool TTextForm::AcceptObject(uint8_t& flags) {
  flags = 0;
  if (FScanner.AcceptKeyword("object")) return true;
  flags = ffInherited;
  if (FScanner.AcceptKeyword("inherited")) return true;
  flags = ffInline;
  return FScanner.AcceptKeyword("inline");
}

// Converts what follows the keyword: [name :] class [ "[" position "]" ].
void TTextForm::ObjectHeader(uint8_t flags) {
  std::string_view name;
  std::string_view className = FScanner.Name("an object's name or class");
  if (FScanner.Accept(':')) {
    name = className;
    className = FScanner.Name("a class name");
  }
  if (FPath.Empty()) FInfo.ClassName = className;
  Open(TFormNode::Properties, name.empty() ? className : name);
  const bool positioned = FScanner.Peek() == '[';
  if (positioned) flags |= ffChildPos;
  // A class name whose length byte looks like a prefix needs a prefix before it.
  if (flags != 0 || className.size() >= kPrefixMark) Byte(kPrefixMark | flags);
  if (positioned) Position();
  ShortText(className);
  ShortText(name);
}

// "[" integer "]".
void TTextForm::Position() {
  FScanner.Expect('[');
  const char first = FScanner.Peek();
  const bool number = (first >= '0' && first <= '9') || first == '-' || first == '$';
  const TFormNumber position = number ? FScanner.Number() : TFormNumber{TNumberType::Extended, {}, {}};
  if (position.Type != TNumberType::Integer || WidthOf(position.Integer.Value) > kPositionWidth)
    FScanner.Fail("a position that is no integer of 32 bits");
  FScanner.Expect(']');
  Integer(position.Integer, kPositionWidth);
}

void TTextForm::Properties(TFormFrame& frame) {
  // Up to the end of the list, or to a value that opens a node of its own.
  const size_t depth = FPath.Depth();
  const bool item = frame.Node == TFormNode::Item;
  while (true) {
    uint8_t flags = 0;
    if (item ? FScanner.AcceptKeyword("end") : FScanner.Peek() == '\0') break;
    if (!item && FScanner.AcceptKeyword("end")) {
      Byte(0);
      Byte(0);
      return FPath.Pop();
    }
    if (!item && AcceptObject(flags)) {
      Byte(0);
      frame.Property = {};
      frame.Node = TFormNode::Children;
      return ObjectHeader(flags);
    }
    frame.Property = FScanner.Name("a property's name");
    ShortText(FScanner.PropertyName(frame.Property));
    FScanner.Expect('=');
    Value();
    if (FPath.Depth() != depth) return;
  }
  if (!item) FScanner.Fail("the text ends inside an object");
  Byte(0);
  FPath.Pop();
}

void TTextForm::Children(TFormFrame&) {
  uint8_t flags = 0;
  if (AcceptObject(flags)) return ObjectHeader(flags);
  if (!FScanner.AcceptKeyword("end"))
    FScanner.Fail(FScanner.Peek() == '\0' ? "the text ends inside an object"
                                          : "an object or \"end\" expected after a nested object");
  Byte(0);
  FPath.Pop();
}

void TTextForm::Collection(TFormFrame& frame) {
  if (FScanner.Accept('>')) {
    Byte(0);
    return FPath.Pop();
  }
  if (!FScanner.AcceptKeyword("item")) FScanner.Fail("\"item\" or \">\" expected");
  ++frame.Index;
  if (FScanner.Peek() == '[') Position();
  Byte(vaList);
  Open(TFormNode::Item);
}

void TTextForm::List() {
  const size_t depth = FPath.Depth();
  while (!FScanner.Accept(')')) {
    Value();
    if (FPath.Depth() != depth) return;
  }
  Byte(0);
  FPath.Pop();
}

// Converts a value. Lists and collections are only opened.
void TTextForm::Value() {
  const char first = FScanner.Peek();
  switch (first) {
    case '\'':
    case '#':
      return String();
    case '[':
      return Set();
    case '(':
      FScanner.Expect('(');
      Byte(vaList);
      return Open(TFormNode::List);
    case '<':
      FScanner.Expect('<');
      Byte(vaCollection);
      return Open(TFormNode::Collection);
    case '{':
      LongText(vaBinary, FScanner.BinaryLength(), {});
      return FScanner.Binary(FSink);
    case '-':
    case '+':
    case '$':
      return Number();
    default:
      return first >= '0' && first <= '9' ? Number() : Name();
  }
}

void TTextForm::Name() {
  struct TConstant {
    std::string_view Name;
    TValueType Kind;
  };
  static constexpr TConstant kConstants[] = {
      {"False", vaFalse}, {"True", vaTrue}, {"nil", vaNil}, {"Null", vaNull}};
  const std::string_view name = FScanner.Name("a value");
  if (name.size() <= 5)
    for (const TConstant& constant : kConstants)
      if (SameText(name, constant.Name)) {
        if (constant.Kind == vaNull && FPath.Top().Node == TFormNode::List)
          FScanner.Fail("Null in a list, where it would be the end of the list");
        return Byte(constant.Kind);
      }
  Byte(vaIdent);
  ShortText(name);
}

void TTextForm::Set() {
  FScanner.Expect('[');
  Byte(vaSet);
  if (!FScanner.Accept(']')) {
    do {
      const char first = FScanner.Peek();
      const bool number = (first >= '0' && first <= '9') || first == '-';
      if (number) {
        const TFormNumber element = FScanner.Number();
        if (element.Type != TNumberType::Integer)
          FScanner.Fail("an element of a set that is no name and no integer");
        const bool decimal = element.Text.find('$') == std::string_view::npos;
        ShortText(decimal ? element.Text : std::to_string(element.Integer.Value));
      } else {
        ShortText(FScanner.Name("an element of a set"));
      }
    } while (FScanner.Accept(','));
    FScanner.Expect(']');
  }
  Byte(0);
}

void TTextForm::Number() {
  const TFormNumber number = FScanner.Number();
  if (number.Type == TNumberType::Integer) return Integer(number.Integer, kIntegerKinds.size() - 1);
  Float(number.Type, number.Text);
}

// Parses a currency value, in ten-thousandths. They are whole unless somebody has edited the text; halves are
// rounded to even. Returns false if 64 bits do not hold them.
bool ParseCurrency(std::string_view text, int64_t& amount) {
  TFloat value;
  if (!ParseFloat(text, kExtendedFormat, value)) return false;
  uint64_t magnitude = value.Mantissa;
  if (value.Mantissa != 0 && value.Exponent > 0) return false;
  if (value.Exponent < -64) {
    magnitude = 0;
  } else if (value.Exponent < 0) {
    const int shift = -value.Exponent;
    const uint64_t whole = shift == 64 ? 0 : magnitude >> shift;
    const uint64_t half = uint64_t{1} << (shift - 1);
    const uint64_t fraction = shift == 64 ? magnitude : magnitude & (half * 2 - 1);
    magnitude = whole + (fraction > half || (fraction == half && (whole & 1)) ? 1 : 0);
  }
  if (magnitude > static_cast<uint64_t>(INT64_MAX) + (value.Negative ? 1 : 0)) return false;
  amount = static_cast<int64_t>(value.Negative ? 0 - magnitude : magnitude);
  return true;
}

void TTextForm::Float(TNumberType type, std::string_view text) {
  if (type == TNumberType::Currency) {
    int64_t amount = 0;
    if (!ParseCurrency(text, amount)) FScanner.Fail("a currency value that 64 bits do not hold");
    Byte(vaCurrency);
    return Raw(amount);
  }
  const bool extended = type == TNumberType::Extended;
  const bool single = type == TNumberType::Single;
  const TFloatFormat& format = extended ? kExtendedFormat : single ? kSingleFormat : kDoubleFormat;
  TValueType kind = extended ? vaExtended : single ? vaSingle : type == TNumberType::Date ? vaDate : vaDouble;
  TFloat value;
  std::string bytes(static_cast<size_t>(format.Size()), '\0');
  if (ParseFloat(text, format, value)) {
    EncodeFloat(value, format, bytes.data());
  } else if (!extended || !ParseFloatBits(text, kind, bytes)) {
    FScanner.Fail("a number that is too large for its kind");
  }
  Byte(kind);
  FSink.Append(bytes);
}

void TTextForm::String() {
  const TFormString string = FScanner.String();
  if (string.Wide) return WideString(string.Units);
  if (string.Bytes.empty() && FOptions.EmptyString != vaString) {
    LongText(FOptions.EmptyString, 0, {});
  } else if (string.Bytes.size() <= 255) {
    Byte(vaString);
    ShortText(string.Bytes);
  } else {
    LongText(vaLString, string.Bytes.size(), string.Bytes);
  }
}

void TTextForm::WideString(std::u16string_view units) {
  const size_t length = Utf8Length(units);
  if (length < units.size() * 2) {
    FUtf8.clear();
    Utf16ToUtf8(units, FUtf8);
    LongText(vaUTF8String, length, FUtf8);
  } else {
    const char* bytes = reinterpret_cast<const char*>(units.data());
    LongText(vaWString, units.size(), {bytes, units.size() * 2});
  }
}

}  // namespace

TTextInfo ObjectTextToBinary(std::string_view text, TByteSink& binary, const TTextBinaryOptions& options) {
  TTextInfo info = TTextForm(text, binary, options).Convert();
  binary.Flush();
  return info;
}

std::string ObjectTextToBinary(std::string_view text, const TTextBinaryOptions& options, TTextInfo& info) {
  std::string binary;
  binary.reserve(text.size() + 4096);  // memory that is not written to is not taken
  TStringSink sink(binary);
  info = ObjectTextToBinary(text, sink, options);
  return binary;
}

TTextInfo ObjectTextToBinary(TStream& input, TStream& output, const TTextBinaryOptions& options) {
  const std::string text = input.ReadToEnd();
  TStreamSink sink(output);
  return ObjectTextToBinary(text, sink, options);
}

}  // namespace rtl
