#include "host/TInmemInstance.h"

#include "Associations.h"
#include "TInmemIndex.h"
#include "TInmemProperty.h"
#include "host/ICIMClass.h"
#include "host/ICIMNamespace.h"
#include "host/ICIMPropertyDecl.h"
#include "host/ILogger.h"
#include "host/TRootObject.h"
#include "host/TVYXException.h"

#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <algorithm>
#include <atomic>
#include <cstdint>
#include <sstream>
#include <utility>

namespace NQORVYX20 {

namespace {

constexpr int kOnlyLayout = 1;
constexpr const char* kNumberKey = "#"; // which no property can be called
constexpr std::size_t kFewSlots = 8;    // which are searched one after the other

[[noreturn]] void Fail(TVYXStatusCode::EStatusCode code, const std::string& message) {
    TRootObject::GetCoreLogger()->Log(ILogger::eLogError, "TInmemInstance: " + message);
    throw TVYXException(code);
}

// Instances are made by several threads, each with a namespace of its own.
unsigned long long NextNumber() {
    static std::atomic<unsigned long long> next{1};
    return next.fetch_add(1, std::memory_order_relaxed);
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
        if (!callback(instance)) {
            return;
        }
    }
}

} // namespace

TInmemInstance::TSlot::TSlot(const boost::shared_ptr<ICIMPropertyDecl const>& slotDeclaration,
                             const TCIMValue& slotValue)
    : declaration(slotDeclaration), value(slotValue) {}

TInmemInstance::TInmemInstance(boost::shared_ptr<ICIMClass> cls, int layout)
    : class_(cls), number_(NextNumber()), slots_(boost::make_shared<TSlots>()) {
    if (layout != kOnlyLayout) {
        Fail(TVYXStatusCode::eTypeMismatch, "there is no layout " + std::to_string(layout));
    }
}

TInmemInstance::~TInmemInstance() = default;

void TInmemInstance::Validate(TCIMContext context) const {
    for (const TSlot& slot : *slots_) {
        const std::string& name = slot.declaration->GetName(context);
        const auto declaration = FindDeclaration(name, context);
        if (declaration != slot.declaration) {
            Fail(TVYXStatusCode::eNotFound, "the declaration of property " + name + " of class " +
                                                GetClass(context)->GetName(context) +
                                                " was replaced after the value was set");
        }
        Check(*declaration, slot.value);
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
        reference.AddKeyValue(kNumberKey, number_);
    }
    return reference;
}

boost::shared_ptr<ICIMClass> TInmemInstance::GetClass(TCIMContext) const {
    return boost::shared_ptr<ICIMClass>(class_); // throws when the class has gone, as lock() would not
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
    Store(FindDeclaration(name, std::move(context)), value);
}

void TInmemInstance::TakePropertyValue(const boost::shared_ptr<ICIMPropertyDecl const>& declaration,
                                       TCIMValue&& value) {
    Store(declaration, std::move(value));
}

void TInmemInstance::ExpectValues(std::size_t count) {
    OwnSlots();
    slots_->reserve(count);
}

