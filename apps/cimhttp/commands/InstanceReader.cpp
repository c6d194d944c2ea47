#include "commands/InstanceReader.h"

#include "connection/InstanceStream.h"
#include "connection/ServerInstances.h"
#include "connection/ServerSchema.h"
#include "host/ICIMClass.h"
#include "output/ValueTexts.h"
#include "text/Names.h"
#include "waiting/Interrupt.h"

#include <utility>

namespace cimhttp {

InstanceReader::InstanceReader(const Session& session, const std::string& className, InstanceQuery query, bool deep,
                               NQORVYX20::DisplayForm form)
    : session_(session),
      class_(ServerSchema(session_).Class(className)),
      declared_(PropertiesOf(*class_)),
      query_(std::move(query)),
      deep_(deep),
      form_(form) {
    if (!declared_.empty()) {
        query_.CheckNames(declared_, ClassName());
    }
}

std::string InstanceReader::ClassName() const { return class_->GetName(NQORVYX20::TCIMContext()); }

/// As the class spells them, where it declares any, with those that tell units.
std::vector<std::string> InstanceReader::NeededNames() const {
    std::vector<std::string> names = query_.NeededNames();
    if (declared_.empty()) {
        return names;
    }
    const Properties chosen = Chosen(declared_, names, ClassName());
    std::vector<std::string> needed = NamesOf(chosen);
    for (const auto& property : chosen) {
        const auto tellers = session_.Access().UnitTellers(*class_, *property);
        needed.insert(needed.end(), tellers.begin(), tellers.end());
    }
    return DistinctNames(needed);
}

InstanceReader::Reading InstanceReader::Read() {
    Instances all = ServerInstances(session_).Of(*class_, deep_, NeededNames());
    const std::size_t count = all.size();
    const Properties known = declared_.empty() ? PropertiesOf(all) : declared_;
    Properties shown = all.empty() && known.empty() ? Properties() : query_.Shown(known, ClassName());
    auto selected = query_.Selected(std::move(all), ValueTexts(session_.Access(), form_));
    return {std::move(shown), std::move(selected.instances), count, std::move(selected.uncompared)};
}

InstanceReader::Reading InstanceReader::Stream(const HeldInstances& held,
                                               const std::function<void(const Instances&)>& take) {
    Reading reading{Shown(), {}, 0, {}};
    const ValueTexts texts(session_.Access(), form_);
    const InterruptScope interrupts;
    const auto names = NeededNames(); // none for all
    const std::size_t count = held.Count(names.empty() ? declared_.size() : names.size());
    InstanceStream stream(session_, ServerInstances(session_).Open(*class_, deep_, names, count), ClassName());
    do {
        Instances instances = stream.Next();
        reading.count += instances.size();
        const auto selected = query_.Selected(std::move(instances), texts);
        reading.uncompared.Add(selected.uncompared);
        take(selected.instances);
        session_.EndIfInterrupted([&] { stream.Stop(); });
    } while (!stream.IsAtEnd());
    return reading;
}

} // namespace cimhttp
