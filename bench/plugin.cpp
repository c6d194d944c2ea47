// Does one job through the plug-in, as often as its description below says, and prints how many things it did, how long
// that took and how much memory the process needed. What goes before the job is not measured.

#include "Measurement.h"
#include "cimhttp/ContextKeys.h"
#include "cimhttp/DisplayTexts.h"
#include "host/ICIMClass.h"
#include "host/ICIMInstance.h"
#include "host/ICIMNamespace.h"
#include "host/ICIMPropertyDecl.h"
#include "host/TLogger.h"
#include "host/TRootObject.h"
#include "model/TCimHTTPProperty.h"
#include "provider/TCimHTTPNamespace.h"
#include "provider/TCimHTTPNamespaceProvider.h"

#include <boost/function.hpp>
#include <boost/make_shared.hpp>
#include <boost/pointer_cast.hpp>

#include <exception>
#include <functional>
#include <iomanip>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

using namespace NQORVYX20;

namespace {

constexpr int kPort = 5988;
constexpr std::size_t kHits = 1000;

/// What is measured, under a name that callgrind can be told to collect for. Returns how many things were done.
[[gnu::noinline]] std::size_t Measured(const std::function<std::size_t()>& job) { return job(); }

using InstanceCallback = boost::function<bool(boost::shared_ptr<ICIMInstance>)>;
using PropertyCallback = boost::function<bool(boost::shared_ptr<ICIMProperty>)>;

void ForEachInstance(ICIMClass& cls, const InstanceCallback& callback) {
    cls.EnumerateInstances(callback, false, TCIMContext());
}

void ForEachProperty(ICIMClass& cls, const PropertyCallback& callback) {
    ForEachInstance(cls, [&](const boost::shared_ptr<ICIMInstance>& instance) {
        instance->EnumerateProperties(callback, TCIMContext());
        return true;
    });
}

/// A connected namespace and the jobs on it.
class Load {
  public:
    Load(const char* address, std::string className, const char* reading) : className_(std::move(className)) {
        const TCIMContext context{{"pluginNameQualDeclValue", TCIMValue("cimhttp")}, {kReadingKey, TCIMValue(reading)}};
        namespace_ = boost::dynamic_pointer_cast<TCimHTTPNamespace>(
            TCimHTTPNamespaceProvider::GetInstance()->AllocateNamespace(context, false));
        namespace_->connect(address, "", "", kPort);
    }

    boost::shared_ptr<ICIMClass> GetClass() {
        auto cls = namespace_->GetClass(className_, TCIMContext());
        if (!cls) {
            throw std::runtime_error("the server does not serve the class " + className_);
        }
        return cls;
    }

    /// One look-up of a class that the namespace does not have yet.
    std::size_t Miss() {
        GetClass();
        return 1;
    }

    /// Look-ups of classes that it does not have, one after the other, as long as there is a class of the next number.
    std::size_t Misses() {
        std::size_t count = 0;
        while (namespace_->GetClass(NumberedName(count + 1), TCIMContext())) {
            ++count;
        }
        return count;
    }

    /// Look-ups of a class that it has.
    std::size_t Hits() {
        for (std::size_t i = 0; i < kHits; ++i) {
            GetClass();
        }
        return kHits;
    }

    /// One enumeration of the instances: fetched the first time, else served from memory.
    std::size_t Enumerate() {
        std::size_t count = 0;
        ForEachInstance(*GetClass(), [&](const auto& /*instance*/) { return ++count != 0; });
        return count;
    }

    /// Reads every value of every instance.
    std::size_t ReadValues() {
        std::size_t count = 0;
        std::size_t nulls = 0;
        ForEachProperty(*GetClass(), [&](const boost::shared_ptr<ICIMProperty>& property) {
            nulls += property->GetValue(TCIMContext()).IsNull() ? 1 : 0;
            return ++count != 0;
        });
        return count;
    }

    /// Makes the display text, or texts, of every value of every instance.
    std::size_t Display() {
        std::size_t count = 0;
        std::size_t length = 0;
        ForEachProperty(*GetClass(), [&](const boost::shared_ptr<ICIMProperty>& property) {
            const TCIMValue& value = property->GetValue(TCIMContext());
            const TCimHTTPProperty shown(property->GetDeclaration(TCIMContext()), value);
            length += value.IsArray() ? shown.ToStringVector().size() : shown.ToString().size();
            return ++count != 0;
        });
        return count;
    }

