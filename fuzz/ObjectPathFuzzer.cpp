// A text as that of an object path: a path that it makes is written and read back as the same path, and a key's value
// survives whatever it is.

#include "Cost.h"
#include "Require.h"

#include <Pegasus/Common/CIMObjectPath.h>
#include <Pegasus/Common/Exception.h>

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string_view>

using namespace Pegasus;

namespace {

std::optional<CIMObjectPath> PathIn(const String& text) {
    try {
        return CIMObjectPath(text);
    } catch (const MalformedObjectNameException&) {
        return std::nullopt;
    }
}

void CheckWrittenForm(const CIMObjectPath& path) {
    const auto read = PathIn(path.toString());
    Require(read && read->identical(path) && path.identical(*read), "a path is written and read back as the same path");
    Require(read->toString() == path.toString(), "a path has one written form");
    const auto& keys = path.getKeyBindings();
    for (Uint32 i = 0; i < keys.size(); ++i) {
        Require(read->getKeyBindings()[i].getType() == keys[i].getType(), "a key keeps its type");
        Require(read->getKeyBindings()[i].getValue() == keys[i].getValue(), "a key keeps its value");
    }
}

void CheckParts(const CIMObjectPath& path) {
    Require(CIMName::legal(path.getClassName().getString()), "the class name of a path is legal");
    const CIMObjectPath rebuilt(path.getHost(), path.getNameSpace(), path.getClassName(), path.getKeyBindings());
    Require(rebuilt == path && rebuilt.toString() == path.toString(), "the parts of a path make the same path");
}

/// A text within quotes is a reference exactly when it is itself a path with keys.
CIMKeyBinding::Type QuotedType(const std::optional<CIMObjectPath>& path) {
    return path && path->getKeyBindings().size() != 0 ? CIMKeyBinding::REFERENCE : CIMKeyBinding::STRING;
}

void CheckAsKey(const String& text, CIMKeyBinding::Type type) {
    Array<CIMKeyBinding> keys;
    keys.append(CIMKeyBinding("Key", text, type));
    keys.append(CIMKeyBinding("Another", text, type));
    CheckWrittenForm(CIMObjectPath("host:5988", CIMNamespaceName("root/cimv2"), "Class", keys));
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const CostGuard guard(kReaderBounds, size);
    const String text(size != 0 ? std::string_view(reinterpret_cast<const char*>(data), size) : std::string_view());
    const auto path = PathIn(text);
    if (path) {
        CheckWrittenForm(*path);
        CheckParts(*path);
    }
    CheckAsKey(text, QuotedType(path));
    return 0;
}
