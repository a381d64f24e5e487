#include "MigWizard/FormFile.h"

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

#include "MigWizard/TextFile.h"
#include "rtl/ByteSink.h"
#include "rtl/ObjectTextToBinary.h"

namespace mig {

namespace {

constexpr std::string_view kResourceType("\xFF\x0A\x00", 3);
constexpr std::string_view kMemoryFlags("\x30\x10", 2);
constexpr char kNumberMark = '\xFF';  // begins a resource name that is a number
constexpr size_t kNumberedName = 3;   // its length
constexpr size_t kFlagsAndSize = 6;

// The resource name behind the type, and how many bytes it takes with its end.
std::string_view NameOf(std::string_view behindType, size_t& length) {
  // The name ends at the first 00, which is the upper half of a small number too. A number that has its 00
  // elsewhere is told by the signature that it leads to.
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

// Numbers of the header are little-endian, as the machine's.
int32_t ReadSize(std::string_view bytes) {
  int32_t size = 0;
  if (bytes.size() >= sizeof size) std::memcpy(&size, bytes.data(), sizeof size);
  return size;
}

TFormFile ReadBinary(const std::string& bytes) {
  TFormFile form;
  form.IsBinary = true;
  std::string_view rest = bytes;
  rest.remove_prefix(kResourceType.size());
  size_t nameLength = 0;
  form.RCData.Name = NameOf(rest, nameLength);
  rest.remove_prefix(nameLength);
  rest.remove_prefix(std::min<size_t>(rest.size(), kMemoryFlags.size()));
  form.RCData.Size = ReadSize(rest);
  rest.remove_prefix(std::min<size_t>(rest.size(), sizeof(int32_t)));
  rtl::TBinaryTextOptions options;
  options.FirstOffset = bytes.size() - rest.size();
  rtl::TBinaryInfo info;
  form.Text = rtl::ObjectBinaryToText(rest, options, info);
  form.RCData.EmptyString = info.EmptyString;
  form.RCData.TrailingBytes = rest.size() - info.Size;
  return form;
}

}  // namespace

TFormFile ReadFormFile(rtl::TStream& stream) {
  const int64_t start = stream.Position();
  char first[kResourceType.size()] = {};
  size_t count = 0;
  while (count < sizeof first) {
    const size_t got = stream.Read(first + count, sizeof first - count);
    if (got == 0) break;
    count += got;
  }
  stream.SetPosition(start);
  if (std::string_view(first, sizeof first) == kResourceType) return ReadBinary(stream.ReadToEnd());
  TTextFile file = ReadTextFile(stream);
  TFormFile form;
  form.Encoding = file.Encoding;
  form.Text = std::move(file.Text);
  return form;
}

void WriteFormFile(rtl::TStream& stream, std::string_view output, const TFormFile& form) {
  if (!form.IsBinary) {
    stream.Write(form.Encoding->WrittenMark());
    stream.Write(output);
    return;
  }
  rtl::TStreamSink sink(stream);
  sink.Append(kResourceType);
  sink.Append(form.RCData.Name);
  if (!IsWholeNumber(form.RCData.Name)) sink.Append('\0');
  sink.Append(kMemoryFlags);
  sink.Flush();
  const int64_t sizePosition = stream.Position();
  sink.Append(std::string_view("\0\0\0\0", 4));
  rtl::TTextBinaryOptions options;
  options.EmptyString = form.RCData.EmptyString;
  rtl::ObjectTextToBinary(output, sink, options);
  const int64_t end = stream.Position();
  const int64_t size = end - sizePosition - 4;
  if (size > std::numeric_limits<int32_t>::max()) throw rtl::EParserError("A form of more than 2 GB.");
  const int32_t written = static_cast<int32_t>(size);
  stream.SetPosition(sizePosition);
  stream.Write(&written, sizeof written);
  stream.SetPosition(end);
}

}  // namespace mig
