// How a faithful namespace whose host does not hold all instances reads one long answer while it arrives.

#include "TlsTest.h"
#include "cimhttp/ContextKeys.h"
#include "reading/FaithfulReading.h"
#include "reading/InstanceEnumeration.h"
#include "support/FaultyServer.h"
#include "support/TemporaryDirectory.h"

#include <algorithm>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <fstream>
#include <functional>
#include <future>
#include <map>
#include <memory>
#include <mutex>
#include <sstream>

using namespace NQORVYX20;
using support::Connection;
using testing::AllOf;
using testing::ElementsAre;
using testing::Ge;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Le;
using testing::SizeIs;
using Cause = ReadingIncident::Cause;
using Kind = RemoteFailure::Kind;

namespace {

constexpr const char* kClass = "TEST_Disk";
constexpr const char* kLateClass = "TEST_Late"; // which no namespace knows at first
constexpr std::uint16_t kFrontPort = 8765;

std::string NameOf(int number) { return "n" + std::to_string(100000 + number); }

/// Numbers that one thread counts up and others wait for.
class Progress {
  public:
    void Reach(int number) {
        {
            const std::lock_guard<std::mutex> lock(mutex_);
            reached_ = std::max(reached_, number);
        }
        changed_.notify_all();
    }
    void Await(int number) {
        std::unique_lock<std::mutex> lock(mutex_);
        EXPECT_TRUE(changed_.wait_for(lock, std::chrono::seconds(60), [&] { return reached_ >= number; }));
    }

  private:
    std::mutex mutex_;
    std::condition_variable changed_;
    int reached_ = 0;
};

/// Two servers without pulled enumerations: one that answers, and one that does to its answers what a test says.
class ArrivingReadingTest : public TlsTest {
  protected:
    ArrivingReadingTest() {
        log_->ExpectWarnings();
        ServeClass(kClass, "", DiskProperties());
        server_.Answer("GetClass", kLateClass, LateClassXml());
        server_.Answer("EnumerateQualifiers", "", "");
        front_.Listen(kFrontPort);
    }

    static std::string DiskProperties() {
        return PropertyXml("Name", "string", KeyXml()) + PropertyXml("Size", "uint64");
    }
    static std::string LateClassXml() {
        return ClassXml(kLateClass, kClass, PropertyXml("Name", "string", KeyXml()) + PropertyXml("Late", "string"));
    }

    static std::string Disk(int number, const std::string& className = kClass) {
        return InstanceXml(className, "Name", NameOf(number), PropertyXml("Name", "string", ValueXml(NameOf(number))));
    }

    /// One with a property that its class does not declare.
    static std::string DiskWithMore(int number) {
        return InstanceXml(kClass, "Name", NameOf(number),
                           PropertyXml("Name", "string", ValueXml(NameOf(number))) +
                               PropertyXml("Other", "string", ValueXml("y")));
    }

    /// Those with the numbers from `last` down to `first`, so that their order is not that of their paths.
    static std::string Disks(int first, int last) {
        std::string xml;
        for (int number = last; number >= first; --number) {
            xml += Disk(number);
        }
        return xml;
    }

    static std::vector<std::string> NamesOf(int first, int last) {
        std::vector<std::string> names;
        for (int number = last; number >= first; --number) {
            names.push_back(NameOf(number));
        }
        return names;
    }

    void Serve(const std::string& disks) {
        disks_ = disks;
        server_.Answer("EnumerateInstances", kClass, disks);
    }

    /// What the second server does to its answers with instances, and to those with the late class.
    void OnInstances(support::Fault fault) { onInstances_ = std::move(fault); }
    void OnLateClass(support::Fault fault) { onLateClass_ = std::move(fault); }
    int CountLateCalls() const { return lateCalls_; }

    static TCIMContext Held(unsigned count) { return {{kHeldKey, TCIMValue(count)}}; }

