#include "provider/JsonValue.h"
#include "provider/PolicyFault.h"
#include "provider/PrintableText.h"

#include <nlohmann/json.hpp>

#include <cstddef>
#include <cstdint>
#include <utility>

namespace NQORVYX20 {

namespace {

using nlohmann::json;
using Kind = JsonValue::Kind;

/// What the parser says, without the part that is for programmers: "[json.exception.parse_error.101] parse error at
/// line 1, column 2: ..."
std::string Complaint(const std::string& what) {
    const auto end = what.find("] ");
    return PrintableText(end == std::string::npos ? what : what.substr(end + 2));
}

/// Builds the value while the parser goes through the text. The parser's own tree is unfit for processes that must not
/// stop: destroying it takes memory.
class JsonBuilder : public nlohmann::json_sax<json> {
  public:
    JsonValue TakeRoot() { return std::move(root_); }

    bool null() override { return AddNull(); }
    bool boolean(bool value) override { return AddScalar(value); }
    bool number_integer(number_integer_t /*value*/) override { return AddNull(); }
    bool number_unsigned(number_unsigned_t value) override { return AddScalar(std::uint64_t{value}); }
    bool number_float(number_float_t /*value*/, const string_t& /*text*/) override { return AddNull(); }
    bool string(string_t& value) override { return AddScalar(std::move(value)); }
    bool binary(binary_t& /*value*/) override { return AddNull(); }

    bool start_object(std::size_t /*size*/) override { return Open(Kind::kObject); }
    bool end_object() override { return Close(); }
    bool start_array(std::size_t /*size*/) override { return Open(Kind::kArray); }
    bool end_array() override { return Close(); }

    bool key(string_t& name) override {
        if (open_.back()->members.count(name) != 0) {
            throw PolicyFault("has the member '" + PrintableText(name) + "' twice in one object");
        }
        name_ = std::move(name);
        return true;
    }

    bool parse_error(std::size_t /*position*/, const std::string& /*token*/, const json::exception& error) override {
        throw PolicyFault("is no JSON: " + Complaint(error.what()));
    }

  private:
    static constexpr std::size_t kMaxDepth = 8; // a policy has 4

    /// Where the next value goes: there it is null so far.
    JsonValue& Place() {
        if (open_.empty()) {
            return root_;
        }
        JsonValue& parent = *open_.back();
        return parent.kind == Kind::kObject ? parent.members[name_] : parent.elements.emplace_back();
    }

    bool AddNull() {
        Place();
        return true;
    }

    template <typename Type>
    bool AddScalar(Type value) {
        Place().scalar = std::move(value);
        return true;
    }

    bool Open(Kind kind) {
        if (open_.size() == kMaxDepth) {
            throw PolicyFault("is nested too deeply for a policy");
        }
        JsonValue& value = Place();
        value.kind = kind;
        open_.push_back(&value);
        return true;
    }

    bool Close() {
        open_.pop_back();
        return true;
    }

    JsonValue root_;
    std::vector<JsonValue*> open_; ///< the objects and arrays that have not ended, each in the one before
    std::string name_;             ///< of the member that comes next
};

} // namespace

JsonValue ReadJson(const std::string& text) {
    JsonBuilder builder;
    json::sax_parse(text, &builder);
    return builder.TakeRoot();
}

} // namespace NQORVYX20
