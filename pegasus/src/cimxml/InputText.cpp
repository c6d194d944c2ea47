#include "cimxml/InputText.h"

#include "cimxml/XmlCharacters.h"

namespace Pegasus::cimxml {

void InputText::append(std::string_view bytes) {
    bytes_.erase(0, begin_).append(bytes);
    checked_ -= begin_;
    begin_ = 0;
    checked_ += lengthOfXmlCharacters(std::string_view(bytes_).substr(checked_));
}

bool InputText::endsBadly() const noexcept { return bytes_.size() - checked_ >= kLongestCharacter; }

} // namespace Pegasus::cimxml
