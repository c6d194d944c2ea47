#include "files/SpooledText.h"

#include <ostream>

namespace cimhttp {

void SpooledText::Append(std::string_view text) {
    if (tail_.size() + text.size() > kMostInMemory) {
        tail_ += text;
        places_.push_back(spool_->Append(tail_));
        tail_.clear();
    } else {
        tail_ += text;
    }
}

void SpooledText::WriteTo(std::ostream& output) const {
    for (const Spool::Place& place : places_) {
        spool_->CopyTo(output, place);
    }
    output << tail_;
}

} // namespace cimhttp
