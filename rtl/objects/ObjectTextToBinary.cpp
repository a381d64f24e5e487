#include "rtl/objects/ObjectTextToBinary.h"

#include <cstring>
#include <limits>

#include "rtl/objects/FloatText.h"
#include "rtl/objects/FormPath.h"
#include "rtl/objects/FormTextScanner.h"
#include "rtl/text/SysUtils.h"
#include "rtl/text/Utf16.h"

namespace rtl {

namespace {

// One conversion; the path of what is open stands in place of a call stack.
class TTextForm {
 public:
  TTextForm(std::string_view text, TByteSink& sink, const TTextBinaryOptions& options)
      : FScanner(text, options.Utf8, FPath), FSink(sink), FOptions(options) {}

  TTextInfo Convert();

 private:
  void Open(TFormNode node, std::string_view name = {});

  // The keyword of an object, as flags; False if there is none.
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
  void Float(TNumberKind kind, std::string_view text);
  void String();
  void WideString(std::u16string_view units);

  // Writing.
  void Byte(uint8_t byte) { FSink.Append(static_cast<char>(byte)); }
  template <typename T>
  void Raw(T number);
  void ShortText(std::string_view text);
  void LongText(TValueType kind, size_t length, std::string_view bytes);
  void Integer(int64_t value);
  void Position();

  TFormPath FPath;
  TFormTextScanner FScanner;
  TByteSink& FSink;
  const TTextBinaryOptions& FOptions;
  TTextInfo FInfo;
  std::string FUtf8;  // kept between strings for its memory
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

// `length` is in the kind's own unit.
void TTextForm::LongText(TValueType kind, size_t length, std::string_view bytes) {
  if (length > static_cast<size_t>(std::numeric_limits<int32_t>::max()))
    FScanner.Fail("more than 2 GB in a value");
  Byte(kind);
  Raw(static_cast<int32_t>(length));
  FSink.Append(bytes);
}

void TTextForm::Integer(int64_t value) {
  const auto fits = [&](auto small) { return value == static_cast<decltype(small)>(value); };
  if (fits(int8_t{})) {
    Byte(vaInt8);
    Raw(static_cast<int8_t>(value));
  } else if (fits(int16_t{})) {
    Byte(vaInt16);
    Raw(static_cast<int16_t>(value));
  } else if (fits(int32_t{})) {
    Byte(vaInt32);
    Raw(static_cast<int32_t>(value));
  } else {
    Byte(vaInt64);
    Raw(value);
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

// Behind the keyword: [name :] class [ "[" position "]" ].
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
  // A class name so long that its length byte looks like a prefix needs one in front.
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
  const TFormNumber position = number ? FScanner.Number() : TFormNumber{TNumberKind::Extended, 0, {}};
  if (position.Kind != TNumberKind::Integer || position.Integer != static_cast<int32_t>(position.Integer))
    FScanner.Fail("a position that is no integer of 32 bits");
  FScanner.Expect(']');
  Integer(position.Integer);
}

void TTextForm::Properties(TFormFrame& frame) {
  // Until a value opens a level of its own, or the list ends.
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
                                          : "an object or \"end\" expected behind a nested object");
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

// A value; lists and collections are only opened.
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
        if (element.Kind != TNumberKind::Integer)
          FScanner.Fail("an element of a set that is no name and no integer");
        ShortText(std::to_string(element.Integer));
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
  if (number.Kind == TNumberKind::Integer) return Integer(number.Integer);
  Float(number.Kind, number.Text);
}

// Ten-thousandths as written, which are whole unless somebody has edited them; half to even. False if 64 bits
// do not hold them.
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

void TTextForm::Float(TNumberKind kind, std::string_view text) {
  if (kind == TNumberKind::Currency) {
    int64_t amount = 0;
    if (!ParseCurrency(text, amount)) FScanner.Fail("a currency value that 64 bits do not hold");
    Byte(vaCurrency);
    return Raw(amount);
  }
  const bool extended = kind == TNumberKind::Extended;
  const bool single = kind == TNumberKind::Single;
  const TFloatFormat& format = extended ? kExtendedFormat : single ? kSingleFormat : kDoubleFormat;
  TFloat value;
  if (!ParseFloat(text, format, value)) FScanner.Fail("a number that is too large for its kind");
  Byte(extended ? vaExtended : single ? vaSingle : kind == TNumberKind::Date ? vaDate : vaDouble);
  char bytes[10];
  const int count = EncodeFloat(value, format, bytes);
  FSink.Append({bytes, static_cast<size_t>(count)});
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
