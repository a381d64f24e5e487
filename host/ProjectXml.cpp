#include "host/ProjectXml.h"

#include <algorithm>
#include <cctype>
#include <functional>
#include <pugixml.hpp>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "host/HostError.h"
#include "rtl/text/Lines.h"
#include "rtl/text/SysUtils.h"

namespace host {

namespace {

// A well-formed document with a given root element.
class TXmlFile {
 public:
  TXmlFile(std::string_view xml, std::string_view fileName, const char* rootName)
      : FLines(xml), FFileName(fileName) {
    const pugi::xml_parse_result parsed = FDocument.load_buffer(
        xml.data(), xml.size(), pugi::parse_default | pugi::parse_fragment, pugi::encoding_utf8);
    if (!parsed) {
      Fail(FLines.LineAt(static_cast<size_t>(parsed.offset)),
           std::string("this is not well-formed XML: ") + parsed.description() + ".");
    }
    const pugi::xml_node root = FDocument.document_element();
    if (!root) Fail(1, "this is not well-formed XML: No document element found.");
    RefuseTextOutside(root);
    if (root.name() != std::string_view(rootName)) {
      Fail(LineOf(root), std::string("the root element is <") + root.name() + ">, not <" + rootName + ">.");
    }
    RefuseDoubledAttributes();
  }

  // Calls `visit` for each element, in document order.
  void ForEachElement(const std::function<void(const pugi::xml_node&)>& visit) {
    struct TWalker : pugi::xml_tree_walker {
      explicit TWalker(const std::function<void(const pugi::xml_node&)>& visitNode) : Visit(visitNode) {}
      bool for_each(pugi::xml_node& node) override {
        if (node.type() == pugi::node_element) Visit(node);
        return true;
      }
      const std::function<void(const pugi::xml_node&)>& Visit;
    } walker(visit);
    FDocument.traverse(walker);
  }

  // Nodes must be passed in document order.
  int LineOf(const pugi::xml_node& node) { return FLines.LineAt(static_cast<size_t>(node.offset_debug())); }

  [[noreturn]] void Fail(int line, std::string_view text) { throw EHostError(At(FFileName, line, text)); }

 private:
  // The parser accepts fragments. A file must be a whole document.
  void RefuseTextOutside(const pugi::xml_node& root) {
    for (const pugi::xml_node& node : FDocument.children()) {
      const bool isText = node.type() == pugi::node_pcdata || node.type() == pugi::node_cdata;
      if (isText || (node.type() == pugi::node_element && node != root))
        Fail(LineOf(node), "this is not well-formed XML: there is content outside of the root element.");
    }
  }

  // The parser accepts duplicate attributes, but would return only the first one. The line counter moves
  // only if there is one.
  void RefuseDoubledAttributes() {
    std::unordered_set<std::string_view> names;
    ForEachElement([&](const pugi::xml_node& node) {
      names.clear();
      for (const pugi::xml_attribute& attribute : node.attributes()) {
        if (names.insert(attribute.name()).second) continue;
        Fail(LineOf(node), std::string("this is not well-formed XML: <") + node.name() +
                               "> has two attributes " + Quoted(attribute.name()) + ".");
      }
    });
  }

  rtl::TLineCounter FLines;
  std::string_view FFileName;
  pugi::xml_document FDocument;
};

std::string_view TrimmedValue(const pugi::xml_node& node) {
  return rtl::Trim(node.child_value());
}

// The properties that a build file has defined so far. Names ignore case.
class TProperties {
 public:
  explicit TProperties(std::string_view fileName) {
    const std::string name = rtl::ExtractFileName(fileName);
    Set("MSBuildProjectName", rtl::ChangeFileExt(name, ""));
    Set("MSBuildProjectFile", name);
    Set("MSBuildProjectDirectory", rtl::ExtractFileDir(fileName));
    Set("MSBuildThisFileDirectory", rtl::ExtractFilePath(fileName));
  }

  void Set(std::string_view name, std::string_view value) {
    FValues.insert_or_assign(rtl::UpperCase(name), Expand(value));
  }

  // Returns `text` with each $(Name) replaced; an undefined one stays. Returns an empty string if the result
  // is too long for a path, so that properties made of one another cannot grow without limit.
  std::string Expand(std::string_view text) const {
    std::string result;
    while (!text.empty()) {
      const size_t begin = text.find("$(");
      const size_t end = begin == text.npos ? text.npos : text.find(')', begin);
      if (end == text.npos) break;
      const auto found = FValues.find(rtl::UpperCase(text.substr(begin + 2, end - begin - 2)));
      result.append(text.substr(0, begin));
      result.append(found != FValues.end() ? found->second : text.substr(begin, end + 1 - begin));
      text.remove_prefix(end + 1);
      if (result.size() > kMaxLength) return {};
    }
    return result.append(text);
  }

 private:
  static constexpr size_t kMaxLength = 0x7FFF;

