#include "host/TInmemInstance.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <cstdint>
#include <sstream>
#include <utility>

#include "Associations.h"
#include "TInmemProperty.h"
#include "host/ICIMClass.h"
#include "host/ICIMNamespace.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ILogger.h"
#include "host/TRootObject.h"
#include "host/TVYXException.h"

namespace NQORVYX20 {

namespace {

constexpr int kOnlyLayout = 1;
constexpr std::size_t kMaxSearched = 64;
constexpr std::size_t kSlotsAtOnce = 8; // doubling would leave much of the memory of many instances unused

[[noreturn]] void Fail(std::uint32_t code, const std::string& message) {
    TRootObject::GetCoreLogger()->Log(ILogger::eLogError, "TInmemInstance: " + message);
    throw TVYXException(code);
}

using TNamedValues = std::vector<std::pair<std::string, TCIMValue>>;

TNamedValues ValuesOf(const ICIMInstance& instance, const TCIMContext& context) {
    TNamedValues values;
    instance.GetClass(context)->EnumeratePropertyDecls(
        [&](boost::shared_ptr<ICIMPropertyDecl> declaration) {
            const std::string& name = declaration->GetName(context);
            values.emplace_back(name, instance.GetProperty(name, context)->GetValue(context));
            return true;
        },
        context);
    return values;
}

// What instances are compared by.
std::pair<std::string, TNamedValues> ContentOf(const ICIMInstance& instance) {
    return {instance.GetClass({})->GetName({}), ValuesOf(instance, {})};
}

void CallForEach(const TInstances& instances, const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback) {
    for (const auto& instance : instances) {
        if (!callback(instance))
            return;
    }
}

} // namespace

TInmemInstance::TInmemInstance(boost::shared_ptr<ICIMClass> cls, int layout) : fClass(cls) {
    if (layout != kOnlyLayout)
        Fail(14, "there is no layout " + std::to_string(layout));
}

TInmemInstance::~TInmemInstance() = default;

void TInmemInstance::Validate(TCIMContext context) const {
    for (const TSlot& slot : fSlots) {
        const std::string& name = slot.declaration->GetName(context);
        const auto declaration = FindDeclaration(name, context);
        if (declaration != slot.declaration)
            Fail(15, "the declaration of property " + name + " of class " + GetClass(context)->GetName(context) +
                         " was replaced after the value was set");
        Checked(*declaration, slot.value);
    }
}

void TInmemInstance::ModifyInstance(boost::shared_ptr<ICIMInstance> values, TCIMContext) { TakeValues(*values); }

void TInmemInstance::Delete(TCIMContext context) { GetClass(context)->RemoveInstance(shared_from_this()); }

TCIMReference TInmemInstance::GetReference(TCIMContext context) const {
    const boost::shared_ptr<ICIMClass> cls = GetClass(context);
    TCIMReference reference(cls->GetNamespace(context), {});
    reference.SetClassName(cls->GetName(context));
    bool hasKeys = false;
    cls->EnumerateKeyNames(
        [&](const std::string* name) {
            reference.AddKeyValue(*name, ReadValue(*FindDeclaration(*name, context)));
            hasKeys = true;
            return true;
        },
        context);
    if (!hasKeys) {
        for (const auto& [name, value] : ValuesOf(*this, context))
            reference.AddKeyValue(name, value);
    }
    return reference;
}

boost::shared_ptr<ICIMClass> TInmemInstance::GetClass(TCIMContext) const {
    return boost::shared_ptr<ICIMClass>(fClass); // throws when the class has gone, as lock() would not
}

void TInmemInstance::EnumerateAssociatedInstances(
    const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback, const std::string& assocClass,
    const std::string& resultClass, const std::string& role, const std::string& resultRole, TCIMContext context) {
    CallForEach(FindAssociatedInstances(*this, assocClass, resultClass, role, resultRole, context), callback);
}

void TInmemInstance::EnumerateAssociationInstances(
    const boost::function<bool(boost::shared_ptr<ICIMInstance>)>& callback, const std::string& resultClass,
    const std::string& role, TCIMContext context) {
    CallForEach(FindAssociationInstances(*this, resultClass, role, context), callback);
}

boost::shared_ptr<ICIMProperty> TInmemInstance::GetProperty(const std::string& name, TCIMContext context) const {
    const auto declaration = FindDeclaration(name, context);
    // The interface hands out properties that can be written from a const instance.
    const auto self = boost::const_pointer_cast<TInmemInstance>(shared_from_this());
    return boost::make_shared<TInmemProperty>(self, declaration);
}

void TInmemInstance::SetPropertyValue(const std::string& name, const TCIMValue& value, TCIMContext context) {
    StoreValue(FindDeclaration(name, context), value);
}

void TInmemInstance::EnumerateProperties(const boost::function<bool(boost::shared_ptr<ICIMProperty>)>& callback,
                                         TCIMContext context) {
    const auto self = shared_from_this();
    GetClass(context)->EnumeratePropertyDecls(
        [&](boost::shared_ptr<ICIMPropertyDecl> declaration) {
            return callback(boost::make_shared<TInmemProperty>(self, declaration));
        },
        context);
}

TCIMValue TInmemInstance::InvokeMethod(const std::string& name, TCIMContext& parameters, TCIMContext context) {
    return GetClass(context)->InvokeMethod(name, parameters, context);
}

bool TInmemInstance::operator==(ICIMInstance& other) const { return ContentOf(*this) == ContentOf(other); }

bool TInmemInstance::operator<(ICIMInstance& other) const { return ContentOf(*this) < ContentOf(other); }

ICIMInstance& TInmemInstance::operator=(const ICIMInstance& other) {
    TakeValues(other);
    return *this;
}

TInmemInstance& TInmemInstance::operator=(const TInmemInstance& other) {
    if (this != &other)
        TakeValues(other);
    return *this;
}

boost::shared_ptr<ICIMPropertyDecl const> TInmemInstance::FindDeclaration(const std::string& name,
                                                                          TCIMContext context) const {
    const boost::shared_ptr<ICIMClass> cls = GetClass(context);
    if (const auto declaration = cls->GetPropertyDecl(name, context))
        return declaration;
    Fail(15, "class " + cls->GetName(context) + " declares no property " + name);
}

// The value as it is stored. Throws when it does not fit.
TCIMValue TInmemInstance::Checked(const ICIMPropertyDecl& declaration, const TCIMValue& value) const {
    const TCIMValue::TCIMType type = declaration.GetType({});
    if (value.IsNull())
        return {type, 0};
    if (value.GetType() == type)
        return value;
    std::ostringstream message;
    message << "property " << declaration.GetName({}) << " of class " << GetClass({})->GetName({}) << " is of type "
            << type << ", but the value is of type " << value.GetType();
    Fail(14, message.str());
}

const TCIMValue* TInmemInstance::FindValue(const ICIMPropertyDecl& declaration) const {
    const std::size_t place = FindSlot(declaration);
    return place < fSlots.size() ? &fSlots[place].value : nullptr;
}

std::size_t TInmemInstance::FindSlot(const ICIMPropertyDecl& declaration) const {
    if (fIndex) {
        const auto found = fIndex->find(&declaration);
        return found == fIndex->end() ? fSlots.size() : found->second;
    }
    const auto slot = std::find_if(fSlots.begin(), fSlots.end(), [&declaration](const TSlot& candidate) {
        return candidate.declaration.get() == &declaration;
    });
    return static_cast<std::size_t>(slot - fSlots.begin());
}

// A server decides how many properties an instance has: the time to set all of them must not grow with their square.
void TInmemInstance::ExtendIndex() {
    if (fSlots.size() <= kMaxSearched)
        return;
    if (!fIndex)
        fIndex = std::make_unique<TIndex>();
    for (std::size_t place = fIndex->size(); place < fSlots.size(); ++place)
        fIndex->emplace(fSlots[place].declaration.get(), place);
}

const TCIMValue& TInmemInstance::ReadValue(const ICIMPropertyDecl& declaration) const {
    const TCIMValue* const own = FindValue(declaration);
    return own != nullptr ? *own : declaration.GetDefaultValue({});
}

void TInmemInstance::StoreValue(const boost::shared_ptr<ICIMPropertyDecl const>& declaration, const TCIMValue& value) {
    TCIMValue checked = Checked(*declaration, value);
    const std::size_t place = FindSlot(*declaration);
    if (place < fSlots.size()) {
        fSlots[place].value = std::move(checked);
        return;
    }
    if (fSlots.size() == fSlots.capacity())
        fSlots.reserve(fSlots.size() + std::max(kSlotsAtOnce, fSlots.size() / 8));
    fSlots.push_back({declaration, std::move(checked)});
    ExtendIndex();
}

void TInmemInstance::TakeValues(const ICIMInstance& other) {
    std::vector<TSlot> slots;
    other.GetClass({})->EnumeratePropertyDecls(
        [&](boost::shared_ptr<ICIMPropertyDecl> otherDeclaration) {
            const std::string& name = otherDeclaration->GetName({});
            const auto property = other.GetProperty(name, {});
            if (!property->IsDefaultValue({})) {
                const auto declaration = FindDeclaration(name, {});
                slots.push_back({declaration, Checked(*declaration, property->GetValue({}))});
            }
            return true;
        },
        {});
    fSlots.swap(slots);
    fIndex.reset();
    ExtendIndex();
}

} // namespace NQORVYX20
