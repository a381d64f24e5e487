#include "rtl/objects/FormPath.h"

namespace rtl {

std::string TFormPath::Describe() const {
  std::string objects;
  std::string property;
  for (const TFormFrame& frame : FFrames) {
    switch (frame.Node) {
      case TFormNode::Properties:
      case TFormNode::Children:
        objects += (objects.empty() ? "object " : ".") + std::string(frame.Name);
        if (frame.Node == TFormNode::Properties) property = frame.Property;
        break;
      case TFormNode::Collection:
        if (frame.Index > 0) property += "[" + std::to_string(frame.Index - 1) + "]";
        break;
      case TFormNode::Item:
        if (!frame.Property.empty()) property += "." + std::string(frame.Property);
        break;
      case TFormNode::List:
        break;
    }
    constexpr size_t kLongestPath = 400;  // damaged data may nest arbitrarily deep
    if (objects.size() + property.size() > kLongestPath) return objects + ", ...";
  }
  return property.empty() ? objects : objects + ", property " + property;
}

}  // namespace rtl
