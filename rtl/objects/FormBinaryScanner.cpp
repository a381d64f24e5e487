#include "rtl/objects/FormBinaryScanner.h"

#include <bit>
#include <string>

#include "rtl/objects/ObjectValues.h"
#include "rtl/text/Exceptions.h"

namespace rtl {

namespace {

static_assert(std::endian::native == std::endian::little, "numbers are copied as they are in the data");

// Returns whether `text` is a name, or several with dots between them.
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

// Returns whether `text` is an integer that fits 64 bits whatever its digits.
bool IsWholeNumber(std::string_view text) {
  constexpr size_t kLongest = 18;
  if (text.starts_with('-')) text.remove_prefix(1);
  if (text.empty() || text.size() > kLongest) return false;
  return text.find_first_not_of("0123456789") == std::string_view::npos;
}

}  // namespace

void TFormBinaryScanner::FailAt(const char* at, std::string_view reason) const {
  std::string message = "Form data at offset ";
  message += std::to_string(FFirstOffset + static_cast<size_t>(at - FBegin));
  message.append(": ").append(reason);
  const std::string path = FPath.Describe();
  if (!path.empty()) message.append(" (").append(path).append(")");
  throw EFilerError(message + ".");
}

void TFormBinaryScanner::FailShort(uint64_t count, std::string_view what) const {
  Fail(std::string(what) + " of " + std::to_string(count) + " bytes, but only " + std::to_string(Left()) +
       " are left");
}

void TFormBinaryScanner::FailEnd(std::string_view what) const {
  Fail("the data ends where " + std::string(what) + " must follow");
}

bool TFormBinaryScanner::AcceptSignature() {
  if (!std::string_view(FNext, Left()).starts_with(kObjectSignature)) return false;
  FNext += kObjectSignature.size();
  return true;
}

std::string_view TFormBinaryScanner::LongText(size_t unitSize, std::string_view what) {
  const char* at = FNext;
  const int32_t length = Number<int32_t>(what);
  if (length < 0) FailAt(at, std::string(what) + " of negative length " + std::to_string(length));
  return Take(static_cast<uint64_t>(length) * unitSize, what);
}

std::string_view TFormBinaryScanner::Name(TNameRule rule, std::string_view what) {
  const char* at = FNext;
  const std::string_view name = ShortText(what);
  if (IsDottedName(name)) return name;
  if (rule == TNameRule::Optional && name.empty()) return name;
  if (rule == TNameRule::Element && IsWholeNumber(name)) return name;
  FailAt(at, std::string(what) + " that is no name");
}

TStoredInteger TFormBinaryScanner::Integer(uint8_t kind, std::string_view what) {
  const auto stored = [](int64_t value, size_t width) {
    return TStoredInteger{value, width - WidthOf(value)};
  };
  switch (kind) {
    case vaInt8:
      return stored(Number<int8_t>(what), 0);
    case vaInt16:
      return stored(Number<int16_t>(what), 1);
    case vaInt32:
      return stored(Number<int32_t>(what), 2);
    default:
      return stored(Number<int64_t>(what), 3);
  }
}

TStoredInteger TFormBinaryScanner::SmallInteger(std::string_view what) {
  const char* at = FNext;
  const uint8_t kind = Number<uint8_t>(what);
  if (kind != vaInt8 && kind != vaInt16 && kind != vaInt32)
    FailAt(at, std::string(what) + " that is no integer");
  return Integer(kind, what);
}

}  // namespace rtl
