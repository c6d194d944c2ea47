#include "connection/InstanceStream.h"

#include "Failure.h"
#include "connection/Connection.h"
#include "connection/Plugin.h"
#include "connection/Session.h"
#include "host/ICIMInstance.h"
#include "support/CimServer.h"
#include "support/LoopbackAddress.h"
#include "waiting/Interrupt.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <condition_variable>
#include <csignal>
#include <cstdlib>
#include <iostream>
#include <memory>
#include <mutex>
#include <new>
#include <set>
#include <thread>
#include <utility>
#include <vector>

using cimhttp::InstanceStream;

namespace {

/// What a sequence under test has been asked, and is told to do.
struct Script {
    std::size_t portions = 5;     ///< portion n has n instances
    std::size_t failing = 0;      ///< the portion that cannot be read; none by default
    std::size_t unmakable = 0;    ///< the portion of which no instances can be made; none by default
    std::size_t unending = 0;     ///< the portion that comes only when the sequence is stopped; none by default
    bool mayReadAhead = true;     ///< see InstanceSequence
    bool doesNotHearStop = false; ///< a portion that is unending then stays so

    std::set<std::thread::id> makers; ///< the threads that made instances, but not both at once

    std::mutex mutex; // guards all below
    std::condition_variable changed;
    std::size_t begun = 0;
    std::size_t ended = 0;
    std::size_t settled = 0;
    bool isStopped = false;
    bool isClosed = false;

    template <typename Condition>
    void Await(const Condition& condition) {
        std::unique_lock<std::mutex> lock(mutex);
        changed.wait(lock, condition);
    }

    std::size_t Begun() {
        const std::lock_guard<std::mutex> lock(mutex);
        return begun;
    }
};

class ScriptedPortion : public cimhttp::ReceivedPortion {
  public:
    ScriptedPortion(std::size_t portion, Script& script) : portion_(portion), script_(script) {}

    std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> Make() override {
        script_.makers.insert(std::this_thread::get_id());
        if (portion_ == script_.unmakable) {
            throw std::bad_alloc();
        }
        return std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>>(portion_);
    }

  private:
    std::size_t portion_;
    Script& script_;
};

class ScriptedSequence : public cimhttp::InstanceSequence {
  public:
    explicit ScriptedSequence(std::shared_ptr<Script> script) : script_(std::move(script)) {}
    ~ScriptedSequence() override {
        const std::lock_guard<std::mutex> lock(script_->mutex);
        script_->isClosed = true;
    }
    ScriptedSequence(const ScriptedSequence&) = delete;
    ScriptedSequence& operator=(const ScriptedSequence&) = delete;

    std::vector<boost::shared_ptr<NQORVYX20::ICIMInstance>> Next() override {
        return ScriptedPortion(Read(), *script_).Make();
    }

    std::unique_ptr<cimhttp::ReceivedPortion> Receive() override {
        return std::make_unique<ScriptedPortion>(Read(), *script_);
    }

    void Settle() override {
        const std::lock_guard<std::mutex> lock(script_->mutex);
        EXPECT_EQ(script_->begun, script_->ended); // nothing is under way
        ++script_->settled;
        if (script_->unmakable != 0) {
            throw cimhttp::Failure(cimhttp::Failure::kOther, "the portion cannot be made");
        }
    }

    bool IsAtEnd() const override { return isAtEnd_; }
    bool HasMoreAtHand() const override { return false; }
    bool MayReadAhead() const override { return script_->mayReadAhead; }

    void Stop() noexcept override {
        const std::lock_guard<std::mutex> lock(script_->mutex);
        script_->isStopped = true;
        script_->changed.notify_all();
    }

  private:
    std::size_t Read() {
        std::unique_lock<std::mutex> lock(script_->mutex);
        const std::size_t portion = ++script_->begun;
        script_->changed.notify_all();
        if (portion == script_->unending) {
            script_->changed.wait(lock, [this] { return script_->isStopped && !script_->doesNotHearStop; });
        }
        ++script_->ended;
        script_->changed.notify_all();
        if (portion == script_->failing) {
            throw cimhttp::Failure(cimhttp::Failure::kOther, "the portion cannot be read");
        }
        isAtEnd_ = portion == script_->portions;
        return portion;
    }

    std::shared_ptr<Script> script_;
    bool isAtEnd_ = false;
};

class InstanceStreamTest : public testing::Test {
  protected:
    void SetUp() override {
        server_.Listen(5988);
        connection_.host = support::LoopbackAddress();
    }

    cimhttp::Session MakeSession() const {
        const cimhttp::ProgressWait wait(std::cerr, false, 0, [] {
            std::cerr << "interrupted" << std::endl;
            std::_Exit(42);
        });
        return {cimhttp::Plugin(CIMHTTP_PLUGIN), connection_, wait};
    }

    std::unique_ptr<InstanceStream> Open(cimhttp::Session& session) {
        return std::make_unique<InstanceStream>(session, std::make_unique<ScriptedSequence>(script_), "T");
    }

