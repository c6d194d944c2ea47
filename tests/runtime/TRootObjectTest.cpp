#include "host/TRootObject.h"

#include "host/ICIMNamespace.h"
#include "host/INamespaceProvider.h"
#include "host/INamespaceProviderManager.h"
#include "host/PegStrToStdStr.h"
#include "host/TCIMValue.h"
#include "host/TLogger.h"
#include "runtime/RecordingLogger.h"
#include "support/TemporaryDirectory.h"

#include <Pegasus/Common/String.h>

#include <boost/make_shared.hpp>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <fstream>
#include <sstream>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

namespace NQORVYX20 {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::MatchesRegex;

constexpr int kThreads = 4;
constexpr int kRounds = 200;
constexpr const char* kTimeRegex =
    "[0-9]{4}-[0-9]{2}-[0-9]{2}T[0-9]{2}:[0-9]{2}:[0-9]{2}\\.[0-9]{3}[+-][0-9]{2}:[0-9]{2} ";

std::vector<std::string> LinesOf(const std::string& text) {
    std::vector<std::string> lines;
    std::istringstream stream(text);
    for (std::string line; std::getline(stream, line);) {
        lines.push_back(line);
    }
    return lines;
}

std::string ReadFile(const std::string& name) {
    std::ostringstream text;
    text << std::ifstream(name).rdbuf();
    return text.str();
}

/// Runs `work(thread)` in several threads, and waits for them.
template <typename TWork>
void RunInThreads(TWork work) {
    std::vector<std::thread> threads;
    threads.reserve(kThreads);
    for (int i = 0; i < kThreads; ++i) {
        threads.emplace_back(work, i);
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
}

class TTestProvider : public INamespaceProvider {
  public:
    explicit TTestProvider(std::string name) : name_(std::move(name)) {}
    const std::string& GetName(TCIMContext) const override { return name_; }
    boost::shared_ptr<ICIMNamespace> AllocateNamespace(TCIMContext, bool) const override { return {}; }
    int GetType(TCIMContext) const override { return 2; }
    bool IsIndicationsSupported(TCIMContext) const override { return false; }

  private:
    std::string name_;
};

TEST(TLogger, WritesTimeSeverityAndText) {
    std::ostringstream stream;
    TLogger logger(stream, ILogger::eLogDebug);
    logger.Log(ILogger::eLogError, "one");
    logger.Log(ILogger::eLogWarning, "two");
    logger.Log(ILogger::eLogInfo, "three");
    logger.Log(ILogger::eLogDebug, "");
    const std::string time = kTimeRegex;
    EXPECT_THAT(LinesOf(stream.str()), ElementsAre(MatchesRegex(time + "error one"), MatchesRegex(time + "warning two"),
                                                   MatchesRegex(time + "info three"), MatchesRegex(time + "debug ")));
}

TEST(TLogger, DropsWhatIsBelowItsLevel) {
    std::ostringstream stream;
    TLogger logger(stream, ILogger::eLogWarning);
    logger.Log(ILogger::eLogInfo, "dropped");
    logger.Log(ILogger::eLogDebug, "dropped");
    EXPECT_EQ(stream.str(), "");
    logger.Log(ILogger::eLogWarning, "kept");
    EXPECT_THAT(stream.str(), testing::HasSubstr("warning kept"));
}

TEST(TLogger, KeepsAMessageOnOneLine) {
    std::ostringstream stream;
    TLogger logger(stream, ILogger::eLogError);
    logger.Log(ILogger::eLogError, std::string("a\nb\r\tc\x1b[2J\x7f\0d \xC3\xA4", 16));
    EXPECT_THAT(LinesOf(stream.str()),
                ElementsAre(testing::HasSubstr("error a\\nb\\r\\tc\\x1b[2J\\x7f\\x00d \xC3\xA4")));
}

TEST(TLogger, EscapesWhatSteersATerminalOrDoesNotShow) {
    const std::vector<std::pair<std::string, std::string>> escaped{
        {"\xC2\x80", "\\xc2\\x80"},                                                       // the C1 controls
        {"\xC2\x9B", "\\xc2\\x9b"},                                                       // from the first
        {"\xC2\x9F", "\\xc2\\x9f"},                                                       // to the last
        {"\xC2\xAD", "\\xc2\\xad"},                                                       // a soft hyphen
        {"\xD8\x9C", "\\xd8\\x9c"},                                                       // marks of direction
        {"\xE2\x80\x8E\xE2\x80\x8F", "\\xe2\\x80\\x8e\\xe2\\x80\\x8f"},                   //
        {"\xE2\x80\xAA\xE2\x80\xAE", "\\xe2\\x80\\xaa\\xe2\\x80\\xae"},                   //
        {"\xE2\x81\xA6\xE2\x81\xA9", "\\xe2\\x81\\xa6\\xe2\\x81\\xa9"},                   //
        {"\xE2\x80\x8B\xE2\x80\x8D", "\\xe2\\x80\\x8b\\xe2\\x80\\x8d"},                   // no width
        {"\xE2\x81\xA0\xEF\xBB\xBF", "\\xe2\\x81\\xa0\\xef\\xbb\\xbf"},                   //
        {"\xF3\xA0\x80\x81\xF3\xA0\x81\xBF", "\\xf3\\xa0\\x80\\x81\\xf3\\xa0\\x81\\xbf"}, // tags
    };
    for (const auto& [text, expected] : escaped) {
        std::ostringstream stream;
        TLogger(stream, ILogger::eLogError).Log(ILogger::eLogError, "a" + text + "b");
        EXPECT_THAT(LinesOf(stream.str()), ElementsAre(testing::EndsWith(" a" + expected + "b")));
    }
}

TEST(TLogger, EscapesBytesThatAreNotUtf8) {
    const std::vector<std::pair<std::string, std::string>> escaped{
        {"\x9B", "\\x9b"},                            // a C1 control of one byte
        {"\xC0\x9B", "\\xc0\\x9b"},                   // overlong
        {"\xE0\x80\x9B", "\\xe0\\x80\\x9b"},          //
        {"\xED\xA0\x80", "\\xed\\xa0\\x80"},          // a surrogate
        {"\xF4\x90\x80\x80", "\\xf4\\x90\\x80\\x80"}, // beyond Unicode
        {"\xFF", "\\xff"},                            //
        {"\xE2\x82"
         "c",
         "\\xe2\\x82"
         "c"}, // cut short
        {"\xE2\x82\xC2\x9B", "\\xe2\\x82\\xc2\\x9b"},
    };
    for (const auto& [text, expected] : escaped) {
        std::ostringstream stream;
        TLogger(stream, ILogger::eLogError).Log(ILogger::eLogError, text);
        EXPECT_THAT(LinesOf(stream.str()), ElementsAre(testing::EndsWith("error " + expected)));
    }
    std::ostringstream stream;
    TLogger(stream, ILogger::eLogError).Log(ILogger::eLogError, "\xE2\x82");
    EXPECT_THAT(stream.str(), testing::EndsWith("error \\xe2\\x82\n"));
}

TEST(TLogger, WritesTextsOfAllLanguagesAsTheyAre) {
    const std::string text = "K\xC3\xB6ln \xD7\x90 \xE6\x9D\xB1\xE4\xBA\xAC \xE2\x82\xAC \xF0\x9F\x98\x80";
    std::ostringstream stream;
    TLogger(stream, ILogger::eLogError).Log(ILogger::eLogError, text);
    EXPECT_THAT(stream.str(), testing::EndsWith("error " + text + "\n"));
}

TEST(TLogger, AppendsToAFile) {
    const support::TemporaryDirectory directory;
    const std::string name = directory.Path() / "log";
    TLogger(name, ILogger::eLogError).Log(ILogger::eLogError, "first");
    TLogger logger(name, ILogger::eLogError);
    logger.Log(ILogger::eLogError, "second");
    EXPECT_THAT(LinesOf(ReadFile(name)),
                ElementsAre(testing::HasSubstr("error first"), testing::HasSubstr("error second")));
}

TEST(TLogger, NamesTheFileThatItCannotOpen) {
    try {
        const TLogger logger("/no/such/folder/log", ILogger::eLogError);
        ADD_FAILURE() << "nothing was thrown";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().value(), ENOENT);
        EXPECT_THAT(error.what(), testing::HasSubstr("/no/such/folder/log"));
    }
}

TEST(TLogger, DoesNotThrowWhenTheStreamDoes) {
    std::ostringstream stream;
    stream.exceptions(std::ios::badbit);
    EXPECT_ANY_THROW(stream.setstate(std::ios::badbit));
    TLogger logger(stream, ILogger::eLogError);
    EXPECT_NO_THROW(logger.Log(ILogger::eLogError, "lost"));
}

TEST(TLogger, KeepsTheLinesOfSeveralThreadsWhole) {
    std::ostringstream stream;
    TLogger logger(stream, ILogger::eLogInfo);
    RunInThreads([&](int thread) {
        for (int i = 0; i < kRounds; ++i) {
            logger.Log(ILogger::eLogInfo, std::string(40, static_cast<char>('a' + thread)));
        }
    });
    const auto lines = LinesOf(stream.str());
    EXPECT_EQ(lines.size(), static_cast<std::size_t>(kThreads * kRounds));
    EXPECT_THAT(lines, testing::Each(MatchesRegex(kTimeRegex + std::string("info (a{40}|b{40}|c{40}|d{40})"))));
}

TEST(TRootObject, WritesErrorsAndWarningsToTheErrorStreamAtFirst) {
    testing::internal::CaptureStderr();
    TRootObject::GetCoreLogger()->Log(ILogger::eLogWarning, "of the first logger");
    TRootObject::GetCoreLogger()->Log(ILogger::eLogInfo, "not to be seen");
    const std::string written = testing::internal::GetCapturedStderr();
    EXPECT_THAT(LinesOf(written), ElementsAre(testing::HasSubstr("warning of the first logger")));
}

TEST(TRootObject, ExchangesTheLogger) {
    const auto first = TRootObject::GetCoreLogger();
    const auto second = boost::make_shared<TRecordingLogger>();
    TRootObject::SetCoreLogger(second);
    EXPECT_EQ(TRootObject::GetCoreLogger(), second);
    TRootObject::SetCoreLogger({});
    EXPECT_EQ(TRootObject::GetCoreLogger(), first);
    EXPECT_EQ(second.use_count(), 1);
}

TEST(TRootObject, ExchangesTheLoggerWhileOthersLog) {
    const std::vector<boost::shared_ptr<TRecordingLogger>> loggers{boost::make_shared<TRecordingLogger>(),
                                                                   boost::make_shared<TRecordingLogger>()};
    TRootObject::SetCoreLogger(loggers[0]);
    RunInThreads([&](int thread) {
        for (std::size_t i = 0; i < kRounds; ++i) {
            if (thread == 0) {
                TRootObject::SetCoreLogger(loggers[i % 2]);
            } else {
                TRootObject::GetCoreLogger()->Log(ILogger::eLogInfo, "text");
            }
        }
    });
    TRootObject::SetCoreLogger({});
    EXPECT_EQ(loggers[0]->Lines().size() + loggers[1]->Lines().size(),
              static_cast<std::size_t>((kThreads - 1) * kRounds));
}

struct TLogsAtTheEnd {
    ~TLogsAtTheEnd() { TRootObject::GetCoreLogger()->Log(ILogger::eLogError, "the last words"); }
};

TEST(TRootObject, ServesTheDestructorsOfStaticsOlderThanItself) {
    testing::FLAGS_gtest_death_test_style = "threadsafe"; // a process of its own, in which nothing has logged yet
    const auto exitWithLastWords = [] {
        static const TLogsAtTheEnd older;
        TRootObject::GetCoreLogger()->Log(ILogger::eLogInfo, "makes the services");
        std::exit(0);
    };
    EXPECT_EXIT(exitWithLastWords(), testing::ExitedWithCode(0), "error the last words");
}

class NamespaceProviderManager : public testing::Test {
  protected:
    NamespaceProviderManager() { TRootObject::SetCoreLogger(log_); }
    ~NamespaceProviderManager() override {
        for (const std::string& name : Names()) {
            manager_->UnregisterNamespaceProvider(name);
        }
        TRootObject::SetCoreLogger({});
    }

