#pragma once

#include <Pegasus/Client/CIMClient.h>

#include <cstddef>
#include <cstdint>

namespace NQORVYX20 {

/// How many elements the classes of a namespace may hold in all: properties, methods, parameters and qualifiers.
/// Classes are kept as long as their namespace, so it is here that a server without end has to stop.
class DefinitionBudget {
  public:
    static constexpr std::uint64_t kElements = 4000000;

    /// How many classes may stand one above the other. More are a server's mistake or malice.
    static constexpr std::size_t kLevels = 256;

    void SetElements(std::uint64_t elements) { elements_ = elements; }

    /// Before a definition is fetched. Throws LimitExceeded when a definition did not fit before.
    void Check() const;

    /// Before a definition is kept. Throws LimitExceeded when it does not fit.
    void Charge(Pegasus::CIMClass& definition);

  private:
    [[noreturn]] void Fail() const;

    std::uint64_t elements_ = kElements;
    std::uint64_t used_ = 0;
    bool isSpent_ = false;
};

} // namespace NQORVYX20
