#include <VarnelSEMS/HTTPSession.h>

#include <algorithm>

namespace Varnel {

void HTTPRequest::setHeader(const QByteArray& name, const QByteArray& value) {
    const auto existing = std::find_if(headers.begin(), headers.end(), [&name](const auto& header) {
        return header.first.compare(name, Qt::CaseInsensitive) == 0;
    });
    if (existing == headers.end()) {
        headers.emplace_back(name, value);
    } else {
        *existing = {name, value};
    }
}

} // namespace Varnel
