#pragma once

#include "cimhttp/DisplayTexts.h"
#include "display/DisplayChoice.h"
#include "host/TCIMValue.h"

#include <string>
#include <vector>

namespace NQORVYX20 {

/// Makes texts for people of the values of one property. There is an implementation for each of the two readings.
class PropertyTexts {
  public:
    virtual ~PropertyTexts() = default;

    /// The text of a value where it is there already, such as a text of a value map: it lives as long as the value and
    /// these texts. Null where it has to be made.
    virtual const std::string* Find(const TCIMValue& value, const DisplayChoice& choice) const = 0;

    /// The texts of an array's elements, none for null; one text for a scalar.
    virtual std::vector<std::string> OfElements(const TCIMValue& value, const DisplayChoice& choice) const = 0;

    /// Appends those texts to `made`, and where they end to `ends`.
    virtual void AddElements(const TCIMValue& value, const DisplayChoice& choice, TextMemory& texts) const = 0;

    /// The text of a value; an array's is one, too.
    std::string Of(const TCIMValue& value, const DisplayChoice& choice) const {
        const std::string* const found = Find(value, choice);
        if (found != nullptr) {
            return *found;
        }
        std::string text;
        AppendMade(value, choice, text);
        return text;
    }

    /// Appends that text.
    void Append(const TCIMValue& value, const DisplayChoice& choice, std::string& text) const {
        if (const std::string* const found = Find(value, choice)) {
            text += *found;
        } else {
            AppendMade(value, choice, text);
        }
    }

  protected:
    /// Appends the text of a value for which Find() has none.
    virtual void AppendMade(const TCIMValue& value, const DisplayChoice& choice, std::string& text) const = 0;

    /// Calls `append` for each element of an array that is not null, with the text to append to.
    template <typename Append>
    static void AddEach(const std::vector<TCIMValue>& elements, TextMemory& texts, const Append& append) {
        for (const TCIMValue& element : elements) {
            append(element, texts.made);
            texts.ends.push_back(texts.made.size());
        }
    }
    template <typename Append>
    static void AddEach(const std::vector<TCIMValue>& elements, std::vector<std::string>& texts, const Append& append) {
        texts.reserve(elements.size());
        for (const TCIMValue& element : elements) {
            append(element, texts.emplace_back());
        }
    }

    PropertyTexts() = default;
    PropertyTexts(const PropertyTexts&) = default;
    PropertyTexts& operator=(const PropertyTexts&) = default;
};

} // namespace NQORVYX20
