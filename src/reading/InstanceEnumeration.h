#pragma once

#include "cimhttp/ReadingIncidents.h"
#include "reading/InstanceCache.h"
#include "reading/InstancePortions.h"
#include "reading/InstanceReader.h"
#include "reading/ReadingReport.h"
#include "reading/ReceivedInstances.h"

#include <boost/shared_ptr.hpp>
#include <boost/weak_ptr.hpp>

#include <atomic>
#include <cstdint>
#include <exception>
#include <map>
#include <string>
#include <vector>

namespace NQORVYX20 {

class FaithfulReading;
class ICIMInstance;
class TCimHTTPClass;
class RemoteNamespace;

/// An enumeration of a faithful namespace that is read on demand. It holds at most a given number of instances, a few
/// hundred more, and what is left of one portion, in the client library's form, which gives its memory to the instances
/// that are made of it; where all may be held, one answer is such a portion. An enumeration of no more has all of them
/// in the order of their paths, each path once, and the reading keeps them for GetInstance; one of more has them in the
/// order of the server, as often as it sends them, and nothing is kept.
///
/// When it is destroyed before its end, the server is told. Once the namespace has gone, it throws boost::bad_weak_ptr.
class InstanceEnumeration {
  public:
    using TInstances = std::vector<boost::shared_ptr<ICIMInstance>>;

    static constexpr std::size_t kAll = InstancePortions::kAll;

    /// Of a class and its subclasses or, without `deep`, of the class alone; asks for nothing yet.
    InstanceEnumeration(const boost::shared_ptr<RemoteNamespace>& nameSpace, FaithfulReading& reading,
                        const TCimHTTPClass& cls, bool deep, const Pegasus::CIMPropertyList& properties,
                        std::size_t held);
    ~InstanceEnumeration();
    InstanceEnumeration(const InstanceEnumeration&) = delete;
    InstanceEnumeration& operator=(const InstanceEnumeration&) = delete;

    /// The next instances; none at the end. Throws as FaithfulReading says.
    TInstances Next();

    // The two halves of Next(), after the first call of it: so one thread can receive what comes next while another
    // makes instances of what has come, if MayReadAhead() said so when that had come.

    /// Receives the next instances; none at the end. All that is asked of the server is asked here. Throws as Next()
    /// does.
    ReceivedInstances Receive();

    /// Makes the instances. What was received stays as it is: it is freed faster by the thread that received it. After
    /// an exception, which may be any, Settle() throws what tells more.
    TInstances Make(ReceivedInstances& received);

    /// Hands what Make() could not take over to the report of the namespace, and throws what Next() would have thrown,
    /// also where there is no memory for the report. For when no other thread is in here.
    void Settle();

    /// Whether it is known that there are no more.
    bool IsAtEnd() const { return hasBegun_ && IsOver(); }

    /// Whether there are more of what has been received, so that Next() asks for nothing.
    bool HasMoreAtHand() const { return !isStopped_ && HasPortion(); }

    /// Whether another thread may use the instances that Next() has returned or Receive() has received, and their
    /// classes, while one of these is called again: not where classes are inferred from their instances. What a class
    /// makes at its first use is made now.
    bool MayReadAhead() const;

    /// Ends the enumeration early; may be called from any thread. No further instances are requested: a call of Next()
    /// or Receive() that is running tells the server and returns what it has, and the next one returns none.
    void Stop() noexcept { isStopped_ = true; }

    /// Closes the enumeration at the server, if it is still open there. Never throws.
    void Close() noexcept;

  private:
    using TClassPointer = boost::shared_ptr<TCimHTTPClass>;

    TInstances First();
    TInstances Following();
    template <typename Work>
    auto Asking(const Work& work);
    ReceivedInstances ReceiveSome();
    ReceivedInstances ReceiveFollowing();
    void Fetch();
    boost::shared_ptr<ICIMInstance> MakeOne(ReceivedInstance& received, InstanceReader& reader) const;
    void ReportMade();
    TClassPointer ClassOf(const std::string& name);
    void HoldAll(ReceivedInstances received);
    void Hold(const std::string& key, const boost::shared_ptr<ICIMInstance>& instance, const TClassPointer& cls);
    void AddDoubled(ReadingIncident incident);
    void CheckLimits() const;
    bool IsAllHeld() const { return arrived_.size() <= heldAtMost_; }
    TInstances TakeHeld();
    bool HasPortion() const { return next_ < portion_.size(); }
    bool HasReadAll() const { return portions_.IsAtEnd() && !HasPortion(); }
    bool IsOver() const { return isStopped_ || HasReadAll(); }

    boost::weak_ptr<RemoteNamespace> namespace_;
    FaithfulReading& reading_; // lives as long as the namespace
    std::string className_;
    Pegasus::CIMName remoteName_;
    bool deep_;
    bool hasAllProperties_;
    std::size_t heldAtMost_;
    InstancePortions portions_;
    Pegasus::Array<Pegasus::CIMInstance> portion_;
    Pegasus::Uint32 next_ = 0; // of its instances
    InstanceReader reader_;
    ReadingReport made_; // what Make() has to say, until Settle()
    InstanceReader maker_{made_};
    std::exception_ptr makingFailure_;
    std::map<std::string, TClassPointer> classes_; // of this enumeration
    boost::shared_ptr<InstanceCache::TInstances> held_;
    TInstances arrived_; // all instances in the order of the server, doubled ones included; empty where all may be held
    std::vector<ReadingIncident> doubled_; // not reported yet
    bool hasBegun_ = false;
    std::atomic<bool> isStopped_{false};
};

} // namespace NQORVYX20
