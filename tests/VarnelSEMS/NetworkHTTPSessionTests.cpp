#include <VarnelSEMS/Linux/NetworkHTTPSession.h>

#include "../Support/EventLoop.h"
#include "../Support/Files.h"

#include <VarnelSEMS/Linux/CurlReport.h>
#include <VarnelSEMS/Linux/CurlTransfer.h>
#include <VarnelShared/URLError.h>
#include <simulator/LoopbackHTTPServer.h>

#include <QSslCertificate>
#include <QSslConfiguration>
#include <QSslKey>
#include <QSslServer>
#include <QTcpServer>
#include <QTcpSocket>
#include <QTimer>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

using Simulator::ServiceRequest;
using Testing::await;
using Code = URLError::Code;

/// Notes every request and leaves the bytes that go back, and when the connection ends, to a function.
class LoopbackServer {
public:
    using Answer = std::function<void(QTcpSocket& socket, const ServiceRequest& request)>;

    explicit LoopbackServer(const Answer& answer)
        : m_server([this, answer](const ServiceRequest& request, QTcpSocket* socket) {
            requests.push_back(request);
            QTimer::singleShot(0, socket, [=] { answer(*socket, request); });
        })
        , m_port(m_server.listen(0)) {}

    QUrl url(const QString& path = QStringLiteral("/")) const {
        return QUrl(QStringLiteral("http://127.0.0.1:%1").arg(m_port) + path);
    }

    std::vector<ServiceRequest> requests;

private:
    Simulator::LoopbackHTTPServer m_server;
    quint16 m_port;
};

/// A whole reply, after which the connection stays open.
QByteArray httpReply(int status, const QByteArray& body, const QByteArray& headers = {}) {
    return "HTTP/1.1 " + QByteArray::number(status) + " X\r\nContent-Length: " + QByteArray::number(body.size()) +
           "\r\n" + headers + "\r\n" + body;
}

HTTPRequest request(const QUrl& url, const QByteArray& method = "GET") {
    HTTPRequest request;
    request.method = method;
    request.url = url;
    request.timeout = std::chrono::seconds(30);
    request.setHeader("Token", "secret");
    if (method == "POST") {
        request.setHeader("Content-Type", "application/json");
        request.body = "{\"pwd\":1}";
    }
    return request;
}

Result<HTTPResponse> sent(HTTPRequest request) {
    NetworkHTTPSession session;
    return await(session.send(std::move(request)));
}

std::optional<Code> codeOf(const Result<HTTPResponse>& response) {
    return response ? std::nullopt : std::optional(response.error().as<URLError>()->code);
}

TEST(NetworkHTTPSession, EveryFaultEndsInItsError) {
    const QByteArray bomb = qCompress(QByteArray(64LL * 1024 * 1024, '\0')).mid(4);
    const struct {
        const char* name;
        Code code;
        QByteArray reply;
        QByteArray piece = {}; ///< follows every 20 ms, for ever; when there is none, the connection is closed
    } rows[] = {
        {"closed", Code::networkConnectionLost, ""},
        {"garbage", Code::networkConnectionLost, "\x01garbage\r\n"},
        {"short body", Code::networkConnectionLost, "HTTP/1.1 200 OK\r\nContent-Length: 99\r\n\r\n{}"},
        {"short body of a failure", Code::networkConnectionLost, "HTTP/1.1 500 X\r\nContent-Length: 99\r\n\r\n{}"},
        {"cut chunk", Code::networkConnectionLost,
         "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\n{}\r\n9\r\n{"},
        {"dripping body", Code::timedOut, "HTTP/1.1 200 OK\r\nContent-Length: 9999\r\n\r\n", "x"},
        {"endless headers", Code::timedOut, "HTTP/1.1 200 OK\r\n", "X-Header: x\r\n"},
        {"bomb", Code::dataTooLarge, httpReply(200, bomb, "Content-Encoding: deflate\r\n")},
        {"bad compression", Code::unknown, httpReply(200, "nonsense", "Content-Encoding: gzip\r\n")},
    };
    for (const auto& row : rows) {
        LoopbackServer server([&row](QTcpSocket& socket, auto&) {
            socket.write(row.reply);
            if (row.piece.isEmpty()) {
                return socket.disconnectFromHost();
            }
            auto* timer = new QTimer(&socket);
            QObject::connect(timer, &QTimer::timeout, &socket, [&] { socket.write(row.piece); });
            timer->start(20);
        });
        HTTPRequest asked = request(server.url());
        asked.timeout = std::chrono::milliseconds(row.code == Code::timedOut ? 150 : 30000);
        EXPECT_EQ(codeOf(sent(asked)), row.code) << row.name;
    }
}

