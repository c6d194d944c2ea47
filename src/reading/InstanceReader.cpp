#include "reading/InstanceReader.h"

#include "convert/HostValues.h"
#include "convert/RemoteText.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TVYXException.h"
#include "model/DeclaredValue.h"
#include "model/TCimHTTPClass.h"
#include "model/TFaithfulInstance.h"
#include "reading/ReadingReport.h"

#include <boost/make_shared.hpp>

#include <cstddef>
#include <sstream>
#include <utility>

namespace NQORVYX20 {

namespace {

using Cause = ReadingIncident::Cause;

/// Why a value cannot be taken over.
struct TRefusal {
    Cause cause;
    std::string reason;
};

std::string TypesText(const TCIMValue::TCIMType& declared, const TCIMValue::TCIMType& sent) {
    std::ostringstream text;
    text << "the class declares " << declared << ", and the value is a " << sent;
    return text.str();
}

void CheckType(const ICIMPropertyDecl& declaration, const TCIMValue& value) {
    const TCIMValue::TCIMType declared = declaration.GetType(TCIMContext());
    if (declared != value.GetType()) {
        throw TRefusal{Cause::kOtherType, TypesText(declared, value.GetType())};
    }
}

TCIMValue ValueOf(const Pegasus::CIMProperty& property) {
    try {
        return HostValue(property.getValue());
    } catch (const TVYXException&) {
        throw TRefusal{Cause::kBadValue, "the host has no such value: " + ToStdString(property.getValue().toString())};
    } catch (const Pegasus::Exception& failure) {
        throw TRefusal{Cause::kBadValue, ToStdString(failure.getMessage())};
    }
}

void CheckName(const InstanceShape::TName& name) {
    if (name.normalized.empty()) {
        throw TRefusal{Cause::kBadName, "the host cannot keep a property of this name"};
    }
    if (name.comesAgain) {
        throw TRefusal{Cause::kDoubledProperty, "the instance has the property again; the last value counts"};
    }
}

void SetValue(TFaithfulInstance& instance, const InstanceShape::TName& name, const Pegasus::CIMProperty& property) {
    CheckName(name);
    if (!name.declaration) {
        throw TRefusal{Cause::kUndeclaredProperty, "the class does not declare the property"};
    }
    if (property.getValue().isNull()) {
        return; // which a new instance's property is
    }
    TCIMValue value = ValueOf(property);
    CheckType(*name.declaration, value);
    StoreDeclaredValue(instance, name.declaration, name.normalized, std::move(value));
    auto embedded = EmbeddedObjectsIn(property.getValue());
    if (!embedded.empty()) {
        instance.KeepEmbedded(name.normalized, std::move(embedded));
    }
}

} // namespace

boost::shared_ptr<TFaithfulInstance>
InstanceReader::Read(Pegasus::CIMInstance& remote, const boost::shared_ptr<TCimHTTPClass>& cls, TCIMReference path) {
    auto instance = boost::make_shared<TFaithfulInstance>(cls, std::move(path));
    shape_.Fit(remote, cls);
    const auto& properties = shape_.Properties();
    ExpectValues(*instance, properties.size());
    for (std::size_t i = 0; i < properties.size(); ++i) {
        const Pegasus::CIMProperty& property = properties[i];
        try {
            SetValue(*instance, shape_.NameAt(i), property);
        } catch (const TRefusal& refusal) {
            report_.AddAndLog({refusal.cause, cls->GetName(TCIMContext()),
                               instance->GetReference(TCIMContext()).GetPath(), ToStdString(property.getName()),
                               refusal.reason});
        }
    }
    shape_.Clear();
    return instance;
}

} // namespace NQORVYX20