    /// A namespace that knows the class, connected to the one server or the other.
    boost::shared_ptr<TCimHTTPNamespace> Connected(int port, TCIMContext options) {
        options[kReadingKey] = TCIMValue(kFaithfulReading);
        auto nameSpace = Allocated(std::move(options));
        nameSpace->connect(server_.Address(), "reader", "secret", port);
        nameSpace->GetClass(kClass, TCIMContext());
        server_.ForgetCalls();
        return nameSpace;
    }
    boost::shared_ptr<TCimHTTPNamespace> Direct(TCIMContext options = {}) {
        return Connected(kHttpPort, std::move(options));
    }
    boost::shared_ptr<TCimHTTPNamespace> ToFront(TCIMContext options = {}) {
        options[kTlsKey] = TCIMValue(false);
        return Connected(kFrontPort, std::move(options));
    }

    /// What an enumeration gives until it ends or fails, up to so many.
    struct TRead {
        std::vector<std::string> names;
        unsigned status;
        std::optional<Kind> failure;
    };
    static TRead Read(TCimHTTPNamespace& nameSpace, unsigned held, std::size_t most = 1000000,
                      const std::function<void(const ICIMInstance&)>& onInstance = {}) {
        TRead read;
        read.status = StatusOf([&] {
            nameSpace.GetClass(kClass, TCIMContext())
                ->EnumerateInstances(
                    [&](const boost::shared_ptr<ICIMInstance>& instance) {
                        read.names.push_back(NameIn(*instance));
                        if (onInstance) {
                            onInstance(*instance);
                        }
                        return read.names.size() < most;
                    },
                    true, Held(held));
        });
        if (nameSpace.LastFailure()) {
            read.failure = nameSpace.LastFailure()->kind;
        }
        return read;
    }

    static std::string NameIn(const ICIMInstance& instance) {
        return static_cast<std::string>(instance.GetProperty("Name", TCIMContext())->GetValue(TCIMContext()));
    }

    /// An enumeration of the class that is read on demand.
    static std::unique_ptr<InstanceEnumeration> Opened(TCimHTTPNamespace& nameSpace) {
        auto& cls = dynamic_cast<TCimHTTPClass&>(*nameSpace.GetClass(kClass, TCIMContext()));
        return dynamic_cast<FaithfulReading&>(*nameSpace.GetReading()).OpenInstances(cls, true, Held(1));
    }

    static std::vector<std::string> NamesIn(const InstanceEnumeration::TInstances& instances) {
        std::vector<std::string> names;
        names.reserve(instances.size());
        for (const auto& instance : instances) {
            names.push_back(NameIn(*instance));
        }
        return names;
    }

    static void Append(std::vector<std::string>& names, const std::vector<std::string>& more) {
        names.insert(names.end(), more.begin(), more.end());
    }

    /// That the connection is of use: all that is there is read.
    static void ExpectRead(TCimHTTPNamespace& nameSpace, std::size_t count) {
        const TRead read = Read(nameSpace, 1);
        EXPECT_EQ(read.status, 0U);
        EXPECT_EQ(read.names.size(), count);
    }

    std::vector<std::string> Methods() const {
        std::vector<std::string> methods;
        for (const auto& call : server_.Calls()) {
            methods.push_back(call.method);
        }
        return methods;
    }

    std::size_t CountGetLate() const { return CountCalls("GetClass", kLateClass); }

  private:
    static std::string Between(const std::string& text, const std::string& begin, const std::string& end) {
        const std::size_t from = text.find(begin) + begin.size();
        return text.substr(from, text.find(end, from) - from);
    }

