#include "convert/EmbeddedObjects.h"

#include "convert/EmbeddedMof.h"
#include "convert/HostValues.h"
#include "convert/RemoteText.h"

namespace NQORVYX20 {

namespace {

template <typename RemoteObject>
void AddProperties(RemoteObject& remote, EmbeddedObject& object) {
    for (Pegasus::Uint32 i = 0; i < remote.getPropertyCount(); ++i) {
        const auto property = remote.getProperty(i);
        object.properties.push_back(
            {ToStdString(property.getName()), HostValue(property.getValue()), EmbeddedObjectsIn(property.getValue())});
    }
}

EmbeddedObject ToEmbeddedClass(Pegasus::CIMClass cls) {
    EmbeddedObject object;
    object.className = ToStdString(cls.getClassName());
    object.isClass = true;
    AddProperties(cls, object);
    object.mof = ClassMof(cls);
    return object;
}

} // namespace

EmbeddedObject ToEmbeddedObject(const Pegasus::CIMInstance& instance) {
    Pegasus::CIMInstance remote = instance;
    EmbeddedObject object;
    object.className = ToStdString(remote.getClassName());
    AddProperties(remote, object);
    object.mof = InstanceMof(object);
    return object;
}

EmbeddedObject ToEmbeddedObject(const Pegasus::CIMObject& object) {
    return object.isClass() ? ToEmbeddedClass(Pegasus::CIMClass(object))
                            : ToEmbeddedObject(Pegasus::CIMInstance(object));
}

} // namespace NQORVYX20
