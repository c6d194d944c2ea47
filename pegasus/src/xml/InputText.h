#pragma once

#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <string_view>

namespace Pegasus::xml {

/// The part of a body that has arrived and is not read yet.
class InputText {
  public:
    /// With `repairs`, each byte that is not UTF-8 and each character that is not accepted is replaced by a character:
    /// that of Latin-1, or U+FFFD where Latin-1 has none.
    explicit InputText(bool repairs = false) : repairs_(repairs) {}

    /// Adds bytes, cut anywhere. Views of the unread text become invalid.
    void append(std::string_view bytes);
    /// Ends the text: no more bytes come. Views of the unread text become invalid.
    void end();

    /// What has arrived, up to the last whole character.
    std::string_view unread() const noexcept { return {bytes_.data() + begin_, checked_ - begin_}; }
    /// Marks the first `length` bytes of the unread text as read.
    void take(std::size_t length) noexcept;
    /// Whether a text begins with the character that is put in the place of those that are not accepted.
    static bool isReplaced(std::string_view text) noexcept;
    /// Takes null characters, and the characters that are put in their place, off the front. False when there are none.
    bool takeNulls() noexcept;

    /// Whether no bytes are left, not even of a character that is not complete.
    bool isEmpty() const noexcept { return begin_ == bytes_.size() && rest_.empty(); }
    /// Whether the unread text is followed by what is not UTF-8, or a character that is not accepted.
    bool endsBadly() const noexcept;
    /// What follows the unread text in that case, for people.
    std::string badEnd() const;

    /// Where in the body a place of the unread text is. Not exact among repairs that are not kept.
    std::size_t offsetOf(std::size_t position) const noexcept;

    struct Repair {
        std::size_t at;     ///< in the text as it is read, from the beginning of the body
        std::size_t grown;  ///< by how much that text is longer than the body, up to and with this repair
        std::uint32_t code; ///< of the byte or the character that was there
        bool isByte;
    };
    static constexpr std::size_t kMaxKeptRepairs = 10000;

    /// The repairs of the unread text, in its order; beyond kMaxKeptRepairs, only the first one after each tag, so that
    /// no element is missed.
    const std::deque<Repair>& repairs() const noexcept { return kept_; }
    /// What was there, for people.
    static std::string textOf(const Repair& repair);
    /// Where a repair is in the unread text.
    std::size_t positionOf(const Repair& repair) const noexcept { return repair.at - taken_; }

  private:
    void appendRepaired(std::string_view bytes, bool isLast);
    std::size_t repairFirst(std::string_view bad);
    void keep(const Repair& repair);

    const bool repairs_;
    std::string bytes_;
    std::size_t begin_ = 0;      // of what is unread
    std::size_t checked_ = 0;    // the end of the characters that are accepted
    std::size_t taken_ = 0;      // of the whole text
    std::string rest_;           // where this repairs: what may be the beginning of a character
    std::size_t grown_ = 0;      // by how much the repaired text is longer than the body
    std::size_t grownTaken_ = 0; // by how much that part of it is longer which is taken
    std::size_t lastRepair_ = 0; // where the last one was, kept or not
    std::deque<Repair> kept_;
};

} // namespace Pegasus::xml