    support::CimServer server_;
    cimhttp::Connection connection_;
    std::shared_ptr<Script> script_ = std::make_shared<Script>();
};

} // namespace

TEST_F(InstanceStreamTest, GivesThePortionsInTheirOrderAndIsFourPortionsAheadAtMost) {
    script_->portions = 10;
    cimhttp::Session session = MakeSession();
    const auto stream = Open(session);
    for (std::size_t portion = 1; portion <= script_->portions; ++portion) {
        EXPECT_FALSE(stream->IsAtEnd());
        EXPECT_EQ(stream->Next().size(), portion);
        const std::size_t ahead = std::min(portion + 4, script_->portions);
        script_->Await([&] { return script_->ended >= ahead; }); // without anybody asking for it
        EXPECT_EQ(script_->Begun(), ahead);
    }
    EXPECT_TRUE(stream->IsAtEnd());
}

TEST_F(InstanceStreamTest, MakesTheInstancesInTheThreadThatAsksForThem) {
    cimhttp::Session session = MakeSession();
    const auto stream = Open(session);
    stream->Next();
    script_->Await([&] { return script_->ended == script_->portions; });
    script_->makers.clear(); // of the first ones, which come as they are
    while (!stream->IsAtEnd()) {
        stream->Next();
    }
    EXPECT_THAT(script_->makers, testing::ElementsAre(std::this_thread::get_id()));
    EXPECT_EQ(script_->settled, 1U); // at the end, when nothing is under way
}

TEST_F(InstanceStreamTest, WhereInstancesCannotBeMadeReadingEndsBeforeThatIsTold) {
    script_->portions = 100;
    script_->unmakable = 3;
    cimhttp::Session session = MakeSession();
    const auto stream = Open(session);
    EXPECT_EQ(stream->Next().size(), 1U);
    EXPECT_EQ(stream->Next().size(), 2U);
    EXPECT_THROW(stream->Next(), cimhttp::Failure);
    EXPECT_TRUE(script_->isStopped);
    EXPECT_EQ(script_->settled, 1U);
    EXPECT_THAT(script_->ended, testing::Le(8U));
}

TEST_F(InstanceStreamTest, ReadsNothingAheadWhereClassesMayChangeOrNobodyWaitsForThreads) {
    cimhttp::Session session = MakeSession();
    cimhttp::Session direct = session.WithoutProgress();
    for (cimhttp::Session* const used : {&session, &direct}) {
        script_ = std::make_shared<Script>();
        script_->mayReadAhead = used == &direct;
        const auto stream = Open(*used);
        for (std::size_t portion = 1; portion <= script_->portions; ++portion) {
            EXPECT_EQ(stream->Next().size(), portion);
            EXPECT_EQ(script_->Begun(), portion);
        }
        EXPECT_TRUE(stream->IsAtEnd());
    }
}

TEST_F(InstanceStreamTest, ThrowsAFailureAfterThePortionsBeforeIt) {
    script_->failing = 3;
    cimhttp::Session session = MakeSession();
    const auto stream = Open(session);
    EXPECT_EQ(stream->Next().size(), 1U);
    script_->Await([&] { return script_->ended >= 2; });
    EXPECT_EQ(stream->Next().size(), 2U);
    script_->Await([&] { return script_->ended >= 3; });
    EXPECT_THROW(stream->Next(), cimhttp::Failure);
    EXPECT_EQ(script_->Begun(), 3U);
}

TEST_F(InstanceStreamTest, StopsAndAwaitsWhatIsReadAheadWhenNobodyWantsItAnyMore) {
    script_->unending = 2;
    cimhttp::Session session = MakeSession();
    auto stream = Open(session);
    EXPECT_EQ(stream->Next().size(), 1U);
    script_->Await([&] { return script_->begun >= 2; });
    stream.reset();
    EXPECT_EQ(script_->ended, 2U); // the thread has gone: nobody else changes it
    EXPECT_TRUE(script_->isClosed);
}

TEST_F(InstanceStreamTest, StopClosesTheSequence) {
    script_->unending = 2;
    cimhttp::Session session = MakeSession();
    const auto stream = Open(session);
    stream->Next();
    script_->Await([&] { return script_->begun >= 2; });
    stream->Stop();
    EXPECT_EQ(script_->ended, 2U);
    EXPECT_TRUE(script_->isClosed);
}

TEST_F(InstanceStreamTest, AnInterruptEndsTheProgramAlsoWhileAServerKeepsItWaiting) {
    script_->unending = 2;
    script_->doesNotHearStop = true;
    testing::FLAGS_gtest_death_test_style = "threadsafe"; // the server has threads, which a mere fork would lose
    EXPECT_EXIT(
        {
            cimhttp::Session session = MakeSession();
            const cimhttp::InterruptScope interrupts;
            auto stream = Open(session);
            stream->Next();
            script_->Await([&] { return script_->begun >= 2; });
            std::raise(SIGINT);
            stream.reset(); // as when the output cannot be written
        },
        testing::ExitedWithCode(42), "interrupted");
}
