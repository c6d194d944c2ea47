#include "report/EmbeddedJson.h"

#include <utility>

namespace cimhttp {

namespace {

constexpr std::size_t kExactDigits = 15; // that every number of a script has

bool IsInNumber(char character) {
    return (character >= '0' && character <= '9') ||
           std::string_view("+-.eE").find(character) != std::string_view::npos;
}

bool IsLongInteger(const std::string& number) {
    return number.size() > kExactDigits && number.find_first_of(".eE") == std::string::npos;
}

} // namespace

std::string EmbeddedJson::Take(std::string_view json) {
    for (const char character : json) {
        if (isInText_) {
            TakeInText(character);
        } else {
            TakeOutside(character);
        }
    }
    return std::exchange(done_, {});
}

std::string EmbeddedJson::End() {
    EndNumber();
    return std::exchange(done_, {});
}

void EmbeddedJson::TakeInText(char character) {
    if (character == '<') {
        done_ += "\\u003c";
    } else {
        done_ += character;
    }
    isInText_ = isEscaped_ || character != '"';
    isEscaped_ = !isEscaped_ && character == '\\';
}

// The letters of true, false and null are no number: none begins with one that a number may begin with.
void EmbeddedJson::TakeOutside(char character) {
    const bool begins = (character >= '0' && character <= '9') || character == '-';
    if (begins || (!number_.empty() && IsInNumber(character))) {
        number_ += character;
        return;
    }
    EndNumber();
    done_ += character;
    isInText_ = character == '"';
}

void EmbeddedJson::EndNumber() {
    const char* const quote = IsLongInteger(number_) ? "\"" : "";
    done_ += quote + number_ + quote;
    number_.clear();
}

} // namespace cimhttp
