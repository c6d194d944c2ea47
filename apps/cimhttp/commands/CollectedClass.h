#pragma once

#include "HostTypes.h"
#include "files/SpooledText.h"
#include "output/InstanceJson.h"
#include "report/ReportPage.h"
#include "text/TextBuffer.h"

#include <cstddef>
#include <iosfwd>
#include <memory>
#include <string>
#include <vector>

namespace cimhttp {

struct RemoteClass;

/// A class with its instances, which are written when they are there and not kept.
class CollectedClass {
  public:
    CollectedClass(const ValueTexts& texts, std::shared_ptr<Spool> spool);

    /// With `wantsHealth`, what the instance tells of its health is kept, too.
    void Add(NQORVYX20::ICIMInstance& instance, bool wantsHealth);

    void SetDefinition(const RemoteClass& definition);

    /// The JSON of a class in a collection, see WriteJson().
    void WriteTo(std::ostream& output) const;

    std::size_t InstanceCount() const { return count_; }

    /// The paths of the instances that tell their health, and those that are not well.
    const std::vector<std::string>& Telling() const { return telling_; }
    const std::vector<ReportFacts::Fault>& Faults() const { return faults_; }

  private:
    void AddHealth(const NQORVYX20::ICIMInstance& instance);

    ValueTexts texts_;
    InstanceJson json_;
    TextBuffer line_;
    std::string definition_; // without its last brace
    SpooledText instances_;
    std::size_t count_ = 0;
    std::vector<std::string> telling_;
    std::vector<ReportFacts::Fault> faults_;
};

} // namespace cimhttp