    /// What the server after this one would say.
    std::string AnswerTo(const std::string& method, const std::string& request) const {
        std::string content = "<ERROR CODE=\"7\"/>";
        if (method == "EnumerateInstances") {
            content = "<IRETURNVALUE>" + disks_ + "</IRETURNVALUE>";
        } else if (method == "GetClass") {
            const bool isLate = request.find(kLateClass) != std::string::npos;
            content = "<IRETURNVALUE>" + (isLate ? LateClassXml() : ClassXml(kClass, "", DiskProperties())) +
                      "</IRETURNVALUE>";
        } else if (method == "EnumerateQualifiers") {
            content = "<IRETURNVALUE/>";
        }
        const std::string body = "<CIM CIMVERSION=\"2.0\" DTDVERSION=\"2.0\"><MESSAGE ID=\"" +
                                 Between(request, "MESSAGE ID=\"", "\"") +
                                 "\" PROTOCOLVERSION=\"1.0\"><SIMPLERSP><IMETHODRESPONSE NAME=\"" + method + "\">" +
                                 content + "</IMETHODRESPONSE></SIMPLERSP></MESSAGE></CIM>";
        return "HTTP/1.1 200 OK\r\nCIMOperation: MethodResponse\r\nContent-Length: " + std::to_string(body.size()) +
               "\r\n\r\n" + body;
    }

    void Serve(Connection& client) {
        while (const auto request = client.ReadRequest()) {
            const std::string method = Between(request->body, "IMETHODCALL NAME=\"", "\"");
            const bool isLate = request->body.find(kLateClass) != std::string::npos;
            if (isLate) {
                ++lateCalls_;
            }
            const std::string answer = AnswerTo(method, request->body);
            if (method == "EnumerateInstances" && onInstances_) {
                onInstances_(client, answer);
                return;
            }
            if (isLate && onLateClass_) {
                onLateClass_(client, answer);
                return;
            }
            client.Write(answer);
        }
    }

