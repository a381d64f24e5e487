// kvamigrate form to-text and form to-binary: converts forms to one output, or in place.
#include <cstdio>

#include "cli/Commands.h"
#include "cli/Console.h"
#include "cli/FormFiles.h"
#include "cli/FormsInPlace.h"
#include "cli/Interrupt.h"
#include "cli/Shell.h"
#include "cli/TypedPath.h"
#include "rtl/text/Streams.h"
#include "rtl/text/SysUtils.h"

namespace cli {
namespace {

constexpr char kStandardStream[] = "-";

std::string ReadStandardInput() {
  std::string bytes;
  char buffer[64 * 1024];
  for (size_t count = 0; (count = std::fread(buffer, 1, sizeof buffer, stdin)) > 0;)
    bytes.append(buffer, count);
  if (std::ferror(stdin)) throw rtl::EReadError("Cannot read the standard input.");
  return bytes;
}

std::string Convert(const std::string& input, TFormKind wanted) {
  if (input == kStandardStream) return ConvertForm(ReadStandardInput(), wanted, "standard input").Bytes;
  return ConvertForm(ReadFormFile(WindowsPath(input), input), wanted, input).Bytes;
}

constexpr std::string_view kUtf8Mark = "\xEF\xBB\xBF";
constexpr std::string_view kUtf16Mark = "\xFF\xFE";

std::string_view MarkOf(std::string_view bytes) {
  return bytes.starts_with(kUtf8Mark)    ? kUtf8Mark
         : bytes.starts_with(kUtf16Mark) ? kUtf16Mark
                                         : std::string_view();
}

// Appends the text of another form, on a line of its own and without its mark. Raises rtl::Exception if its
// encoding is not that of the text so far.
void AppendText(std::string& text, std::string_view form, const std::string& input) {
  using namespace std::string_view_literals;
  const std::string_view mark = MarkOf(text);
  if (MarkOf(form) != mark)
    throw rtl::Exception("\"" + input + "\" is in another encoding than the form before it; use --in-place.");
  const bool isWide = mark == kUtf16Mark;
  if (!std::string_view(text).ends_with(isWide ? "\n\0"sv : "\n"sv)) text += isWide ? "\r\0\n\0"sv : "\r\n"sv;
  text += form.substr(mark.size());
}

void CheckOptions(const TCommandLine& line, const std::vector<std::string>& inputs) {
  if (line.InPlace && !line.Output.empty()) throw EUsage("--in-place takes no --output.");
  if (line.Command == TCommand::FormToBinary && !line.InPlace && inputs.size() > 1)
    throw EUsage("Several forms can be converted to binary only with --in-place.");
  for (const std::string& input : inputs) {
    if (input == kStandardStream) {
      if (line.InPlace) throw EUsage("The standard input cannot be converted in place.");
    } else if (!line.InPlace && rtl::DirectoryExists(WindowsPath(input))) {
      throw EUsage("\"" + input + "\" is a folder; its forms are converted with --in-place.");
    }
  }
}

}  // namespace

int RunForm(const TCommandLine& line) {
  std::vector<std::string> inputs;
  for (const std::string& input : line.Arguments) {
    const std::vector<std::string> files = ExpandWildcards(input);
    inputs.insert(inputs.end(), files.begin(), files.end());
  }
  CheckOptions(line, inputs);
  const TFormKind wanted = line.Command == TCommand::FormToText ? TFormKind::Text
                           : line.Bare                          ? TFormKind::BareBinary
                                                                : TFormKind::Binary;
  if (line.InPlace) {
    CatchInterrupts();
    TFormsInPlace forms(wanted);
    for (const std::string& input : inputs) forms.Add(input);
    forms.Replace();
    return forms.Finish(line.Quiet);
  }
  // Read and convert everything before writing, because the output may be one of the inputs.
  std::string bytes = Convert(inputs[0], wanted);
  for (size_t i = 1; i < inputs.size(); ++i) AppendText(bytes, Convert(inputs[i], wanted), inputs[i]);
  if (line.Output.empty() || line.Output == kStandardStream) {
    WriteOutput(bytes);
  } else {
    WriteFormFile(line.Output, bytes, inputs[0] == kStandardStream ? std::string() : inputs[0]);
  }
  return kExitOk;
}

}  // namespace cli
