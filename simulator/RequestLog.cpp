#include <simulator/RequestLog.h>

#include <VarnelShared/JSON.h>

#include <algorithm>

namespace Varnel::Simulator {

namespace {
QByteArray jsonLine(const ServiceRequest& request) {
    JSON headers = JSON::array();
    for (const auto& [name, value] : request.headers) {
        headers.push_back({name.toStdString(), value.toStdString()});
    }
    const JSON line = {{"time", request.received.toString(Qt::ISODateWithMs).toStdString()},
                       {"method", request.method.toStdString()},
                       {"target", request.target.toStdString()},
                       {"headers", std::move(headers)},
                       {"body", request.body.toStdString()},
                       {"inFlight", request.inFlight}};
    return serializedJSON(line) + '\n';
}
} // namespace

Result<void> RequestLog::writeTo(const QString& path) {
    auto file = std::make_unique<QFile>(path);
    if (!file->open(QIODevice::WriteOnly | QIODevice::Append | QIODevice::Unbuffered) ||
        !file->setPermissions(QFile::ReadOwner | QFile::WriteOwner)) {
        return failure(
            SimulatorError{QStringLiteral("The log file %1 cannot be written: %2").arg(path, file->errorString())});
    }
    m_file = std::move(file);
    return {};
}

std::shared_ptr<void> RequestLog::noteArrival(ServiceRequest request) {
    request.inFlight = ++*m_inFlight;
    m_maximumInFlight = std::max(m_maximumInFlight, request.inFlight);
    if (m_file) {
        m_file->write(jsonLine(request));
    }
    m_requests.push_back(std::move(request));
    return {nullptr, [inFlight = m_inFlight](void*) { --*inFlight; }};
}

QByteArray RequestLog::jsonLines() const {
    QByteArray lines;
    for (const ServiceRequest& request : m_requests) {
        lines += jsonLine(request);
    }
    return lines;
}

void RequestLog::clear() {
    m_requests.clear();
    m_maximumInFlight = *m_inFlight;
}

} // namespace Varnel::Simulator