    std::string disks_;
    std::atomic<int> lateCalls_{0};
    support::Fault onInstances_;
    support::Fault onLateClass_;
    support::ScriptedServer front_{[this](Connection& client) { Serve(client); }};
};

// --- What is handed on, and when -----------------------------------------------------------------------------------

TEST_F(ArrivingReadingTest, InstancesAreHandedOnWhileTheAnswerArrivesAndNoMoreAreHeldThanThese) {
    constexpr int kPart = 300;
    constexpr int kParts = 20;
    Serve(Disks(1, kPart * kParts));
    Progress handedOn;
    OnInstances([&](Connection& client, const std::string& answer) {
        std::size_t at = 0;
        for (int part = 1; part < kParts; ++part) {
            const std::size_t end =
                answer.find("<VALUE.NAMEDINSTANCE>", answer.find(NameOf(kPart * (kParts - part) + 1)));
            client.Write(answer.substr(at, end - at));
            at = end;
            handedOn.Await(kPart * (part - 1)); // all parts but the newest one, or no more is sent
        }
        client.Write(answer.substr(at));
    });
    const auto nameSpace = ToFront();
    int count = 0;
    const TRead read = Read(*nameSpace, 1, 1000000, [&](const auto&) { handedOn.Reach(++count); });
    EXPECT_EQ(read.names, NamesOf(1, kPart * kParts));
    EXPECT_EQ(read.status, 0U);
    EXPECT_FALSE(read.failure);
    EXPECT_THAT(nameSpace->TakeIncidents().First(), IsEmpty());
}

TEST_F(ArrivingReadingTest, WithinTheHeldCountInstancesComeInTheOrderOfTheirPathsAndAreKept) {
    Serve(Disks(1, 1000));
    const auto nameSpace = Direct();
    auto expected = NamesOf(1, 1000);
    std::reverse(expected.begin(), expected.end());
    EXPECT_EQ(Read(*nameSpace, 1000).names, expected);
    server_.ForgetCalls();
    TCIMReference path({}, TCIMContext());
    path.SetClassName(kClass);
    path.AddKeyValue("Name", TCIMValue(NameOf(7)));
    EXPECT_TRUE(nameSpace->GetInstance(path, TCIMContext()));
    EXPECT_THAT(Methods(), IsEmpty());
    EXPECT_EQ(Read(*nameSpace, 999).names, NamesOf(1, 1000));
    EXPECT_EQ(server_.ConnectionCount(), 1U);
}

TEST_F(ArrivingReadingTest, AnEnumerationThatIsReadOnDemandKnowsItsEnd) {
    Serve(Disks(1, 1000));
    const auto nameSpace = Direct();
    auto& reading = dynamic_cast<FaithfulReading&>(*nameSpace->GetReading());
    auto& cls = dynamic_cast<TCimHTTPClass&>(*nameSpace->GetClass(kClass, TCIMContext()));
    const auto enumeration = reading.OpenInstances(cls, true, Held(1));
    std::size_t count = 0;
    while (!enumeration->IsAtEnd()) {
        const auto some = enumeration->Next();
        EXPECT_THAT(some.size(), Le(256U));
        count += some.size();
    }
    EXPECT_EQ(count, 1000U);
    EXPECT_FALSE(enumeration->HasMoreAtHand());
    EXPECT_THAT(enumeration->Next(), IsEmpty());
}

TEST_F(ArrivingReadingTest, WhatCannotBeReadOfAnInstanceIsAnIncidentAndNothingElseIsMissing) {
    Serve(Disks(2, 1000) + InstanceXml(kClass, "Name", NameOf(1),
                                       PropertyXml("Name", "string", ValueXml(NameOf(1))) +
                                           PropertyXml("Size", "uint64", ValueXml("x")) +
                                           PropertyXml("Other", "string", ValueXml("y"))));
    const auto nameSpace = Direct({{kLenientKey, TCIMValue(true)}});
    EXPECT_EQ(Read(*nameSpace, 1).names, NamesOf(1, 1000));
    std::vector<Cause> causes;
    for (const auto& incident : nameSpace->TakeIncidents().First()) {
        causes.push_back(incident.cause);
    }
    EXPECT_THAT(causes, testing::UnorderedElementsAre(Cause::kUnreadableValue, Cause::kUndeclaredProperty));
}

// --- Other requests meanwhile --------------------------------------------------------------------------------------

TEST_F(ArrivingReadingTest, AClassOfAShortAnswerIsAskedForOverTheSameConnection) {
    Serve(Disk(2, kLateClass) + Disk(1));
    const auto nameSpace = Direct();
    EXPECT_THAT(Read(*nameSpace, 1).names, ElementsAre(NameOf(2), NameOf(1)));
    EXPECT_EQ(CountGetLate(), 1U);
    EXPECT_EQ(server_.ConnectionCount(), 1U);
}

TEST_F(ArrivingReadingTest, AClassThatIsMetMeanwhileIsAskedForOverASecondConnection) {
    Serve(Disks(9002, 10000) + Disk(9001, kLateClass) + Disks(2, 9000) + Disk(1, kLateClass));
    Progress late;
    OnInstances([&](Connection& client, const std::string& answer) {
        const std::size_t rest = answer.find(NameOf(100)); // more than are read ahead, however much is received at once
        client.Write(answer.substr(0, rest));
        late.Await(1); // over another connection, or nothing goes on
        client.Write(answer.substr(rest));
    });
    OnLateClass([&](Connection& client, const std::string& answer) {
        late.Reach(1);
        client.Write(answer);
    });
    const auto nameSpace = ToFront();
    std::map<std::string, int> classes;
    const TRead read = Read(*nameSpace, 1, 1000000, [&](const ICIMInstance& instance) {
        ++classes[instance.GetClass(TCIMContext())->GetName(TCIMContext())];
    });
    EXPECT_EQ(read.names, NamesOf(1, 10000));
    EXPECT_EQ(read.status, 0U);
    EXPECT_THAT(classes, ElementsAre(std::pair(std::string(kClass), 9998), std::pair(std::string(kLateClass), 2)));
    EXPECT_EQ(CountLateCalls(), 1);
    EXPECT_THAT(nameSpace->TakeIncidents().First(), IsEmpty());
}

TEST_F(ArrivingReadingTest, TheSecondConnectionIsMadeAsTheFirstOneAndTracedWithIt) {
    const support::TemporaryDirectory folder;
    const std::string trace = folder.Path() / "trace";
    server_.ListenTls(kHttpsPort, Certificate());
    server_.RequireUser("reader", "secret");
    Serve(Disks(2, 5000) + Disk(1, kLateClass));
    const auto nameSpace =
        Connected(kHttpsPort, {{kFingerprintKey, TCIMValue(FingerprintOf(Certificate().CertificateFile()))},
                               {kTraceKey, TCIMValue(trace)}});
    const std::size_t before = server_.ConnectionCount();
    bool isAsked = false;
    const TRead read = Read(*nameSpace, 1, 1000000, [&](const auto&) {
        if (!std::exchange(isAsked, true)) {
            EXPECT_TRUE(nameSpace->GetClass(kLateClass, TCIMContext()));
        }
    });
    EXPECT_EQ(read.names, NamesOf(1, 5000));
    EXPECT_THAT(Methods(), ElementsAre("OpenEnumerateInstances", "EnumerateInstances", "GetClass"));
    EXPECT_EQ(server_.ConnectionCount(), before + 1);
    std::ostringstream text;
    text << std::ifstream(trace).rdbuf();
    EXPECT_THAT(text.str(), AllOf(HasSubstr("<CLASS NAME=\"TEST_Late\""), HasSubstr(NameOf(1))));
    EXPECT_FALSE(nameSpace->LastFailure());
}

TEST_F(ArrivingReadingTest, WhereThereIsNoSecondConnectionTheRestIsReadBeforeAClassIsAskedFor) {
    Serve(Disk(10000, kLateClass) + Disks(1, 9999));
    int refused = 0;
    OnLateClass([&](Connection& client, const std::string& answer) {
        if (++refused == 1) {
            client.Reset();
        } else {
            client.Write(answer);
        }
    });
    const auto nameSpace = ToFront();
    const TRead read = Read(*nameSpace, 1);
    EXPECT_EQ(read.names, NamesOf(1, 10000));
    EXPECT_EQ(read.status, 0U);
    EXPECT_THAT(nameSpace->TakeIncidents().First(), IsEmpty());
    EXPECT_EQ(CountLateCalls(), 2);
}

TEST_F(ArrivingReadingTest, ASecondConnectionThatIsNeverAnsweredCostsNothingButItsTime) {
    Serve(Disk(10000, kLateClass) + Disks(1, 9999));
    int asked = 0;
    OnLateClass([&](Connection& client, const std::string& answer) {
        if (++asked == 1) {
            client.WaitForPeerClose();
        } else {
            client.Write(answer);
        }
    });
    const auto nameSpace = ToFront({{kTimeoutKey, TCIMValue(3000U)}});
    const TRead read = Read(*nameSpace, 1);
    EXPECT_EQ(read.names, NamesOf(1, 10000));
    EXPECT_EQ(read.status, 0U) << (nameSpace->LastFailure() ? nameSpace->LastFailure()->text : "");
    EXPECT_EQ(CountLateCalls(), 2);
}

TEST_F(ArrivingReadingTest, AClassThatTheServerDoesNotHaveIsAnIncidentAsEver) {
    server_.Fail("GetClass", kLateClass, 6, "no such class");
    Serve(Disk(10000, kLateClass) + Disks(1, 9999));
    const auto nameSpace = Direct();
    EXPECT_EQ(Read(*nameSpace, 1).names, NamesOf(1, 10000));
    const auto incidents = nameSpace->TakeIncidents();
    ASSERT_THAT(incidents.First(), SizeIs(1));
    EXPECT_EQ(incidents.First()[0].cause, Cause::kNoDefinition);
    EXPECT_EQ(CountGetLate(), 1U);
    EXPECT_EQ(server_.ConnectionCount(), 2U);
}

TEST_F(ArrivingReadingTest, AnEnumerationWithinAnEnumerationHasAllInstancesToo) {
    Serve(Disks(1, 2000));
    const auto nameSpace = Direct();
    TRead inner;
    const TRead outer = Read(*nameSpace, 1, 1000000, [&](const auto&) {
        if (inner.names.empty()) {
            inner = Read(*nameSpace, 1);
        }
    });
    EXPECT_EQ(outer.names, NamesOf(1, 2000));
    EXPECT_EQ(inner.names, NamesOf(1, 2000));
}

// --- Early ends ----------------------------------------------------------------------------------------------------

TEST_F(ArrivingReadingTest, AHostThatWantsNoMoreLeavesAConnectionThatIsOfUse) {
    Serve(Disks(1, 20000));
    const auto nameSpace = Direct();
    EXPECT_EQ(Read(*nameSpace, 1, 3).names, NamesOf(19998, 20000));
    EXPECT_FALSE(nameSpace->LastFailure());
    EXPECT_THROW(nameSpace->GetClass(kClass, TCIMContext())
                     ->EnumerateInstances([](const auto&) -> bool { throw 7; }, true, Held(1)),
                 int);
    ExpectRead(*nameSpace, 20000);
    EXPECT_THAT(Methods(), testing::Not(testing::Contains("CloseEnumeration")));
}

TEST_F(ArrivingReadingTest, AStoppedEnumerationHasNoMoreAndLeavesAConnectionThatIsOfUse) {
    Serve(Disks(1, 20000));
    const auto nameSpace = Direct();
    auto& reading = dynamic_cast<FaithfulReading&>(*nameSpace->GetReading());
    auto& cls = dynamic_cast<TCimHTTPClass&>(*nameSpace->GetClass(kClass, TCIMContext()));
    const auto enumeration = reading.OpenInstances(cls, true, Held(1));
    EXPECT_THAT(enumeration->Next(), SizeIs(Ge(1U)));
    enumeration->Stop();
    EXPECT_TRUE(enumeration->IsAtEnd());
    EXPECT_THAT(enumeration->Next(), IsEmpty());
    ExpectRead(*nameSpace, 20000);
}

TEST_F(ArrivingReadingTest, AnEnumerationWhoseConnectionTheHostHasClosedFails) {
    Serve(Disks(1, 20000));
    const auto nameSpace = Direct();
    auto& reading = dynamic_cast<FaithfulReading&>(*nameSpace->GetReading());
    auto& cls = dynamic_cast<TCimHTTPClass&>(*nameSpace->GetClass(kClass, TCIMContext()));
    const auto enumeration = reading.OpenInstances(cls, true, Held(1));
    enumeration->Next();
    nameSpace->disconnect();
    EXPECT_EQ(StatusOf([&] {
                  while (!enumeration->IsAtEnd()) {
                      enumeration->Next();
                  }
              }),
              TVYXStatusCode::eRemoteConnectionFailed);
    EXPECT_EQ(nameSpace->LastFailure()->kind, Kind::kNotConnected);
    nameSpace->connect(server_.Address(), "", "", kHttpPort);
    ExpectRead(*nameSpace, 20000);
}

TEST_F(ArrivingReadingTest, AnEnumerationMayOutliveItsNamespace) {
    Serve(Disks(1, 20000));
    auto nameSpace = Direct();
    auto& reading = dynamic_cast<FaithfulReading&>(*nameSpace->GetReading());
    const auto cls = boost::dynamic_pointer_cast<TCimHTTPClass>(nameSpace->GetClass(kClass, TCIMContext()));
    const auto enumeration = reading.OpenInstances(*cls, true, Held(1));
    enumeration->Next();
    nameSpace.reset();
    EXPECT_THROW(enumeration->Next(), boost::bad_weak_ptr);
}

// --- In two threads ------------------------------------------------------------------------------------------------

TEST_F(ArrivingReadingTest, InstancesAreMadeInOneThreadWhileOthersAreReceivedInAnother) {
    Serve(DiskWithMore(5001) + Disks(1, 5000));
    const auto nameSpace = Direct();
    const auto enumeration = Opened(*nameSpace);
    const auto first = enumeration->Next();
    std::vector<std::string> names = NamesIn(first);
    auto received = enumeration->Receive();
    while (!enumeration->IsAtEnd()) {
        ASSERT_TRUE(enumeration->MayReadAhead());
        auto next = std::async(std::launch::async, [&] { return enumeration->Receive(); });
        Append(names, NamesIn(enumeration->Make(received)));
        received = next.get();
    }
    Append(names, NamesIn(enumeration->Make(received)));
    enumeration->Settle();
    EXPECT_EQ(names, NamesOf(1, 5001));
    EXPECT_THAT(enumeration->Receive(), IsEmpty());
    EXPECT_EQ(server_.ConnectionCount(), 1U);
}

TEST_F(ArrivingReadingTest, WhatCannotBeMadeOfAnInstanceIsReportedWhenNothingIsUnderWay) {
    Serve(Disks(1000, 1999) + DiskWithMore(1) + DiskWithMore(2));
    const auto nameSpace = Direct();
    const auto enumeration = Opened(*nameSpace);
    enumeration->Next();
    while (!enumeration->IsAtEnd()) {
        auto received = enumeration->Receive();
        enumeration->Make(received);
    }
    EXPECT_TRUE(nameSpace->Incidents().IsEmpty());
    enumeration->Settle();
    enumeration->Settle(); // has nothing to add
    const auto incidents = nameSpace->TakeIncidents();
    EXPECT_EQ(incidents.Counts(), (std::map<Cause, std::size_t>{{Cause::kUndeclaredProperty, 2}}));
    ASSERT_THAT(incidents.First(), SizeIs(2));
    EXPECT_THAT(incidents.First()[0].path, HasSubstr(NameOf(1)));
}

TEST_F(ArrivingReadingTest, WhatCannotBeMadeOfMoreInstancesThanAreKeptIsCountedAlsoAtAnEarlyEnd) {
    constexpr int kDisks = 3000;
    std::string disks;
    for (int number = 1; number <= kDisks; ++number) {
        disks += DiskWithMore(number);
    }
    Serve(disks + Disks(4000, 9000));
    const auto nameSpace = Direct();
    auto enumeration = Opened(*nameSpace);
    std::size_t count = enumeration->Next().size();
    nameSpace->TakeIncidents();
    std::size_t made = 0;
    while (count + made < kDisks) {
        auto received = enumeration->Receive();
        made += enumeration->Make(received).size();
    }
    enumeration.reset();
    const auto incidents = nameSpace->TakeIncidents();
    EXPECT_EQ(incidents.Total(), kDisks - count);
    EXPECT_THAT(incidents.First(), SizeIs(ReadingIncidents::kMaxKept));
}

// --- Failures in the middle ----------------------------------------------------------------------------------------

TEST_F(ArrivingReadingTest, WhatCameBeforeAFailureIsHandedOnAndTheFailureIsTold) {
    constexpr int kDisks = 20000;
    const auto middle = [](const std::string& answer) { return answer.size() / 2; };
    const struct {
        Kind kind;
        support::Fault fault;
    } cases[] = {
        {Kind::kNotCim,
         [&](Connection& client, const std::string& answer) { client.Write(answer.substr(0, middle(answer))); }},
        {Kind::kNotCim,
         [&](Connection& client, const std::string& answer) {
             client.Write(answer.substr(0, middle(answer)));
             client.WaitForDelivery();
             client.Reset();
         }},
        {Kind::kMalformed,
         [&](Connection& client, const std::string& answer) {
             std::string broken = answer;
             broken[broken.find("</INSTANCE>", middle(answer)) + 1] = '!';
             client.Write(broken);
         }},
        {Kind::kTimeOut,
         [&](Connection& client, const std::string& answer) {
             client.Write(answer.substr(0, middle(answer)));
             client.WaitForPeerClose();
         }},
    };
    Serve(Disks(1, kDisks));
    for (const auto& [kind, fault] : cases) {
        OnInstances(fault);
        const auto nameSpace = ToFront({{kTimeoutKey, TCIMValue(kind == Kind::kTimeOut ? 3000U : 60000U)}});
        const TRead read = Read(*nameSpace, 1);
        EXPECT_EQ(read.status, TVYXStatusCode::eRemoteConnectionFailed);
        EXPECT_EQ(read.failure, kind);
        const int count = static_cast<int>(read.names.size());
        // A reset may take what the client's system has received and not passed on.
        EXPECT_THAT(count, AllOf(Ge(kDisks / 4), Le(kDisks / 2 + 1)));
        EXPECT_EQ(read.names, NamesOf(kDisks + 1 - count, kDisks));
        OnInstances([](Connection& client, const std::string& answer) { client.Write(answer); });
        ExpectRead(*nameSpace, kDisks);
    }
}

TEST_F(ArrivingReadingTest, ALimitInTheMiddleIsTold) {
    Serve(Disks(1, 5000));
    const auto bytes = Read(*Direct({{kLimitBytesKey, TCIMValue(500000U)}}), 1);
    EXPECT_EQ(bytes.failure, Kind::kLimit);
    EXPECT_THAT(bytes.names, SizeIs(AllOf(Ge(500U), Le(3000U))));
    const auto objects = Read(*Direct({{kLimitObjectsKey, TCIMValue(2000U)}}), 1);
    EXPECT_EQ(objects.failure, Kind::kLimit);
    EXPECT_THAT(objects.names, SizeIs(AllOf(Ge(2000U), Le(2001U))));
}

TEST_F(ArrivingReadingTest, AnErrorOfTheServerAfterSomeInstancesIsTold) {
    Serve(Disks(1, 5000));
    OnInstances([](Connection& client, const std::string& answer) {
        const std::string end = "</IRETURNVALUE>";
        std::string failed = answer;
        const std::string error = "<ERROR CODE=\"4\" DESCRIPTION=\"gone\"/>";
        std::string& text = failed.replace(failed.find(end), end.size(), end + error);
        const std::string field = "Content-Length: ";
        const std::size_t begin = text.find(field) + field.size();
        const std::size_t length = std::stoul(text.substr(begin));
        text.replace(begin, std::to_string(length).size(), std::to_string(length + error.size()));
        client.Write(text);
    });
    const auto nameSpace = ToFront();
    const TRead read = Read(*nameSpace, 1);
    EXPECT_EQ(read.failure, Kind::kCimStatus);
    EXPECT_EQ(nameSpace->LastFailure()->cimStatus, 4U);
    EXPECT_EQ(read.names, NamesOf(1, 5000));
}

TEST_F(ArrivingReadingTest, AFailureWithinTheHeldCountHandsOnNothing) {
    Serve(Disks(1, 5000) + "<UNKNOWN/>");
    const TRead read = Read(*Direct(), 5000);
    EXPECT_EQ(read.failure, Kind::kMalformed);
    EXPECT_THAT(read.names, IsEmpty());
}

TEST_F(ArrivingReadingTest, AFailureBehindAnUnknownClassIsNotTakenForOneOfTheClass) {
    Serve(Disk(2, kLateClass) + Disk(1) + "<UNKNOWN/>");
    const auto nameSpace = Direct();
    const TRead read = Read(*nameSpace, 1);
    EXPECT_THAT(read.names, ElementsAre(NameOf(2), NameOf(1)));
    EXPECT_EQ(read.failure, Kind::kMalformed);
    EXPECT_THAT(nameSpace->TakeIncidents().First(), IsEmpty());
}

TEST_F(ArrivingReadingTest, AFailureWhileAnUnknownClassIsLookedUpIsNotTakenForOneOfTheClass) {
    Serve(Disks(12, 311) + Disk(11, kLateClass) + Disks(1, 10));
    Progress handedOn;
    OnInstances([&](Connection& client, const std::string& answer) {
        client.Write(answer.substr(0, answer.find("</IRETURNVALUE>")));
        handedOn.Await(1); // what was received is being used, and the class not asked for yet; then the connection ends
    });
    const auto nameSpace = ToFront();
    const TRead read = Read(*nameSpace, 1, 1000000, [&](const auto&) { handedOn.Reach(1); });
    const int first = 312 - static_cast<int>(read.names.size());
    EXPECT_THAT(first, Le(2)) << "the last one may not be known to be whole";
    EXPECT_EQ(read.names, NamesOf(first, 311));
    EXPECT_EQ(read.failure, Kind::kNotCim);
    EXPECT_EQ(CountLateCalls(), 1);
    EXPECT_THAT(nameSpace->TakeIncidents().First(), IsEmpty());
}

} // namespace
