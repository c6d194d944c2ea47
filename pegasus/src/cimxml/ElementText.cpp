#include "cimxml/ElementText.h"

#include "cimxml/XmlError.h"

namespace Pegasus::cimxml {

void ElementText::append(std::string_view bytes) {
    if (bytes.size() > kMaxObjectBytes - text_.size())
        throwXmlError({"one object is larger than ", std::to_string(kMaxObjectBytes >> 20U), " MiB"});
    text_ += bytes;
}

void ElementText::throwOverLimit() const {
    if (depth_ > kMaxNesting)
        throwXmlError({"elements are nested deeper than ", std::to_string(kMaxNesting)});
    throwXmlError(
        {"one object has more than ", std::to_string(kMaxNodes), " elements, attributes, comments and CDATA sections"});
}

void ElementText::clear() {
    text_.clear();
    parts_.clear();
    end_ = 0;
    depth_ = 0;
    nodes_ = 0;
}

} // namespace Pegasus::cimxml
