#pragma once

#include "cimxml/NameCache.h"
#include "cimxml/PathDecoder.h"
#include "xml/TagCache.h"
#include "xml/XmlReader.h"

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace Pegasus::cimxml {

/// Finds which object, and which element of it, is at a position of an answer. It reads the text up to there a second
/// time, so that decoding itself need not keep track; only an answer with a fault needs it. It is large: keep it off
/// the stack.
class ErrorLocation {
  public:
    /// The text begins with an object or with what is around objects, within the element `parent` of the answer. The
    /// text must outlive this.
    explicit ErrorLocation(std::string_view text, std::string_view parent = {});

    /// Goes on to the element that is at a position; the last one before it where there is none, or where the text
    /// cannot be read any further. From one call to the next the position does not decrease.
    void goTo(std::size_t position);

    const std::string& className() const noexcept { return className_; }
    /// Empty where it is not known.
    const std::string& path() const noexcept { return path_; }
    /// "P" for a property, "qualifier Q of P", "key K"; empty where the object itself is meant.
    std::string element() const { return element(std::string_view()); }
    /// ", in the property P of A.K=5"; empty where nothing is known.
    std::string text() const;

  private:
    struct Step {
        std::string_view element;
        std::string label; // empty for an element that messages do not name
        bool isProperty = false;
    };

    void step();
    void enter();
    void noteObject();
    void notePath();
    std::string element(std::string_view wordForProperty) const;

    const std::string_view text_;
    xml::TagCache tags_;
    NameCache names_;
    PathDecoder paths_{names_};
    xml::XmlReader reader_;
    std::vector<Step> open_;
    bool left_ = false;  // the innermost of these has just ended
    bool ended_ = false; // there is nothing more to read
    bool isClass_ = false;
    std::string className_;
    std::string path_;
};

} // namespace Pegasus::cimxml