/// Sends the piece again and again, as fast as it is taken.
void sendForEver(QTcpSocket& socket, const QByteArray& piece, qint64& taken) {
    const auto sendMore = [&socket, piece] {
        while (socket.bytesToWrite() < qint64(1) << 20) {
            socket.write(piece);
        }
    };
    QObject::connect(&socket, &QTcpSocket::bytesWritten, &socket, [&taken, sendMore](qint64 bytes) {
        taken += bytes;
        sendMore();
    });
    sendMore();
}

TEST(NetworkHTTPSession, LittleIsTakenOfWhatNeverEnds) {
    const struct {
        const char* name;
        QByteArray begin;
        QByteArray piece;
    } rows[] = {
        {"head", "", QByteArray("X-Header: x\r\n").repeated(1000)},
        {"line of the head", "X: ", QByteArray(65536, 'x')},
        {"heads", "\r\n", QByteArray("HTTP/1.1 100 Continue\r\n\r\n").repeated(1000)},
        {"body", "\r\n", QByteArray(65536, 'x')},
        {"chunks", "Transfer-Encoding: chunked\r\n\r\n", "ffff\r\n" + QByteArray(65535, 'x') + "\r\n"},
        {"trailer", "Transfer-Encoding: chunked\r\n\r\n0\r\n", QByteArray("X-Header: x\r\n").repeated(1000)},
    };
    for (const auto& row : rows) {
        qint64 taken = 0;
        LoopbackServer server([&](QTcpSocket& socket, auto&) {
            socket.write(row.name == QByteArray("heads") ? "HTTP/1.1 100 Continue\r\n" : "HTTP/1.1 200 OK\r\n");
            socket.write(row.begin);
            sendForEver(socket, row.piece, taken);
        });
        EXPECT_EQ(codeOf(sent(request(server.url()))), Code::dataTooLarge) << row.name;
        EXPECT_LT(taken, qint64(32) << 20) << row.name;
    }
}

TEST(NetworkHTTPSession, TheLargestBodyArrivesWhole) {
    QByteArray body(CurlTransfer::maximumBodySize, 'x');
    LoopbackServer server([&body](QTcpSocket& socket, auto&) { socket.write(httpReply(200, body)); });
    EXPECT_TRUE(sent(request(server.url())).value().body == body);
    body += 'x';
    EXPECT_EQ(codeOf(sent(request(server.url()))), Code::dataTooLarge);
}

TEST(NetworkHTTPSession, NothingIsLeftOfAConnectionThatIsNotAnswered) {
    QTcpServer silent;
    ASSERT_TRUE(silent.listen(QHostAddress::LocalHost));
    const auto connection = [&silent] {
        EXPECT_TRUE(Testing::waitUntil([&] { return silent.hasPendingConnections(); }));
        return std::unique_ptr<QTcpSocket>(silent.nextPendingConnection());
    };
    const auto isClosed = [](const QTcpSocket& socket) {
        return Testing::waitUntil([&] { return socket.state() == QTcpSocket::UnconnectedState; });
    };
    const QString address = QStringLiteral("127.0.0.1:%1").arg(silent.serverPort());
    qputenv("https_proxy", "http://" + address.toLatin1());
    for (const QString& host : {address, QStringLiteral("varnel.invalid")}) { // the handshake, the proxy's CONNECT
        auto session = std::make_unique<NetworkHTTPSession>();
        HTTPRequest asked = request(QUrl(QStringLiteral("https://") + host));
        asked.timeout = std::chrono::seconds(1);
        auto outlasted = session->send(asked);
        const auto first = connection();
        EXPECT_EQ(codeOf(await(std::move(outlasted))), Code::timedOut);
        EXPECT_TRUE(isClosed(*first));
        asked.timeout = std::chrono::seconds(30);
        auto ended = session->send(asked);
        const auto second = connection();
        session.reset();
        EXPECT_EQ(codeOf(await(std::move(ended))), Code::cancelled);
        EXPECT_TRUE(isClosed(*second));
    }
    qunsetenv("https_proxy");
}

TEST(NetworkHTTPSession, AClosedPortIsNoConnection) {
    const QUrl url = LoopbackServer([](auto&, auto&) {}).url();
    EXPECT_EQ(codeOf(sent(request(url))), Code::cannotConnectToHost);
}

TEST(NetworkHTTPSession, EveryStatusIsAReplyWithItsBody) {
    for (const int status : {200, 202, 304, 400, 401, 403, 404, 407, 418, 429, 500, 503, 599}) {
        LoopbackServer server([status](QTcpSocket& socket, auto&) {
            socket.write(httpReply(status, status == 304 ? "" : "{\"é\":1}", "WWW-Authenticate: Basic\r\n"));
        });
        const auto response = sent(request(server.url(), "POST"));
        ASSERT_TRUE(response) << status;
        EXPECT_EQ(response->statusCode, status);
        EXPECT_EQ(response->body, status == 304 ? "" : "{\"é\":1}");
        EXPECT_EQ(server.requests.at(0).body, "{\"pwd\":1}");
        EXPECT_EQ(server.requests.at(0).header("Token"), "secret");
        EXPECT_EQ(server.requests.size(), 1U);
    }
}

