#include "MigWizard/passes/FormFile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "MigWizard/passes/TextFile.h"
#include "rtl/objects/ByteSink.h"
#include "rtl/objects/ObjectTextToBinary.h"

namespace mig {

namespace {

constexpr std::string_view kResourceType("\xFF\x0A\x00", 3);
constexpr std::string_view kMemoryFlags("\x30\x10", 2);
constexpr char kNumberMark = '\xFF';  // begins a resource name that is a number
constexpr size_t kNumberedName = 3;   // its length
constexpr size_t kFlagsAndSize = 6;

// Returns the resource name after the type, and sets `length` to its bytes including the terminator.
std::string_view NameOf(std::string_view behindType, size_t& length) {
  // The name ends at the first 00, which is also the upper half of a small number. Any other number is
  // recognised by the signature after it.
  const std::string_view signature = rtl::kObjectSignature;
  if (behindType.starts_with(kNumberMark) && behindType.size() >= kNumberedName + kFlagsAndSize &&
      behindType.substr(kNumberedName + kFlagsAndSize).starts_with(signature) &&
      (behindType[1] == 0 || behindType[2] != 0)) {
    length = kNumberedName;
    return behindType.substr(0, kNumberedName);
  }
  const std::string_view name = behindType.substr(0, behindType.find('\0'));
  length = std::min(name.size() + 1, behindType.size());
  return name;
}

bool IsWholeNumber(std::string_view name) {
  return name.size() == kNumberedName && name[0] == kNumberMark && (name[1] == 0 || name[2] != 0);
}

// Returns the size after the flags, or 0 if the header is truncated. Little-endian, like the host.
int32_t ReadSize(std::string_view bytes) {
  int32_t size = 0;
  if (bytes.size() >= kFlagsAndSize) std::memcpy(&size, bytes.data() + kMemoryFlags.size(), sizeof size);
  return size;
}

}  // namespace

bool IsBinaryForm(std::string_view file) {
  const size_t count = std::min(file.size(), kResourceType.size());
  return count >= 2 && file.substr(0, count) == kResourceType.substr(0, count);
}

std::string_view ReadFormHeader(std::string_view file, TRCData& rcData) {
  std::string_view rest = file.substr(std::min(file.size(), kResourceType.size()));
  size_t nameLength = 0;
  rcData.Name = NameOf(rest, nameLength);
  rest.remove_prefix(nameLength);
  rcData.Size = ReadSize(rest);
  rest.remove_prefix(std::min(rest.size(), kFlagsAndSize));
  return rest;
}

std::string FormHeader(const TRCData& rcData) {
  std::string header(kResourceType);
  header += rcData.Name;
  if (!IsWholeNumber(rcData.Name)) header += '\0';
  header += kMemoryFlags;
  char size[sizeof rcData.Size];
  std::memcpy(size, &rcData.Size, sizeof size);
  return header.append(size, sizeof size);
}

TFormFile DecodeFormFile(std::string bytes) {
  TFormFile form;
  form.IsBinary = IsBinaryForm(bytes);
  if (!form.IsBinary) {
    TTextFile file = DecodeTextFile(std::move(bytes));
    form.Encoding = file.Encoding;
    form.Text = std::move(file.Text);
    return form;
  }
  const std::string_view data = ReadFormHeader(bytes, form.RCData);
  rtl::TBinaryTextOptions options;
  options.Indented = false;
  options.FirstOffset = bytes.size() - data.size();
  rtl::TBinaryInfo info;
  form.Text = rtl::ObjectBinaryToText(data, options, info);
  form.RCData.EmptyString = info.EmptyString;
  form.RCData.TrailingBytes = data.size() - info.Size;
  return form;
}

void WriteFormFile(rtl::TStream& stream, std::string_view output, const TFormFile& form) {
  if (!form.IsBinary) {
    stream.Write(form.Encoding->WrittenMark());
    stream.Write(output);
    return;
  }
  // The size is not known yet; it overwrites its place in the header at the end.
  stream.Write(FormHeader(form.RCData));
  const int64_t begin = stream.Position();
  rtl::TStreamSink sink(stream);
  rtl::ObjectTextToBinary(output, sink, {.EmptyString = form.RCData.EmptyString});
  const int64_t end = stream.Position();
  const int64_t size = end - begin;
  if (size > std::numeric_limits<int32_t>::max()) throw rtl::EParserError("A form of more than 2 GB.");
  const int32_t written = static_cast<int32_t>(size);
  stream.SetPosition(begin - static_cast<int64_t>(sizeof written));
  stream.Write(&written, sizeof written);
  stream.SetPosition(end);
}

}  // namespace mig
