#include "output/JsonRecords.h"

#include "output/Json.h"

#include <utility>

namespace cimhttp {

namespace {

bool IsBlank(char character) { return character == ' ' || character == '\n' || character == '\r' || character == '\t'; }

} // namespace

JsonRecords::JsonRecords(const std::string& server) : head_("{\"server\":" + JsonText(server)) {}

void JsonRecords::Append(std::string_view json) {
    for (const char character : json) {
        Take(character);
    }
}

std::string JsonRecords::TakeSoFar() { return std::exchange(records_, {}); }

std::string JsonRecords::End() {
    if (state_ == State::kInScalar && depth_ == 0 && !isInText_) {
        EndScalar();
    }
    isFirst_ = true;
    return std::exchange(records_, {});
}

void JsonRecords::Take(char character) {
    if (state_ != State::kOutside) {
        Continue(character);
    } else if (character == '[' && !isInArray_) {
        isInArray_ = true;
    } else if (character == ']') {
        isInArray_ = false;
    } else if (character != ',' && !IsBlank(character)) {
        Begin(character);
    }
}

void JsonRecords::Begin(char first) {
    records_ += isFirst_ ? head_ : ",\n" + head_;
    isFirst_ = false;
    if (first == '{') {
        state_ = State::kInObject;
        needsSeparator_ = true;
        depth_ = 1;
        return;
    }
    records_ += ",\"value\":";
    state_ = State::kInScalar;
    depth_ = 0;
    Continue(first);
}

void JsonRecords::Continue(char character) {
    if (isInText_) {
        records_ += character;
        isInText_ = isEscaped_ || character != '"';
        isEscaped_ = !isEscaped_ && character == '\\';
        return;
    }
    if (state_ == State::kInScalar && depth_ == 0 && (character == ',' || character == ']' || IsBlank(character))) {
        EndScalar();
        Take(character);
        return;
    }
    if (IsBlank(character)) {
        return; // a record is one line
    }
    if (needsSeparator_ && character != '}') {
        records_ += ',';
    }
    needsSeparator_ = false;
    records_ += character;
    isInText_ = character == '"';
    if (character == '{' || character == '[') {
        ++depth_;
    } else if ((character == '}' || character == ']') && --depth_ == 0 && state_ == State::kInObject) {
        state_ = State::kOutside;
    }
}

void JsonRecords::EndScalar() {
    records_ += '}';
    state_ = State::kOutside;
}

} // namespace cimhttp
