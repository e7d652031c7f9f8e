// The library's end of the connection to its helper, with a scripted one at the other end.
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <functional>
#include <memory>
#include <thread>
#include <vector>

#include "helper/serve.h"
#include "platform/event.h"
#include "runtime/remote/helper_process.h"
#include "runtime/remote/records.h"
#include "runtime/remote/remote_runner.h"
#include "support/time_limit.h"

namespace zeldlg::remote {
namespace {

// What a helper does with its end of the connection; the connection ends when it returns.
using Script = std::function<void(int socket)>;

// Each script is a helper: the runner starts one after the other.
class ScriptedHelpers {
public:
    explicit ScriptedHelpers(std::vector<Script> scripts) : m_scripts(std::move(scripts)) {}
    ~ScriptedHelpers() {
        for (std::thread& thread : m_threads) {
            thread.join();
        }
    }
    ScriptedHelpers(const ScriptedHelpers&) = delete;
    ScriptedHelpers& operator=(const ScriptedHelpers&) = delete;

    int Start() {
        std::array<int, 2> ends{};
        if (m_started == m_scripts.size() ||
            socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends.data()) != 0) {
            return -1;
        }
        m_threads.emplace_back([script = m_scripts[m_started++], socket = ends[1]] {
            script(socket);
            close(socket);
        });
        return m_socket = ends[0];
    }
    // The newest connection.
    int Socket() const { return m_socket; }
    size_t Started() const { return m_started; }

private:
    std::vector<Script> m_scripts;
    std::vector<std::thread> m_threads;
    size_t m_started = 0;
    int m_socket = -1;
};

// A request whose answer is one number.
struct RemoteRunnerTest : testing::Test {
    void Use(std::vector<Script> scripts) {
        helpers = std::make_unique<ScriptedHelpers>(std::move(scripts));
        runner = std::make_unique<RemoteRunner>([this] { return helpers->Start(); });
    }
    ~RemoteRunnerTest() override { runner->Stop(); }

    bool Ask() {
        CMessage message(kPinPadShouldAbort, Packed(static_cast<const void*>(nullptr)),
                         Packed(&answer), &kWireForm<const void*, bool*>);
        return runner->Send(message);
    }

