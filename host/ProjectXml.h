// The XML files of projects and groups: .dproj and .groupproj of the build engine, .bdsproj and .bdsgroup
// before them.
//
// Conditions are not evaluated: the entries of every configuration count. All functions take the text as
// UTF-8 without a mark, and raise EHostError, with `fileName` and the line, for XML that is not well-formed
// and for XML of another kind.
#pragma once

#include <string_view>
#include <vector>

#include "host/FileReference.h"

namespace host {

struct TXmlProject {
  TFileReference MainSource;  // an empty Name where there is none
  std::vector<TFileReference> Units;
};

// Main source and DCCReference items. Properties such as $(MainSource) are expanded, as far as the file
// defines them.
TXmlProject ReadDproj(std::string_view xml, std::string_view fileName);
// Main source and file list.
TXmlProject ReadBdsproj(std::string_view xml, std::string_view fileName);

// The projects of a group, in its order.
std::vector<TFileReference> ReadGroupproj(std::string_view xml, std::string_view fileName);
std::vector<TFileReference> ReadBdsgroup(std::string_view xml, std::string_view fileName);

}  // namespace host
