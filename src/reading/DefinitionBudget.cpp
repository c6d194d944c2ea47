#include "reading/DefinitionBudget.h"

#include "reading/LimitExceeded.h"

#include <string>

namespace NQORVYX20 {

namespace {

std::uint64_t ElementsOf(Pegasus::CIMMethod& method) {
    std::uint64_t count = 1 + method.getQualifierCount();
    for (Pegasus::Uint32 i = 0; i < method.getParameterCount(); ++i) {
        Pegasus::CIMParameter parameter = method.getParameter(i);
        count += 1 + parameter.getQualifierCount();
    }
    return count;
}

std::uint64_t ElementsOf(Pegasus::CIMClass& definition) {
    std::uint64_t count = definition.getQualifierCount();
    for (Pegasus::Uint32 i = 0; i < definition.getPropertyCount(); ++i) {
        Pegasus::CIMProperty property = definition.getProperty(i);
        count += 1 + property.getQualifierCount();
    }
    for (Pegasus::Uint32 i = 0; i < definition.getMethodCount(); ++i) {
        Pegasus::CIMMethod method = definition.getMethod(i);
        count += ElementsOf(method);
    }
    return count;
}

} // namespace

void DefinitionBudget::Check() const {
    if (isSpent_) {
        Fail();
    }
}

void DefinitionBudget::Charge(Pegasus::CIMClass& definition) {
    const std::uint64_t count = ElementsOf(definition);
    if (count > elements_ - used_) {
        isSpent_ = true;
        Fail();
    }
    used_ += count;
}

void DefinitionBudget::Fail() const {
    const std::string text = "the classes of the namespace have more than " + std::to_string(elements_) +
                             " properties, methods, parameters and qualifiers";
    throw LimitExceeded(text.c_str());
}

} // namespace NQORVYX20
