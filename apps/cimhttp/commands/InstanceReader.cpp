#include "commands/InstanceReader.h"

#include <utility>

#include "host/ICIMClass.h"

namespace cimhttp {

InstanceReader::InstanceReader(const Session& session, const std::string& class_name, InstanceQuery query, bool deep)
    : session_(session), class_(session_.Class(class_name)), query_(std::move(query)), deep_(deep) {
    const Properties declared = PropertiesOf(*class_);
    if (!declared.empty()) { // a server without operations on classes declares none
        query_.CheckNames(declared, ClassName());
    }
}

std::string InstanceReader::ClassName() const { return class_->GetName(NQORVYX20::TCIMContext()); }

/// As the class spells them, where it declares any.
std::vector<std::string> InstanceReader::NeededNames() const {
    const Properties declared = PropertiesOf(*class_);
    const std::vector<std::string> names = query_.NeededNames();
    return declared.empty() ? names : NamesOf(Chosen(declared, names, ClassName()));
}

InstanceReader::Reading InstanceReader::Read() {
    Instances all = session_.Instances(*class_, deep_, NeededNames());
    const std::size_t count = all.size();
    const Properties known = PropertiesOf(*class_, all);
    Properties shown = all.empty() && known.empty() ? Properties() : query_.Shown(known, ClassName());
    return {std::move(shown), query_.Filter().Selected(std::move(all), session_.LoadedPlugin().Access()), count};
}

} // namespace cimhttp
