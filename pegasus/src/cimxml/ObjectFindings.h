#pragma once

#include <Pegasus/Client/LenientFinding.h>

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Pegasus::cimxml {

/// What was found in the object that is being decoded: how much, and the first findings in full. Where an object has to
/// be read again from its beginning, they are forgotten.
class ObjectFindings {
  public:
    struct Finding {
        LenientFinding::Kind kind;
        std::string text;
        std::string reason;
        std::size_t position; ///< in the text of the object
        std::string element;
    };

    std::size_t count() const noexcept { return count_; }
    const std::vector<Finding>& first() const noexcept { return first_; }
    /// How many findings of a kind are not among the first ones.
    std::size_t countOfOthers(LenientFinding::Kind kind) const noexcept { return others_[kind]; }

    void add(Finding finding);
    /// Sets the element of the findings from number `since` on: a part of `element`.
    void within(std::size_t since, std::string_view element);
    /// Sets the position of the findings from number `since` on, which were found in another text.
    void moveTo(std::size_t since, std::size_t position);
    void clear() noexcept {
        if (count_ != 0) {
            first_.clear();
            others_ = {};
        }
        count_ = 0;
    }

  private:
    std::size_t count_ = 0;
    std::array<std::size_t, LenientFinding::kKinds> others_{};
    std::vector<Finding> first_;
};

} // namespace Pegasus::cimxml