  std::unordered_map<std::string, std::string> FValues;
};

// Replaces %XX, the build engine's escape for special characters.
std::string Unescaped(std::string_view text) {
  std::string result;
  for (size_t i = 0; i < text.size(); ++i) {
    const auto isHex = [&](size_t at) {
      return at < text.size() && std::isxdigit(static_cast<uint8_t>(text[at]));
    };
    if (text[i] == '%' && isHex(i + 1) && isHex(i + 2)) {
      result += static_cast<char>(std::stoi(std::string(text.substr(i + 1, 2)), nullptr, 16));
      i += 2;
    } else {
      result += text[i];
    }
  }
  return result;
}

// Calls `take` for each name of an Include list, which is separated by semicolons, expanded and unescaped.
template <class TTake>
void ForEachIncluded(std::string_view list, const TProperties& properties, TTake take) {
  const std::string expanded = properties.Expand(list);
  std::string_view rest = expanded;
  while (!rest.empty()) {
    const size_t end = std::min(rest.find(';'), rest.size());
    const std::string_view name = rtl::Trim(rest.substr(0, end));
    if (!name.empty()) take(Unescaped(name));
    rest.remove_prefix(std::min(end + 1, rest.size()));
  }
}

constexpr char kBuildRoot[] = "Project";
constexpr char kStudioRoot[] = "BorlandProject";

}  // namespace

TXmlProject ReadDproj(std::string_view xml, std::string_view fileName) {
  TXmlFile file(xml, fileName, kBuildRoot);
  TXmlProject project;
  TProperties properties(fileName);
  const auto takeMainSource = [&](const std::string& name, const pugi::xml_node& node) {
    if (project.MainSource.Name.empty()) project.MainSource = {.Name = name, .Line = file.LineOf(node)};
  };
  file.ForEachElement([&](const pugi::xml_node& node) {
    const std::string_view name = node.name();
    if (node.parent().name() == std::string_view("PropertyGroup")) {
      properties.Set(name, TrimmedValue(node));
      if (name == "MainSource") takeMainSource(Unescaped(properties.Expand(TrimmedValue(node))), node);
    } else if (name == "DelphiCompile") {
      ForEachIncluded(node.attribute("Include").value(), properties,
                      [&](const std::string& included) { takeMainSource(included, node); });
    } else if (name == "DCCReference") {
      const int line = file.LineOf(node);
      ForEachIncluded(node.attribute("Include").value(), properties, [&](const std::string& included) {
        project.Units.push_back({.Name = included,
                                 .FormName = std::string(TrimmedValue(node.child("Form"))),
                                 .FormClass = std::string(TrimmedValue(node.child("DesignClass"))),
                                 .Line = line});
      });
    }
  });
  if (project.MainSource.Name.empty() && project.Units.empty()) {
    file.Fail(0, "this is no project: it names neither a main source nor units.");
  }
  return project;
}

TXmlProject ReadBdsproj(std::string_view xml, std::string_view fileName) {
  TXmlFile file(xml, fileName, kStudioRoot);
  TXmlProject project;
  file.ForEachElement([&](const pugi::xml_node& node) {
    const std::string_view name = node.name();
    if (name == "Source" && node.attribute("Name").value() == std::string_view("MainSource")) {
      project.MainSource = {.Name = std::string(TrimmedValue(node)), .Line = file.LineOf(node)};
    } else if (name == "File" && node.attribute("FileName")) {
      if (rtl::Trim(node.attribute("FileName").value()).empty()) {
        file.Fail(file.LineOf(node), "the attribute FileName of <File> is empty.");
      }
      project.Units.push_back({.Name = node.attribute("FileName").value(),
                               .FormName = node.attribute("FormName").value(),
                               .FormClass = node.attribute("DesignClass").value(),
                               .Line = file.LineOf(node)});
    }
  });
  if (project.MainSource.Name.empty()) file.Fail(0, "this is no project: it names no main source.");
  return project;
}

std::vector<TFileReference> ReadGroupproj(std::string_view xml, std::string_view fileName) {
  TXmlFile file(xml, fileName, kBuildRoot);
  std::vector<TFileReference> projects;
  TProperties properties(fileName);
  file.ForEachElement([&](const pugi::xml_node& node) {
    if (node.parent().name() == std::string_view("PropertyGroup")) {
      properties.Set(node.name(), TrimmedValue(node));
    } else if (node.name() == std::string_view("Projects")) {
      const int line = file.LineOf(node);
      ForEachIncluded(node.attribute("Include").value(), properties, [&](const std::string& included) {
        projects.push_back({.Name = included, .Line = line});
      });
    }
  });
  return projects;
}

std::vector<TFileReference> ReadBdsgroup(std::string_view xml, std::string_view fileName) {
  TXmlFile file(xml, fileName, kStudioRoot);
  std::vector<TFileReference> projects;
  file.ForEachElement([&](const pugi::xml_node& node) {
    // The entry "Targets" lists the names of the others.
    const pugi::xml_attribute name = node.attribute("Name");
    if (node.name() == std::string_view("Projects") && name && name.value() != std::string_view("Targets")) {
      if (TrimmedValue(node).empty()) {
        file.Fail(file.LineOf(node),
                  "the entry " + Quoted(name.value()) + " of <Projects> names no project.");
      }
      projects.push_back({.Name = std::string(TrimmedValue(node)), .Line = file.LineOf(node)});
    }
  });
  return projects;
}

}  // namespace host