TEST(NetworkHTTPSession, NothingIsSentWithAControlCharacterOrToNoWebAddress) {
    LoopbackServer server([](QTcpSocket& socket, auto&) { socket.write(httpReply(200, "{}")); });
    for (const QByteArray& value : {QByteArray("a\r\nHost: other"), QByteArray("a\nb"), QByteArray("a\0b", 3)}) {
        HTTPRequest injected = request(server.url());
        injected.setHeader("X", value);
        EXPECT_EQ(codeOf(sent(injected)), Code::badURL);
    }
    for (const QString& address : {QStringLiteral("file:///etc/hostname"), QStringLiteral("data:,x"),
                                   QStringLiteral("http:///x"), QStringLiteral("path")}) {
        EXPECT_EQ(codeOf(sent(request(QUrl(address)))), Code::badURL) << address.toStdString();
    }
    EXPECT_TRUE(server.requests.empty());
}

TEST(NetworkHTTPSession, RedirectsStayWithinTheirOrigin) {
    LoopbackServer other([](QTcpSocket& socket, auto&) { socket.write(httpReply(200, "{}")); });
    const QByteArray elsewhere = other.url().toEncoded();
    const struct {
        int redirect;
        QByteArray location;
        int status; ///< of the response in the end
        std::size_t requests;
        QByteArray last;
    } rows[] = {
        {302, "/new?a=b%2F", 200, 2, "POST /new?a=b%2F"},
        {307, "new", 200, 2, "POST /new"},
        {303, "/new", 200, 2, "GET /new"},
        {308, "/old", 308, 6, "POST /old"}, // in a circle
        {302, elsewhere, 302, 1, "POST /old"},
        {307, elsewhere, 307, 1, "POST /old"},
        {301, "file:///etc/hostname", 301, 1, "POST /old"},
    };
    for (const auto& row : rows) {
        LoopbackServer server([&row](QTcpSocket& socket, const ServiceRequest& asked) {
            const QByteArray location = "Location: " + row.location + "\r\n";
            socket.write(asked.target == "/old" ? httpReply(row.redirect, {}, location) : httpReply(200, {}));
        });
        const auto response = sent(request(server.url(QStringLiteral("/old")), "POST"));
        EXPECT_EQ(response.value().statusCode, row.status) << row.location.data();
        const ServiceRequest& last = server.requests.back();
        EXPECT_EQ(last.method + ' ' + last.target, row.last);
        EXPECT_EQ(last.body, last.method == "GET" ? "" : "{\"pwd\":1}");
        EXPECT_EQ(server.requests.size(), row.requests);
    }
    EXPECT_TRUE(other.requests.empty());
}

TEST(NetworkHTTPSession, ARequestCarriesItsOwnHeadersAlone) {
    LoopbackServer server([](QTcpSocket& socket, auto&) { socket.write(httpReply(200, "{}", "Set-Cookie: a=b\r\n")); });
    NetworkHTTPSession session;
    HTTPRequest asked = request(server.url(), "POST");
    asked.body = QByteArray("a\"b\\c\r\nd=\xff@").repeated(1000);
    asked.setHeader("tOKEN", "{\"uid\":\"\\ \xc3\xa9\"}");
    asked.setHeader("X-Empty", "");
    for (int i = 0; i < 2; ++i) {
        ASSERT_TRUE(await(session.send(asked)));
        const ServiceRequest& got = server.requests.back();
        EXPECT_EQ(got.body, asked.body);
        EXPECT_EQ(got.header("Token"), asked.headers.at(0).second);
        EXPECT_EQ(got.header("Content-Type"), "application/json");
        EXPECT_EQ(got.header("Cookie") + got.header("Expect") + got.header("X-Empty"), "");
    }
}

TEST(NetworkHTTPSession, DestructionEndsWhatIsInFlight) {
    LoopbackServer server([](QTcpSocket&, auto&) {});
    auto session = std::make_unique<NetworkHTTPSession>();
    auto first = session->send(request(server.url()));
    auto second = session->send(request(server.url()));
    EXPECT_TRUE(Testing::waitUntil([&server] { return server.requests.size() == 2U; }));
    session.reset();
    EXPECT_EQ(codeOf(await(std::move(first))), Code::cancelled);
    EXPECT_EQ(codeOf(await(std::move(second))), Code::cancelled);
}

