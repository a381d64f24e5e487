#include "rtl/objects/FormBinaryScanner.h"

#include <bit>
#include <string>

#include "rtl/objects/ObjectValues.h"
#include "rtl/text/Exceptions.h"

namespace rtl {

namespace {

static_assert(std::endian::native == std::endian::little, "numbers are copied as they lie in the data");

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

// A number as it is printed, and not too long to be read again.
bool IsWholeNumber(std::string_view text) {
  constexpr size_t kLongest = 18;
  if (text == "0") return true;
  if (!text.empty() && text[0] == '-') text.remove_prefix(1);
  if (text.empty() || text[0] == '0' || text.size() > kLongest) return false;
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

std::string_view TFormBinaryScanner::Name(TNameKind kind, std::string_view what) {
  const char* at = FNext;
  const std::string_view name = ShortText(what);
  if (IsDottedName(name)) return name;
  if (kind == TNameKind::Optional && name.empty()) return name;
  if (kind == TNameKind::Element && IsWholeNumber(name)) return name;
  FailAt(at, std::string(what) + " that is no name");
}

int32_t TFormBinaryScanner::SmallInteger(std::string_view what) {
  const char* at = FNext;
  switch (Number<uint8_t>(what)) {
    case vaInt8:
      return Number<int8_t>(what);
    case vaInt16:
      return Number<int16_t>(what);
    case vaInt32:
      return Number<int32_t>(what);
    default:
      FailAt(at, std::string(what) + " that is no integer");
  }
}

}  // namespace rtl
