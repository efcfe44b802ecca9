#pragma once

#include <VarnelSEMS/HTTPSession.h>
#include <VarnelShared/URLError.h>

#include <QCoroTimer>
#include <QStringList>
#include <QTimer>

#include <algorithm>
#include <functional>
#include <vector>

namespace Varnel::Testing {

inline Result<HTTPResponse> reply(int status, const QByteArray& body) {
    return HTTPResponse{status, {}, body};
}

/// Records what it is asked for and answers on a later turn of the event loop; with 404 until told otherwise.
class RecordingHTTPSession final : public HTTPSession {
public:
    using Answer = std::function<Result<HTTPResponse>(const HTTPRequest&)>;

    QCoro::Task<Result<HTTPResponse>> send(HTTPRequest request) override {
        requests.push_back(request);
        mostInFlight = std::max(mostInFlight, ++m_inFlight);
        QTimer turn;
        turn.start(0);
        co_await turn;
        --m_inFlight;
        co_return answer(request);
    }
    void reset() override {}

    /// Answers the requests whose address ends in this text; every other one gets 404.
    void answerOnly(const QString& addressEnd, const QByteArray& body) {
        answer = [=](const HTTPRequest& request) {
            return request.url.toString().endsWith(addressEnd) ? reply(200, body) : reply(404, {});
        };
    }

    /// "POST http://host/path" for each request, in order.
    QStringList lines() const {
        QStringList lines;
        for (const HTTPRequest& request : requests) {
            lines += QString::fromLatin1(request.method) + QLatin1Char(' ') + request.url.toString();
        }
        return lines;
    }

    Answer answer = [](const HTTPRequest&) { return reply(404, {}); };
    std::vector<HTTPRequest> requests;
    int mostInFlight = 0;

private:
    int m_inFlight = 0;
};

/// All that goes out beside the address, one line for each header and one for the body.
inline QByteArray spelled(const HTTPRequest& request) {
    QByteArray text;
    for (const auto& [name, value] : request.headers) {
        text += name + ": " + value + '\n';
    }
    return text + request.body.value_or("no body");
}

} // namespace Varnel::Testing
