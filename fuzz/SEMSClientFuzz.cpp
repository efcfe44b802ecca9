#include "Fuzz.h"

#include "../tests/Support/HandTurnedTime.h"

#include <VarnelSEMS/SEMSAPIClient.h>

#include <QCoreApplication>

#include <algorithm>

using namespace Varnel;
using Fuzz::require;

// The whole client with a service that gives these bytes for every answer: what it then sends can be sent, goes to no
// host without encryption, and no error tells the password.

namespace {
const QString password = QStringLiteral("Se\"cr&et");

bool isControl(char byte) {
    return static_cast<unsigned char>(byte) < 0x20 || byte == 0x7f;
}

void requireSendable(const HTTPRequest& request) {
    require(isWebURL(request.url) && request.url.scheme() == QLatin1String("https"));
    for (const auto& [name, value] : request.headers) {
        require(std::none_of(name.begin(), name.end(), isControl));
        require(std::none_of(value.begin(), value.end(), isControl));
    }
}

class OneAnswer final : public HTTPSession {
public:
    explicit OneAnswer(HTTPResponse response)
        : m_response(std::move(response)) {}

    QCoro::Task<Result<HTTPResponse>> send(HTTPRequest request) override {
        requireSendable(request);
        co_return m_response;
    }

private:
    HTTPResponse m_response;
};

template <typename T>
void requireQuiet(const Result<T>& result) {
    const QString text = result ? QString() : result.error().localizedDescription();
    require(result || (!text.isEmpty() && !text.contains(password, Qt::CaseInsensitive)));
}

QCoro::Task<void> useWholeClient(std::shared_ptr<SEMSAPIClient> client) {
    const Result<SEMSSession> session = co_await client->signIn(QStringLiteral("me@example.com"), password);
    requireQuiet(session);
    if (!session) {
        co_return;
    }
    require(!session->token.isEmpty());
    const auto size = co_await client->fetchSystemSizeKW(*session, std::nullopt);
    requireQuiet(size);
    const auto reading = co_await client->fetchCurrentPower(*session, std::nullopt);
    requireQuiet(reading);
    const auto series = co_await client->fetchTodayOutputSeries(*session, QStringLiteral("station"));
    requireQuiet(series);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const Testing::HandTurnedTime time;
    constexpr int statuses[] = {200, 200, 200, 401, 429, 302, 503, 100};
    // A first byte that no reply begins with chooses another status and a header.
    const bool hasStatus = size > 0 && data[0] < 8;
    HTTPResponse response{hasStatus ? statuses[data[0]] : 200, {}, Fuzz::bytesOf(data + hasStatus, size - hasStatus)};
    if (hasStatus) {
        response.headers = {{"Retry-After", response.body.left(40)}, {"Date", response.body.mid(40, 40)}};
    }
    OneAnswer http(response);
    useWholeClient(std::make_shared<SEMSAPIClient>(QUrl(QStringLiteral("https://own.example/api/")), http, time));
    return 0;
}
