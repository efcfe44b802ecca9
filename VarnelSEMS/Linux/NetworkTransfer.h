#pragma once

#include <VarnelSEMS/HTTPSession.h>
#include <VarnelShared/URLError.h>

#include <QNetworkReply>
#include <QObject>

#include <chrono>
#include <memory>

class QNetworkAccessManager;

namespace Varnel {

enum class NetworkState { available, absent };

/// Whether any network beyond the machine itself is up, as the desktop's network service reports it when the
/// application has loaded that, else as the interfaces say.
NetworkState currentNetworkState();

/// The platform's error for a reply that brought no usable HTTP answer. `text` is the reply's own error text, which
/// alone tells some causes apart.
URLError urlErrorFor(QNetworkReply::NetworkError error, const QString& text, NetworkState state);

/// One request on the wire and the reading of its reply. Reads as the bytes arrive, at most `maximumBodySize` of them,
/// and ends at its deadline. Destroying it ends the reply.
class NetworkTransfer {
public:
    static constexpr qsizetype maximumBodySize = qsizetype(8) * 1024 * 1024; ///< of the decoded body

    /// Sends the request; redirects are not followed. The manager must outlive the transfer.
    NetworkTransfer(QNetworkAccessManager& manager, const HTTPRequest& request, std::chrono::milliseconds timeout);
    NetworkTransfer(const NetworkTransfer&) = delete;
    NetworkTransfer& operator=(const NetworkTransfer&) = delete;
    ~NetworkTransfer() = default;

    /// Await this one.
    QNetworkReply* reply() const { return m_reply.get(); }

    /// What the reply brought, once it is finished. A body that was cut short is an error, never a shorter body.
    Result<HTTPResponse> outcome();

private:
    enum class End { byItself, byDeadline, bySize };
    struct Release {
        void operator()(QNetworkReply* reply) const;
    };

    void readAvailable();
    void stop(End reason);

    std::unique_ptr<QNetworkReply, Release> m_reply;
    QByteArray m_body;
    End m_end = End::byItself;
    QObject m_context; // last, so that its connections are gone before the reply is released
};

} // namespace Varnel
