#pragma once

#include <cstddef>
#include <map>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The answers of a CIM server, cut out of a fuzzer's input: good HTTP with the ID and the method of the request,
/// around what the input has for it.
///
/// A line of the input that begins with '@' has the name of a method; the lines behind it are what one answer to it
/// holds as its return value. Beginning with '!' they are the code of an error instead, and with '~' the connection
/// breaks off. The answers to a method count in their order, each for one object: who asks for the object again gets
/// the same. When none is left, there is nothing of that name.
///
/// The server has the pulled enumerations that the input has answers for. One that is opened has a second portion when
/// the answer begins with '+', and no third.
class CimAnswers {
  public:
    explicit CimAnswers(std::string_view input);

    /// The bytes of the answer; nothing where the connection is to break off.
    std::optional<std::string> To(const std::string& request);

  private:
    std::string_view ContentFor(const std::string& method, const std::string& object);

    std::map<std::string, std::vector<std::string_view>, std::less<>> contents_; // by method
    std::map<std::string, std::map<std::string, std::size_t>> places_;           // of a method's objects
};
