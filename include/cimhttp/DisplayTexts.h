#pragma once

#include <boost/shared_ptr.hpp>

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace NQORVYX20 {

class ICIMInstance;
class ICIMPropertyDecl;
class TCIMValue;

/// How texts for people are wanted. The compatible reading has one form, whatever this says.
struct DisplayForm {
    bool isUnscaled = false;    ///< numbers as they are, with their unit: `2300 MHz`, not `2.3 GHz`
    bool saysWhatIsNot = false; ///< `17 (not in the map)` for a number that a value map has no text for
};

// The texts for people of a property's value, by its declaration's qualifiers: value maps, names of bits, units, the
// text for null. There is one text, and for an array that is not null one for each element, so none for an empty one.
// They are in UTF-8, and may hold whatever the server sent: a terminal gets them escaped. No server is asked.
//
// The rules are those of the reading that the declaration belongs to. Those of the compatible reading are also for
// declarations that are not the plug-in's, as its in-memory ones.
//
// The functions are exported by the plug-in, and are used from the thread that uses the namespace.

/// The texts of the value that an instance has for a property, in the unit that the instance itself tells, as a sensor
/// does. Throws TVYXException: eNotFound when its class does not declare the property, or the code of a look-up of a
/// qualifier that failed; boost::bad_weak_ptr when the class or the namespace has gone.
std::vector<std::string> DisplayTexts(const ICIMInstance& instance, const std::string& property,
                                      const DisplayForm& form = {});

/// The texts of a value, such as a default or one that is kept from an earlier reading. `instance`, of which it is or
/// was a value, may tell its unit; it may be null. Throws as above, but never eNotFound for the property; eTypeMismatch
/// without a declaration.
std::vector<std::string> DisplayTexts(const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                                      const TCIMValue& value, const DisplayForm& form = {},
                                      const ICIMInstance* instance = nullptr);

/// Texts, and memory that is used again for those of the next value: for a host that shows very many.
struct TextMemory {
    std::vector<std::string_view> texts;

    // what the texts that had to be made stand in
    std::string made;
    std::vector<std::size_t> ends;
};

/// Puts those texts in the place of what is in `memory.texts`. They are valid as long as the memory, the value, the
/// declaration and its qualifiers stay as they are.
void MakeDisplayTexts(TextMemory& memory, const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                      const TCIMValue& value, const DisplayForm& form = {}, const ICIMInstance* instance = nullptr);

} // namespace NQORVYX20
