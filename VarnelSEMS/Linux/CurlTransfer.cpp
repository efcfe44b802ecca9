#include <VarnelSEMS/Linux/CurlTransfer.h>

#include <VarnelSEMS/Linux/CurlReport.h>
#include <VarnelSEMS/Linux/SystemProxies.h>

#include <QCoreApplication>
#include <QProcess>
#include <QTimer>

#include <utility>

#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

namespace Varnel {

namespace {
/// A line of curl's configuration, which goes through a pipe: the arguments of a process are there for all to read.
QByteArray option(const char* name, QByteArray value) {
    Q_ASSERT(!value.contains('\0'));
    value.replace('\\', "\\\\").replace('"', "\\\"").replace('\n', "\\n").replace('\r', "\\r");
    return QByteArray(name) + " = \"" + value + "\"\n";
}

/// The environment's proxies never count: they are among the system's, and those were asked.
QByteArray proxyOptions(const QNetworkProxy& proxy) {
    if (proxy.type() == QNetworkProxy::NoProxy) {
        return option("noproxy", "*");
    }
    QUrl address;
    address.setScheme(proxy.type() == QNetworkProxy::Socks5Proxy ? QStringLiteral("socks5h") : QStringLiteral("http"));
    address.setHost(proxy.hostName());
    address.setPort(proxy.port());
    address.setUserName(proxy.user());
    address.setPassword(proxy.password());
    return option("noproxy", "") + option("proxy", address.toEncoded());
}

QByteArray requestOptions(const HTTPRequest& request) {
    QByteArray options = option("url", request.url.toEncoded(QUrl::RemoveFragment)) +
                         option("request", request.method) +
                         option("user-agent", "Mozilla/5.0") + // gateways turn programs away that name themselves
                         option("header", "Expect:") + option("header", "Content-Type:"); // without these two
    for (const auto& [name, value] : request.headers) {
        options += option("header", value.isEmpty() ? name + ';' : name + ": " + value);
    }
    if (request.body || request.method != "GET") {
        options += option("data-raw", request.body.value_or(QByteArray()));
    }
    return options;
}

QByteArray configuration(const HTTPRequest& request, const QNetworkProxy& proxy, std::chrono::milliseconds timeout) {
    const auto lastResort = timeout / std::chrono::seconds(1) + 2; // for the case that this process is gone first
    return "silent\ngloboff\npath-as-is\nhttp1.1\ncompressed\nsuppress-connect-headers\n" +
           option("proto", "=http,https") + option("dump-header", "/dev/stderr") +
           option("write-out", QByteArray("%{stderr}") + curlReportFormat) +
           option("max-time", QByteArray::number(static_cast<qlonglong>(lastResort))) + proxyOptions(proxy) +
           requestOptions(request);
}

/// In the new process, before curl, which takes a tenth of this memory. What its core would hold is secret. Through a
/// pipe of the usual size, a large body would take a turn of both processes for every 64 KB.
void prepareProcess() {
    constexpr int pipeSize = 1024 * 1024;
    constexpr rlim_t memory = rlim_t(64) * 1024 * 1024;
    const rlimit data{memory, memory};
    const rlimit core{0, 0};
    setrlimit(RLIMIT_DATA, &data);
    setrlimit(RLIMIT_CORE, &core);
    fcntl(STDOUT_FILENO, F_SETPIPE_SZ, pipeSize);
}
} // namespace

CurlTransfer::CurlTransfer(const HTTPRequest& request, const QNetworkProxy& proxy, std::chrono::milliseconds timeout)
    : m_url(request.url)
    , m_proxy(proxy)
    , m_process(new QProcess) {
    connectProcess();
    auto environment = QProcessEnvironment::systemEnvironment();
    environment.insert(QStringLiteral("LC_ALL"), QStringLiteral("C")); // some messages are told apart by their text
    m_process->setProcessEnvironment(environment);
    m_process->setChildProcessModifier(prepareProcess);
    m_process->start(QStringLiteral("curl"), {QStringLiteral("-q"), QStringLiteral("--config"), QStringLiteral("-")});
    m_process->write(configuration(request, proxy, timeout));
    m_process->closeWriteChannel();
    // curl looks at its own clock now and then only, and under some replies never.
    QTimer::singleShot(timeout, Qt::PreciseTimer, this, [this] { finish(URLError{URLError::Code::timedOut, {}}); });
}

void CurlTransfer::connectProcess() {
    connect(m_process.get(), &QProcess::readyReadStandardOutput, this, &CurlTransfer::readBody);
    connect(m_process.get(), &QProcess::readyReadStandardError, this, &CurlTransfer::readReport);
    connect(m_process.get(), &QProcess::finished, this, [this](int exitCode, QProcess::ExitStatus status) {
        m_exitCode = status == QProcess::NormalExit ? exitCode : -1;
        finish(std::nullopt);
    });
    const auto onError = [this](QProcess::ProcessError error) {
        if (error == QProcess::FailedToStart) {
            finish(URLError{URLError::Code::unknown,
                            QCoreApplication::translate("URLError", "The program \"curl\" could not be started.")});
        }
    };
    connect(m_process.get(), &QProcess::errorOccurred, this, onError, Qt::QueuedConnection);
}

/// Nothing waits for a process to end, not even for one that was killed.
void CurlTransfer::Release::operator()(QProcess* process) const {
    if (process->state() == QProcess::NotRunning) {
        process->deleteLater();
    } else {
        connect(process, &QProcess::finished, process, &QObject::deleteLater);
        process->kill();
    }
}

void CurlTransfer::cancel() {
    finish(URLError{URLError::Code::cancelled, {}});
}

void CurlTransfer::readBody() {
    m_body += m_process->readAllStandardOutput();
    if (m_body.size() > maximumBodySize) {
        finish(URLError{URLError::Code::dataTooLarge, {}});
    }
}

void CurlTransfer::readReport() {
    m_report += m_process->readAllStandardError();
    if (m_report.size() > maximumHeadSize) {
        finish(URLError{URLError::Code::dataTooLarge, {}});
    }
}

/// Whoever awaits this one may destroy it: nothing follows the signal.
void CurlTransfer::finish(std::optional<URLError> failure) {
    if (!m_process) {
        return;
    }
    m_failure = std::move(failure);
    m_process->disconnect(this);
    m_process.reset();
    Q_EMIT finished();
}

Result<HTTPResponse> CurlTransfer::outcome() {
    if (m_failure) {
        return failure(*m_failure);
    }
    CurlReport report = parsedCurlReport(m_report, m_exitCode);
    if (report.exitCode != 0) {
        const bool isLocal = SystemProxies::isLoopback(m_url.host());
        return failure(urlErrorFor(report, m_proxy, isLocal ? NetworkState::available : currentNetworkState()));
    }
    return HTTPResponse{report.status, std::move(report.headers), std::move(m_body)};
}

} // namespace Varnel
