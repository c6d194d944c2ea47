#pragma once

#include "HostTypes.h"
#include "cimhttp/DisplayTexts.h"
#include "output/ValueTexts.h"

#include <boost/shared_ptr.hpp>

#include <string>
#include <string_view>

namespace cimhttp {

class TextBuffer;

/// What a DisplayText says, of one value after the other and in the same memory, where very many are written.
class ShownValue {
  public:
    explicit ShownValue(const ValueTexts& texts) : maker_(texts) {}

    const PluginAccess& Access() const { return maker_.Access(); }

    /// Turns to a value that the instance has for a property. The value must live until the next one.
    void TurnTo(const NQORVYX20::ICIMInstance& instance,
                const boost::shared_ptr<NQORVYX20::ICIMPropertyDecl const>& declaration,
                const NQORVYX20::TCIMValue& value);

    /// The texts in one line, see DisplayText. Valid until the next value.
    std::string_view Joined();

    /// Appends a JSON string, or for a list an array of them.
    void AppendJson(TextBuffer& json) const;

  private:
    bool IsList() const;

    ValueTexts maker_;
    const NQORVYX20::TCIMValue* value_ = nullptr;
    NQORVYX20::TextMemory memory_;
    std::string line_; // of a list
};

} // namespace cimhttp
