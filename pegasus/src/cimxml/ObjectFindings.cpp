#include "cimxml/ObjectFindings.h"

#include <utility>

namespace Pegasus::cimxml {

void ObjectFindings::add(Finding finding) {
    if (count_++ < LenientFindings::kMaxKept) {
        first_.push_back(std::move(finding));
    } else {
        ++others_[finding.kind];
    }
}

void ObjectFindings::within(std::size_t since, std::string_view element) {
    for (std::size_t i = since; i < first_.size(); ++i) {
        std::string& name = first_[i].element;
        const bool isPart = name.empty() || name.find(' ') == std::string::npos; // "Q", not "qualifier Q"
        if (isPart) {
            name.insert(0, name.empty() ? "" : ".").insert(0, element);
        } else {
            name.append(" of ").append(element);
        }
    }
}

void ObjectFindings::moveTo(std::size_t since, std::size_t position) {
    for (std::size_t i = since; i < first_.size(); ++i) {
        first_[i].position = position;
    }
}

} // namespace Pegasus::cimxml
