#pragma once

#include "host/ICIMPropertyDecl.h"
#include "host/TCIMContext.h"

#include <cstddef>
#include <string>
#include <utility>

namespace NQORVYX20 {

// A host's in-memory instance may take a value for a declaration that its caller has at hand; the name says it
// otherwise.

template <typename Instance>
auto StoreDeclared(Instance& instance, const boost::shared_ptr<const ICIMPropertyDecl>& declaration,
                   const std::string& /*name*/, TCIMValue&& value, int /*preferred*/)
    -> decltype(instance.TakePropertyValue(declaration, std::move(value))) {
    instance.TakePropertyValue(declaration, std::move(value));
}

template <typename Instance>
void StoreDeclared(Instance& instance, const boost::shared_ptr<const ICIMPropertyDecl>& /*declaration*/,
                   const std::string& name, TCIMValue&& value, long /*otherwise*/) {
    instance.SetPropertyValue(name, value, TCIMContext());
}

template <typename Instance>
auto Expect(Instance& instance, std::size_t count, int /*preferred*/) -> decltype(instance.ExpectValues(count)) {
    instance.ExpectValues(count);
}

template <typename Instance>
void Expect(Instance& /*instance*/, std::size_t /*count*/, long /*otherwise*/) {}

/// Tells an in-memory instance how many values it gets.
template <typename Instance>
void ExpectValues(Instance& instance, std::size_t count) {
    Expect(instance, count, 0);
}

/// Gives an in-memory instance the value of a property that its class declares so, under this normal form of its name.
/// Throws as the instance's SetPropertyValue does.
template <typename Instance>
void StoreDeclaredValue(Instance& instance, const boost::shared_ptr<const ICIMPropertyDecl>& declaration,
                        const std::string& name, TCIMValue&& value) {
    StoreDeclared(instance, declaration, name, std::move(value), 0);
}

} // namespace NQORVYX20
