#include "cli/DesktopProgram.h"

#include <filesystem>
#include <unistd.h>

namespace cli {

int RunDesktopProgram(const std::string& name, const std::vector<std::string>& arguments) {
  std::error_code error;
  const auto self = std::filesystem::read_symlink("/proc/self/exe", error);
  const auto beside = self.parent_path() / name;
  const std::string program = !error && std::filesystem::exists(beside, error) ? beside.string() : name;
  std::vector<std::string> words = {name};
  words.insert(words.end(), arguments.begin(), arguments.end());
  std::vector<char*> pointers;
  pointers.reserve(words.size() + 1);
  for (std::string& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  execvp(program.c_str(), pointers.data());
  return -1;
}

}  // namespace cli
