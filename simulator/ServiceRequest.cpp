#include <simulator/ServiceRequest.h>

namespace Varnel::Simulator {

QByteArray ServiceRequest::path() const {
    const qsizetype query = target.indexOf('?');
    return query < 0 ? target : target.first(query);
}

QByteArray ServiceRequest::header(const QByteArray& name) const {
    for (const auto& [key, value] : headers) {
        if (key.compare(name, Qt::CaseInsensitive) == 0) {
            return value;
        }
    }
    return {};
}

} // namespace Varnel::Simulator