    /// Keeps every instance, and the class with it.
    void Hold() {
        class_ = GetClass();
        ForEachInstance(*class_, [&](const boost::shared_ptr<ICIMInstance>& instance) {
            instances_.push_back(instance);
            return true;
        });
    }

    /// Makes the texts of every value of the kept instances by the standard's rules.
    std::size_t DisplayFaithfully() {
        std::size_t count = 0;
        std::size_t length = 0;
        for (const auto& instance : instances_) {
            const auto show = [&](const boost::shared_ptr<ICIMProperty>& property) {
                length += DisplayTexts(property->GetDeclaration(TCIMContext()), property->GetValue(TCIMContext()), {},
                                       instance.get())
                              .size();
                return ++count != 0;
            };
            instance->EnumerateProperties(show, TCIMContext());
        }
        return count;
    }

    /// Makes the same texts in memory that is used again for each value.
    std::size_t DisplayInMemory() {
        std::size_t count = 0;
        std::size_t length = 0;
        TextMemory memory;
        for (const auto& instance : instances_) {
            const auto show = [&](const boost::shared_ptr<ICIMProperty>& property) {
                MakeDisplayTexts(memory, property->GetDeclaration(TCIMContext()), property->GetValue(TCIMContext()), {},
                                 instance.get());
                length += memory.texts.size();
                return ++count != 0;
            };
            instance->EnumerateProperties(show, TCIMContext());
        }
        return count;
    }

  private:
    /// As bench/write-load names classes.
    std::string NumberedName(std::size_t number) const {
        std::ostringstream name;
        name << className_ << std::setfill('0') << std::setw(4) << number;
        return name.str();
    }

    boost::shared_ptr<TCimHTTPNamespace> namespace_;
    std::string className_;
    boost::shared_ptr<ICIMClass> class_;
    std::vector<boost::shared_ptr<ICIMInstance>> instances_;
};

struct Job {
    std::function<void(Load&)> prepare;
    std::function<std::size_t(Load&)> work;
    const char* reading = kCompatibleReading;
};

const std::map<std::string, Job>& Jobs() {
    const auto nothing = [](Load& /*load*/) {};
    const auto getClass = [](Load& load) { load.GetClass(); };
    const auto enumerate = [](Load& load) { load.Enumerate(); };
    static const std::map<std::string, Job> jobs{
        {"miss", {nothing, &Load::Miss}},
        {"misses", {nothing, &Load::Misses}},
        {"hit", {getClass, &Load::Hits}},
        {"first", {getClass, &Load::Enumerate}},
        {"cached", {enumerate, &Load::ReadValues}},
        {"display", {enumerate, &Load::Display}},
        {"faithful", {getClass, &Load::Enumerate, kFaithfulReading}},
        {"faithful-display", {&Load::Hold, &Load::DisplayFaithfully, kFaithfulReading}},
        {"memory-display", {&Load::Hold, &Load::DisplayInMemory, kFaithfulReading}}};
    return jobs;
}

void Run(const Job& job, const char* address, const char* className) {
    TRootObject::SetCoreLogger(boost::make_shared<TLogger>(std::cerr, ILogger::eLogError));
    Load load(address, className, job.reading);
    job.prepare(load);
    const bench::Stopwatch stopwatch;
    const std::size_t count = Measured([&] { return job.work(load); });
    const double seconds = stopwatch.Seconds();
    if (count == 0) {
        throw std::runtime_error("the server has nothing of the class");
    }
    bench::PrintTime(seconds);
    bench::PrintCount(count);
    bench::PrintPeakMemory();
}

} // namespace

int main(int argc, char** argv) {
    const auto job = argc == 4 ? Jobs().find(argv[1]) : Jobs().end();
    if (job == Jobs().end()) {
        std::cerr
            << "use: plugin miss|misses|hit|first|cached|display|faithful|faithful-display|memory-display ADDRESS "
               "CLASS, of a server on port "
            << kPort << '\n';
        return 2;
    }
    try {
        Run(job->second, argv[2], argv[3]);
    } catch (const std::exception& exception) {
        std::cerr << "plugin: " << exception.what() << '\n';
        return 1;
    }
    return 0;
}