void TInmemInstance::EnumerateProperties(const boost::function<bool(boost::shared_ptr<ICIMProperty>)>& callback,
                                         TCIMContext context) {
    const auto self = shared_from_this();
    boost::shared_ptr<TInmemProperty> view;
    GetClass(context)->EnumeratePropertyDecls(
        [&](boost::shared_ptr<ICIMPropertyDecl>&& declaration) {
            if (view.use_count() == 1) { // the callback did not keep it: it can show the next property
                view->Show(std::move(declaration));
            } else {
                view = boost::make_shared<TInmemProperty>(self, std::move(declaration));
            }
            return callback(view);
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
    if (this != &other) {
        TakeValues(other);
    }
    return *this;
}

boost::shared_ptr<ICIMPropertyDecl const> TInmemInstance::FindDeclaration(const std::string& name,
                                                                          TCIMContext context) const {
    const boost::shared_ptr<ICIMClass> cls(class_); // throws when the class has gone
    if (auto declaration = cls->GetPropertyDecl(name, context)) {
        return declaration;
    }
    Fail(TVYXStatusCode::eNotFound, "class " + cls->GetName(context) + " declares no property " + name);
}

TCIMValue::TCIMType TInmemInstance::Check(const ICIMPropertyDecl& declaration, const TCIMValue& value) const {
    const TCIMValue::TCIMType type = declaration.GetType({});
    if (value.GetType() == type || value.IsNull()) {
        return type;
    }
    std::ostringstream message;
    message << "property " << declaration.GetName({}) << " of class " << GetClass({})->GetName({}) << " is of type "
            << type << ", but the value is of type " << value.GetType();
    Fail(TVYXStatusCode::eTypeMismatch, message.str());
}

const TCIMValue* TInmemInstance::FindValue(const ICIMPropertyDecl& declaration) const {
    const TSlot* const slot = FindSlot(declaration);
    return slot != nullptr ? &slot->value : nullptr;
}

TInmemInstance::TSlot* TInmemInstance::FindSlot(const ICIMPropertyDecl& declaration) const {
    if (index_) {
        return index_->Find(*slots_, declaration);
    }
    const auto slot = std::find_if(slots_->begin(), slots_->end(), [&declaration](const TSlot& candidate) {
        return candidate.declaration.get() == &declaration;
    });
    return slot == slots_->end() ? nullptr : &*slot;
}

const TCIMValue& TInmemInstance::ReadValue(const ICIMPropertyDecl& declaration) const {
    const TCIMValue* const own = FindValue(declaration);
    return own != nullptr ? *own : declaration.GetDefaultValue({});
}

void TInmemInstance::StoreValue(const boost::shared_ptr<ICIMPropertyDecl const>& declaration, const TCIMValue& value) {
    Store(declaration, value);
}

template <typename Value>
void TInmemInstance::Store(const boost::shared_ptr<ICIMPropertyDecl const>& declaration, Value&& value) {
    const TCIMValue::TCIMType type = declaration->GetType({});
    if (value.GetType() != type) {
        Check(*declaration, value);
        return Store(declaration, TCIMValue(type, 0)); // a null of another type
    }
    OwnSlots();
    if (TSlot* const slot = FindSlot(*declaration)) {
        slot->value = std::forward<Value>(value);
        return;
    }
    MakeRoom();
    slots_->emplace_back(declaration, std::forward<Value>(value));
    ExtendIndex();
}

void TInmemInstance::OwnSlots() {
    if (slots_.use_count() > 1) {
        slots_ = boost::make_shared<TSlots>(*slots_);
    }
}

void TInmemInstance::MakeRoom() {
    const std::size_t count = slots_->size();
    if (count == slots_->capacity()) {
        slots_->reserve(count == 0 ? kFewSlots : std::max(count + kFewSlots, CountDeclarations()));
    }
}

void TInmemInstance::ExtendIndex() {
    if (slots_->size() <= kFewSlots) {
        return;
    }
    if (!index_) {
        index_ = std::make_unique<TIndex>();
    }
    index_->Extend(*slots_);
}

// An instance has few values, or most of those that its class declares: room for neither more nor less saves moving the
// values, and the memory of many instances.
std::size_t TInmemInstance::CountDeclarations() const {
    std::size_t count = 0;
    GetClass({})->EnumeratePropertyDecls([&count](const auto&) { return ++count != 0; }, {});
    return count;
}

void TInmemInstance::TakeValues(const ICIMInstance& other) {
    auto slots = boost::make_shared<TSlots>();
    other.GetClass({})->EnumeratePropertyDecls(
        [&](boost::shared_ptr<ICIMPropertyDecl> otherDeclaration) {
            const std::string& name = otherDeclaration->GetName({});
            const auto property = other.GetProperty(name, {});
            if (!property->IsDefaultValue({})) {
                const auto declaration = FindDeclaration(name, {});
                const TCIMValue& value = property->GetValue({});
                const TCIMValue::TCIMType type = Check(*declaration, value);
                slots->emplace_back(declaration, value.IsNull() ? TCIMValue(type, 0) : value);
            }
            return true;
        },
        {});
    slots_.swap(slots);
    index_.reset();
    ExtendIndex();
}

} // namespace NQORVYX20