TEST(NetworkHTTPSession, GoesThroughTheSystemsProxyAndGoesWithoutItWhenItIsNotFound) {
    LoopbackServer proxy([](QTcpSocket& socket, auto&) { socket.write(httpReply(200, "from the proxy")); });
    auto silent = std::make_unique<LoopbackServer>([](auto&, auto&) {});
    HTTPRequest outside = request(QUrl(QStringLiteral("http://varnel.invalid/path")));

    qputenv("http_proxy", "pac+" + silent->url(QStringLiteral("/proxy.pac")).toEncoded());
    int ticks = 0;
    QTimer ticking;
    QObject::connect(&ticking, &QTimer::timeout, [&ticks] { ++ticks; });
    ticking.start(10);
    QUrl elsewhere = proxy.url(); // this machine too, but no loopback address
    elsewhere.setHost(QStringLiteral("0.0.0.0"));
    HTTPRequest withoutProxy = request(elsewhere);
    withoutProxy.timeout = std::chrono::seconds(3);
    EXPECT_TRUE(sent(withoutProxy).has_value());
    EXPECT_GT(ticks, 10);
    auto session = std::make_unique<NetworkHTTPSession>();
    auto ended = session->send(outside);
    session.reset();
    EXPECT_EQ(codeOf(await(std::move(ended))), Code::cancelled);
    EXPECT_TRUE(SystemProxies::isLookingUp());
    silent.reset();

    qputenv("http_proxy", proxy.url().toEncoded());
    outside.timeout = std::chrono::seconds(10);
    EXPECT_EQ(sent(outside).value().body, "from the proxy");
    EXPECT_EQ(proxy.requests.back().header("Host"), "varnel.invalid");
    qunsetenv("http_proxy");
    EXPECT_TRUE(Testing::waitUntil([] { return !SystemProxies::isLookingUp(); }));
}

TEST(NetworkHTTPSession, ASelfSignedCertificateIsRefused) {
    const QByteArray pem = Testing::contentOf(QStringLiteral(VARNEL_TESTS_FOLDER "/VarnelSEMS/self-signed.pem"));
    QSslConfiguration configuration = QSslConfiguration::defaultConfiguration();
    configuration.setPrivateKey(QSslKey(pem, QSsl::Ec));
    configuration.setLocalCertificate(QSslCertificate(pem));
    QSslServer server;
    server.setSslConfiguration(configuration);
    ASSERT_TRUE(server.listen(QHostAddress::LocalHost));
    const auto response = sent(request(QUrl(QStringLiteral("https://127.0.0.1:%1/").arg(server.serverPort()))));
    ASSERT_EQ(codeOf(response), Code::secureConnectionFailed);
    EXPECT_TRUE(response.error().localizedDescription().contains(QStringLiteral("self-signed")));
}

TEST(CurlReport, WhatTheLoopbackCannotShow) {
    const QNetworkProxy direct(QNetworkProxy::NoProxy);
    const QNetworkProxy proxy(QNetworkProxy::HttpProxy, QStringLiteral("proxy"), 8080);
    const struct {
        const char* text; ///< curl's
        int exitCode;
        QNetworkProxy proxy;
        NetworkState state;
        Code code;
        const char* description = "";
    } rows[] = {
        {"000 000 Could not resolve host: a", 6, direct, NetworkState::available, Code::cannotFindHost},
        {"000 000 Could not resolve host: a", 6, direct, NetworkState::absent, Code::notConnectedToInternet},
        {"000 000 Couldn't connect to server", 7, direct, NetworkState::absent, Code::notConnectedToInternet},
        {"000 000 Couldn't connect to server", 7, proxy, NetworkState::available, Code::unknown,
         "Could not connect to the proxy."},
        {"000 407 CONNECT tunnel failed, response 407", 56, proxy, NetworkState::available, Code::unknown,
         "The proxy refuses to connect to the server (HTTP 407)."},
        {"000 200 Recv failure", 56, proxy, NetworkState::available, Code::networkConnectionLost},
        {"000 000 OpenSSL SSL_connect: SSL_ERROR_SYSCALL in connection to a:443 ", 35, direct, NetworkState::available,
         Code::networkConnectionLost},
        {"000 000 no peer certificate", 35, direct, NetworkState::available, Code::secureConnectionFailed,
         "no peer certificate"},
        {"000 000 A new fault", 999, direct, NetworkState::available, Code::unknown, "A new fault"},
    };
    for (const auto& row : rows) {
        const CurlReport report = parsedCurlReport(QByteArray("\nreport ") + row.text, row.exitCode);
        const URLError error = urlErrorFor(report, row.proxy, row.state);
        EXPECT_EQ(error.code, row.code) << row.text;
        EXPECT_EQ(error.description.toStdString(), row.description) << row.text;
    }
}

} // namespace
} // namespace Varnel
