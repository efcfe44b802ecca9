#include <simulator/SEMSSimulator.h>

#include "../Support/EventLoop.h"
#include "../Support/HandTurnedTime.h"

#include <QTcpSocket>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace Varnel::Simulator {
namespace {

class SEMSSimulatorTest : public testing::Test {
protected:
    void SetUp() override { ASSERT_TRUE(simulator.listen(0)); }

    void ask(QTcpSocket& socket, const QByteArray& request) {
        socket.connectToHost(QStringLiteral("127.0.0.1"), static_cast<quint16>(simulator.baseURL().port()));
        socket.write(request);
    }

    /// Everything that comes until the reply seems whole, or the connection is closed.
    QByteArray reply(QTcpSocket& socket) {
        QByteArray bytes;
        Testing::waitUntil([&] {
            bytes += socket.readAll();
            return socket.state() == QAbstractSocket::UnconnectedState || bytes.endsWith('}') || bytes.endsWith('\n');
        });
        return bytes;
    }

    Testing::HandTurnedTime time;
    SEMSSimulator simulator{time};
};

constexpr const char* unknownPath = "GET /api/Unknown?a=%20b HTTP/1.1\r\nHost: here\r\ntoKen: x\r\n\r\n";

QByteArray control(const QByteArray& body) {
    return "POST /_control HTTP/1.1\r\nContent-Length: " + QByteArray::number(body.size()) + "\r\n\r\n" + body;
}

TEST_F(SEMSSimulatorTest, LogsRequestsAsTheyCameAndHowManyWereInFlight) {
    QTemporaryDir folder;
    const QString path = folder.filePath(QStringLiteral("requests.jsonl"));
    ASSERT_TRUE(simulator.log().writeTo(path));
    Fault slow;
    slow.kind = FaultKind::silence;
    slow.count = 1;
    simulator.behaviour().faults = {slow};
    QTcpSocket silent;
    ask(silent, unknownPath);
    ASSERT_TRUE(Testing::waitUntil([this] { return simulator.log().requests().size() == 1; }));
    QTcpSocket answered;
    ask(answered, unknownPath);
    EXPECT_TRUE(reply(answered).startsWith("HTTP/1.1 404 "));
    EXPECT_EQ(simulator.log().maximumInFlight(), 2);
    EXPECT_EQ(simulator.log().requests()[1].target, "/api/Unknown?a=%20b");
    EXPECT_EQ(simulator.log().requests()[1].headers[1].first, "toKen");

    silent.abort();
    ASSERT_TRUE(Testing::waitUntil([this] {
        simulator.log().clear();
        return simulator.log().maximumInFlight() == 0;
    }));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadOnly));
    EXPECT_EQ(file.readAll().count('\n'), 2);
}

TEST_F(SEMSSimulatorTest, ControlChangesAllOrNothingAndIsNotLogged) {
    QTcpSocket wrong;
    ask(wrong, control(R"({"account":"other","password":5})"));
    EXPECT_TRUE(reply(wrong).startsWith("HTTP/1.1 400 "));
    EXPECT_EQ(simulator.behaviour().account, QStringLiteral("demo@example.com"));
    QTcpSocket right;
    ask(right, control(R"({"powerKW":2.5})"));
    EXPECT_TRUE(reply(right).startsWith("HTTP/1.1 200 "));
    EXPECT_EQ(simulator.behaviour().powerScript, std::deque<double>{2.5});
    EXPECT_TRUE(simulator.log().requests().empty());
}

TEST_F(SEMSSimulatorTest, ACutReplyAnnouncesMoreThanItSends) {
    Fault cut;
    cut.kind = FaultKind::cut;
    simulator.behaviour().faults = {cut};
    QTcpSocket socket;
    ask(socket, unknownPath);
    ASSERT_TRUE(Testing::waitUntil([&] { return socket.state() == QAbstractSocket::UnconnectedState; }));
    const QByteArray bytes = socket.readAll();
    EXPECT_TRUE(bytes.contains("Content-Length: 70"));
    EXPECT_EQ(bytes.size() - bytes.indexOf("\r\n\r\n") - 4, 35);
}

} // namespace
} // namespace Varnel::Simulator
