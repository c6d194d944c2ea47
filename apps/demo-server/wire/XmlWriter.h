#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace demo {

/// Thrown by an output that nobody reads any more; it ends whatever was being written.
class OutputClosed : public std::runtime_error {
  public:
    OutputClosed() : std::runtime_error("the output is closed") {}
};

/// Writes an XML document piece by piece: escapes, knows the open elements, and passes the text on in portions, so that
/// a document of any size takes little memory. Bytes that XML cannot have become replacement characters.
class XmlWriter {
  public:
    /// Takes a portion of the text. What it throws goes to the caller of the writer.
    using Output = std::function<void(std::string_view)>;

    explicit XmlWriter(Output output);

    XmlWriter& Declaration();
    /// Opens an element; Attribute() adds to it until it has content.
    XmlWriter& Start(std::string_view name);
    XmlWriter& Attribute(std::string_view name, std::string_view value);
    XmlWriter& Text(std::string_view text);
    /// Closes the element that was opened last.
    XmlWriter& End();

    /// The number of open elements.
    std::size_t Depth() const { return open_.size(); }
    /// How long the text is so far, with what is held back.
    std::size_t Length() const { return passedOn_ + buffer_.size(); }
    /// Closes elements until so many are open.
    void EndTo(std::size_t depth);

    /// Passes on what is still held back.
    void Flush();

  private:
    void CloseStartTag();
    void Escape(std::string_view text);
    void FlushIfLarge();

    Output output_;
    std::string buffer_;
    std::size_t passedOn_ = 0;
    std::vector<std::string> open_;
    bool inStartTag_ = false;
};

} // namespace demo
