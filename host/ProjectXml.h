// The XML files of projects and groups: .dproj and .groupproj of the build engine, and the older .bdsproj and
// .bdsgroup.
//
// Conditions are not evaluated: the entries of every configuration count. All functions take UTF-8 text
// without a byte order mark, and raise EHostError, with `fileName` and the line, for XML that is not
// well-formed or of another kind.
#pragma once

#include <string_view>
#include <vector>

#include "host/FileReference.h"

namespace host {

struct TXmlProject {
  TFileReference MainSource;  // with an empty Name if there is none
  std::vector<TFileReference> Units;
};

// Returns the main source and the DCCReference items. Properties such as $(MainSource) are expanded if the
// file defines them.
TXmlProject ReadDproj(std::string_view xml, std::string_view fileName);
// Returns the main source and the file list.
TXmlProject ReadBdsproj(std::string_view xml, std::string_view fileName);

// Return the projects of a group, in its order.
std::vector<TFileReference> ReadGroupproj(std::string_view xml, std::string_view fileName);
std::vector<TFileReference> ReadBdsgroup(std::string_view xml, std::string_view fileName);

}  // namespace host
