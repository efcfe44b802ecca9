#pragma once

#include <VarnelSEMS/HTTPSession.h>
#include <VarnelShared/URLError.h>

#include <QNetworkProxy>
#include <QObject>

#include <chrono>
#include <memory>
#include <optional>

class QProcess;

namespace Varnel {

/// One request and its reply, carried by the program curl (7.75 or later) in a process of its own. A name that is never
/// looked up, a connection that is never answered and a reply that never ends are over when that process is killed, and
/// all they took is free again. In this process each of them would leave something behind that nothing ends: threads of
/// the resolver, half a connection that later requests wait for, gigabytes. That was measured with Qt's network access,
/// and much of it with libcurl, which a proxy can keep busy past any deadline.
class CurlTransfer final : public QObject {
    Q_OBJECT

public:
    static constexpr qsizetype maximumBodySize = qsizetype(8) * 1024 * 1024; ///< of the decoded body
    static constexpr qsizetype maximumHeadSize = qsizetype(256) * 1024;      ///< of all heads and the trailer together

    /// Sends the request at once; redirects are not followed. No header may hold a control character.
    CurlTransfer(const HTTPRequest& request, const QNetworkProxy& proxy, std::chrono::milliseconds timeout);

    /// Finishes with `cancelled`, unless it has finished.
    void cancel();

    /// What the reply brought, once it is finished. A body that was cut short is an error, never a shorter body.
    Result<HTTPResponse> outcome();

Q_SIGNALS:
    /// Once, and not before the constructor has returned.
    void finished();

private:
    struct Release {
        void operator()(QProcess* process) const;
    };

    void connectProcess();
    void readBody();
    void readReport();
    void finish(std::optional<URLError> failure);

    QUrl m_url;
    QNetworkProxy m_proxy;
    std::unique_ptr<QProcess, Release> m_process; ///< null once finished
    QByteArray m_body;
    QByteArray m_report;
    int m_exitCode = 0;
    std::optional<URLError> m_failure;
};

} // namespace Varnel