    std::vector<std::string> Names(std::size_t limit = 99) const {
        std::vector<std::string> names;
        manager_->EnumerateNamespaceProviders([&](boost::shared_ptr<INamespaceProvider> provider) {
            names.push_back(provider->GetName({}));
            return names.size() < limit;
        });
        return names;
    }

    std::uint32_t Register(const boost::shared_ptr<INamespaceProvider>& provider) {
        return manager_->RegisterNamespaceProvider(provider).GetCode();
    }

    boost::shared_ptr<TRecordingLogger> log_ = boost::make_shared<TRecordingLogger>();
    boost::shared_ptr<INamespaceProviderManager> manager_ = TRootObject::GetNamespaceProviderManager();
};

TEST_F(NamespaceProviderManager, IsTheSameForEverybody) {
    ASSERT_TRUE(manager_);
    EXPECT_EQ(TRootObject::GetNamespaceProviderManager(), manager_);
}

TEST_F(NamespaceProviderManager, FindsAProviderByName) {
    const auto provider = boost::make_shared<TTestProvider>("one");
    EXPECT_EQ(Register(provider), 0U);
    EXPECT_EQ(manager_->GetNamespaceProvider("one"), provider);
    EXPECT_FALSE(manager_->GetNamespaceProvider("One"));
}

TEST_F(NamespaceProviderManager, AcceptsTheSameProviderAgain) {
    const auto provider = boost::make_shared<TTestProvider>("one");
    EXPECT_EQ(Register(provider), 0U);
    EXPECT_EQ(Register(provider), 0U);
    EXPECT_THAT(Names(), ElementsAre("one"));
    EXPECT_THAT(log_->Lines(), IsEmpty());
}

TEST_F(NamespaceProviderManager, RefusesAnotherProviderOfATakenName) {
    const auto provider = boost::make_shared<TTestProvider>("one");
    Register(provider);
    EXPECT_EQ(Register(boost::make_shared<TTestProvider>("one")), 16U);
    EXPECT_EQ(manager_->GetNamespaceProvider("one"), provider);
    EXPECT_THAT(log_->Lines(),
                ElementsAre("error The namespace provider was not registered: another one has the name one"));
}

TEST_F(NamespaceProviderManager, RefusesAnEmptyPointer) {
    EXPECT_EQ(Register({}), 14U);
    EXPECT_THAT(log_->Lines(), ElementsAre("error The namespace provider was not registered: it is an empty pointer"));
}

TEST_F(NamespaceProviderManager, EnumeratesInTheOrderOfNamesUntilTheCallbackStops) {
    Register(boost::make_shared<TTestProvider>("two"));
    Register(boost::make_shared<TTestProvider>("one"));
    EXPECT_THAT(Names(), ElementsAre("one", "two"));
    EXPECT_THAT(Names(1), ElementsAre("one"));
}

TEST_F(NamespaceProviderManager, MayBeCalledFromTheCallback) {
    Register(boost::make_shared<TTestProvider>("one"));
    Register(boost::make_shared<TTestProvider>("two"));
    manager_->EnumerateNamespaceProviders([&](boost::shared_ptr<INamespaceProvider> provider) {
        manager_->UnregisterNamespaceProvider(provider->GetName({}));
        return true;
    });
    EXPECT_THAT(Names(), IsEmpty());
}

TEST_F(NamespaceProviderManager, ForgetsAProvider) {
    auto provider = boost::make_shared<TTestProvider>("one");
    const boost::weak_ptr<INamespaceProvider> observer = provider;
    Register(provider);
    provider.reset();
    EXPECT_FALSE(observer.expired());
    manager_->UnregisterNamespaceProvider("unknown");
    manager_->UnregisterNamespaceProvider("one");
    EXPECT_TRUE(observer.expired());
}

TEST_F(NamespaceProviderManager, KeepsTheFirstOfSeveralThreadsThatRegisterAName) {
    std::atomic<int> accepted{0};
    RunInThreads([&](int) {
        for (int i = 0; i < kRounds; ++i) {
            if (Register(boost::make_shared<TTestProvider>("provider " + std::to_string(i))) == 0) {
                ++accepted;
            }
            Names(3);
        }
    });
    EXPECT_EQ(accepted, kRounds);
    EXPECT_EQ(Names(99999).size(), static_cast<std::size_t>(kRounds));
}

TEST(PegStrToStdStr, GivesTheUtf8Form) {
    EXPECT_EQ(PegStrToStdStr(Pegasus::String("CIM_Ger\xC3\xA4t")), "CIM_Ger\xC3\xA4t");
    EXPECT_EQ(PegStrToStdStr(Pegasus::String()), "");
}

} // namespace
} // namespace NQORVYX20