    std::unique_ptr<ScriptedHelpers> helpers;
    std::unique_ptr<RemoteRunner> runner;
    bool answer = false;
};

WireBytes Yes() {
    Writer writer;
    writer.Number(true);
    return writer.Bytes();
}

void AnswerOnce(int socket, FrameKind kind, const WireBytes& body = {}) {
    ASSERT_EQ(ReceiveFrame(socket).value().kind, FrameKind::Request);
    SendFrame(socket, kind, body);
}

void AnswerUntilFinish(int socket) {
    for (std::optional<Frame> frame = ReceiveFrame(socket);
         frame && frame->kind == FrameKind::Request; frame = ReceiveFrame(socket)) {
        SendFrame(socket, FrameKind::Served, Yes());
    }
}

TEST_F(RemoteRunnerTest, OneHelperServesRequestAfterRequest) {
    Use({AnswerUntilFinish});
    EXPECT_FALSE(runner->IsStarted());
    for (int i = 0; i < 3; ++i) {
        answer = false;
        EXPECT_TRUE(Ask());
        EXPECT_TRUE(answer);
    }
    EXPECT_EQ(helpers->Started(), 1U);
    EXPECT_TRUE(runner->IsStarted());
}

TEST_F(RemoteRunnerTest, WithoutAHelperNothingIsCarriedOut) {
    Use({});
    EXPECT_FALSE(Ask());
    EXPECT_FALSE(runner->IsStarted());
}

TEST_F(RemoteRunnerTest, ARefusalIsOneAndARaisedExceptionIsRaised) {
    Use({[](int socket) {
        AnswerOnce(socket, FrameKind::Refused);
        AnswerOnce(socket, FrameKind::Raised);
        AnswerOnce(socket, FrameKind::Untaken);
        AnswerUntilFinish(socket);
    }});
    EXPECT_FALSE(Ask());
    EXPECT_THROW(Ask(), std::runtime_error);
    EXPECT_TRUE(Ask());
    EXPECT_FALSE(answer);
    EXPECT_EQ(helpers->Started(), 1U);
}

TEST_F(RemoteRunnerTest, AHelperThatDiesFailsItsRequestAndTheNextHasAnother) {
    Use({[](int socket) { ReceiveFrame(socket); }, AnswerUntilFinish});
    EXPECT_THROW(Ask(), std::runtime_error);
    EXPECT_FALSE(answer);
    EXPECT_FALSE(runner->IsStarted());
    runner->Start();
    EXPECT_EQ(helpers->Started(), 2U) << "ahead of the next request";
    EXPECT_TRUE(Ask());
    EXPECT_TRUE(answer);
    EXPECT_EQ(helpers->Started(), 2U);
}

TEST_F(RemoteRunnerTest, AHelperThatDiedInBetweenCostsNoRequest) {
    platform::EventHandle ended = platform::EventHandle::Create();
    Use({[&ended](int socket) {
             AnswerOnce(socket, FrameKind::Served, Yes());
             shutdown(socket, SHUT_RDWR);
             ended->Set();
         },
         AnswerUntilFinish});
    EXPECT_TRUE(Ask());
    ASSERT_TRUE(platform::WaitForEvent(*ended, test::kLongMs));
    EXPECT_TRUE(Ask());
    EXPECT_EQ(helpers->Started(), 2U);
}

TEST_F(RemoteRunnerTest, AHelperWithoutItsDisplayIsReplacedOnce) {
    const auto gone = [](int socket) { AnswerOnce(socket, FrameKind::Gone); };
    Use({gone, AnswerUntilFinish, gone, gone, AnswerUntilFinish});
    EXPECT_TRUE(Ask());
    EXPECT_TRUE(answer);
    runner->Stop();
    EXPECT_FALSE(Ask());
    EXPECT_EQ(helpers->Started(), 4U);
}

TEST_F(RemoteRunnerTest, WhatIsNoAnswerEndsTheConnection) {
    const auto raw = [](std::string bytes) {
        return [bytes = std::move(bytes)](int socket) {
            ReceiveFrame(socket);
            send(socket, bytes.data(), bytes.size(), MSG_NOSIGNAL);
        };
    };
    const auto head = [](const char* magic, uint16_t version, uint64_t length) {
        FrameHead made{
            .magic = {}, .version = version, .kind = FrameKind::Served, .length = length};
        memcpy(made.magic, magic, sizeof made.magic);
        return std::string(reinterpret_cast<const char*>(&made), sizeof made);
    };
    Writer tooLong;
    tooLong.Number(true);
    tooLong.Number(true);
    Writer wrong;
    wrong.Number(uint8_t{2});
    Use({raw("x"), raw(std::string(64, 'x')), raw(head("ZDLH", kWireVersion, 1) + "\1"),
         raw(head("ZDLG", kWireVersion + 1, 1) + "\1"),
         raw(head("ZDLG", kWireVersion, kLargestMessage + 1)),
         raw(head("ZDLG", kWireVersion, 2) + "\1"),
         [](int socket) { AnswerOnce(socket, FrameKind::Served); },
         [bytes = tooLong.Bytes()](int socket) { AnswerOnce(socket, FrameKind::Served, bytes); },
         [bytes = wrong.Bytes()](int socket) { AnswerOnce(socket, FrameKind::Served, bytes); },
         AnswerUntilFinish});
    for (int i = 1; i <= 9; ++i) {
        EXPECT_THROW(Ask(), std::runtime_error) << i;
        EXPECT_FALSE(answer);
        EXPECT_EQ(helpers->Started(), static_cast<size_t>(i));
    }
    EXPECT_TRUE(Ask());
}

TEST_F(RemoteRunnerTest, AnotherFileInThePlaceOfTheConnectionIsLeftAlone) {
    Use({AnswerUntilFinish, AnswerUntilFinish});
    ASSERT_TRUE(Ask());
    const int place = helpers->Socket();
    std::array<int, 2> ends{};
    ASSERT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
    ASSERT_EQ(dup2(ends[0], place), place);  // as a host does that closes and opens descriptors
    EXPECT_TRUE(Ask());
    EXPECT_EQ(helpers->Started(), 2U);
    char byte = 0;
    EXPECT_EQ(recv(ends[1], &byte, 1, MSG_DONTWAIT), -1);
    EXPECT_EQ(errno, EAGAIN);
    for (const int each : {place, ends[0], ends[1]}) {
        EXPECT_EQ(close(each), 0);
    }
}

TEST_F(RemoteRunnerTest, ARequestThatCannotTravelIsNotSent) {
    Use({AnswerUntilFinish});
    CMessage message(kPinPadShouldAbort, 0, Packed(&answer));
    EXPECT_THROW(runner->Send(message), std::runtime_error);
    EXPECT_EQ(helpers->Started(), 0U);
}

TEST_F(RemoteRunnerTest, StopWaitsForTheRequestAndRefusesThoseThatWait) {
    platform::EventHandle arrived = platform::EventHandle::Create();
    platform::EventHandle goOn = platform::EventHandle::Create();
    Use({[&](int socket) {
             ReceiveFrame(socket);
             arrived->Set();
             platform::WaitForEvent(*goOn, test::kLongMs);
             SendFrame(socket, FrameKind::Served, Yes());
             EXPECT_EQ(ReceiveFrame(socket).value().kind, FrameKind::Finish);
         },
         AnswerUntilFinish});
    bool served = false;
    bool waiting = true;
    std::thread first([&] { served = Ask(); });
    ASSERT_TRUE(platform::WaitForEvent(*arrived, test::kLongMs));
    std::thread second([&] { waiting = Ask(); });
    ASSERT_TRUE(test::WaitUntil([this] { return runner->Waiting() == 1; }));
    std::thread end([this] { runner->Stop(); });
    ASSERT_TRUE(test::WaitUntil([this] { return runner->Waiting() == 2; }));
    goOn->Set();
    for (std::thread* const thread : {&first, &second, &end}) {
        thread->join();
    }
    EXPECT_TRUE(served);
    EXPECT_FALSE(waiting);
    EXPECT_TRUE(Ask());
    EXPECT_EQ(helpers->Started(), 2U);
}

TEST(HelperProcess, AProgramThatIsNotThereIsNotStarted) {
    EXPECT_EQ(StartHelper("/nowhere/zeldlg-helper"), -1);
}

TEST(HelperProcess, WhatCannotBeReadIsNoRequest) {
    Handles handles;
    const auto none = [](CMessage&) { return true; };
    EXPECT_THROW(helper::Answer(WireBytes(7), handles, none), WireError);
    EXPECT_EQ(helper::Answer(WireBytes(8, 'x'), handles, none).kind, FrameKind::Untaken);
    const auto refuse = [](CMessage&) { return false; };
    EXPECT_EQ(helper::Answer(WireBytes(8, 'x'), handles, refuse).kind, FrameKind::Refused);
    const auto raise = [](CMessage&) -> bool { throw std::logic_error("null"); };
    EXPECT_EQ(helper::Answer(WireBytes(8, 'x'), handles, raise).kind, FrameKind::Raised);
}

}  // namespace
}  // namespace zeldlg::remote
