#pragma once

#include <cstddef>
#include <string>
#include <vector>

/// What a terminal shows of the bytes that a program has written to it: so much of an xterm as ncurses makes use of.
class TerminalScreen {
  public:
    TerminalScreen(std::size_t columns, std::size_t lines);

    /// The bytes that follow those before; what is not known of them is in Unknown().
    void Feed(const std::string& bytes);

    /// The lines from the top, without blanks at their ends.
    std::vector<std::string> Lines() const;

    /// All lines, each with its end.
    std::string Text() const;

    bool IsAlternate() const { return isAlternate_; }
    bool IsCursorVisible() const { return isCursorVisible_; }

    /// Sequences, and control characters, that this does not know.
    const std::vector<std::string>& Unknown() const { return unknown_; }

  private:
    using Cells = std::vector<std::string>; // each a character with its marks; empty right of a wide one

    bool TakeSequence();
    void Control(char final, const std::string& parameters);
    void SetModes(const std::string& parameters, bool isOn);
    void Put(const std::string& character, std::size_t width);
    void LineFeed();
    void ScrollUp(std::size_t from);
    void ScrollDown(std::size_t from);
    void Erase(std::size_t line, std::size_t begin, std::size_t end);

    std::size_t columns_;
    std::vector<Cells> cells_;
    std::size_t line_ = 0;
    std::size_t column_ = 0;
    std::size_t top_ = 0; // of the part that scrolls
    std::size_t bottom_;
    std::string pending_; // bytes that may be the begin of more
    std::string last_;    // the character that can be repeated
    bool isAlternate_ = false;
    bool isCursorVisible_ = true;
    std::vector<std::string> unknown_;
};
