#pragma once

#include <string>
#include <string_view>

namespace cimhttp {

/// Takes JSON, piece by piece, and makes JSON of it that can stand in a page and that the page's script reads without
/// loss: no character begins a tag, and an integer of more digits than a script's numbers have is a string.
///
///     {"a":"</script>","b":18446744073709551615}   becomes   {"a":"\u003c/script>","b":"18446744073709551615"}
class EmbeddedJson {
  public:
    /// The pieces together must be JSON; what is returned is as far as it is known.
    std::string Take(std::string_view json);

    /// The rest.
    std::string End();

  private:
    void TakeInText(char character);
    void TakeOutside(char character);
    void EndNumber();

    std::string done_;
    std::string number_; ///< that has begun
    bool isInText_ = false;
    bool isEscaped_ = false;
};

} // namespace cimhttp
