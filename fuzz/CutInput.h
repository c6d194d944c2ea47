#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

/// Bytes that arrive in pieces.
class Pieces {
  public:
    /// Each byte of `sizes` says, in turn and over and over again, how long the next piece is: 1 for '@', 2 for 'A' and
    /// so on up to 64. Without sizes there is one piece.
    explicit Pieces(std::string_view bytes, std::string_view sizes = {});

    /// Takes a piece, cut down to `limit` bytes; empty when nothing is left.
    std::string_view Next(std::size_t limit = std::string_view::npos);

  private:
    std::size_t NextSize();

    std::string_view bytes_;
    const std::string_view sizes_;
    std::size_t index_ = 0;
};

/// A fuzzer's input of which the first line says how the rest is cut.
class CutInput {
  public:
    CutInput(const std::uint8_t* data, std::size_t size);

    std::string_view Bytes() const { return bytes_; }
    Pieces Whole() const { return Pieces(bytes_); }
    Pieces Cut() const { return Pieces(bytes_, sizes_); }

  private:
    std::string_view sizes_;
    std::string_view bytes_;
};
