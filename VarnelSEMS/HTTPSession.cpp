#include <VarnelSEMS/HTTPSession.h>

#include <algorithm>

namespace Varnel {

namespace {
auto namedLike(const QByteArray& name) {
    return [&name](const auto& header) { return header.first.compare(name, Qt::CaseInsensitive) == 0; };
}
} // namespace

void HTTPRequest::setHeader(const QByteArray& name, const QByteArray& value) {
    const auto existing = std::find_if(headers.begin(), headers.end(), namedLike(name));
    if (existing == headers.end()) {
        headers.emplace_back(name, value);
    } else {
        *existing = {name, value};
    }
}

QByteArray HTTPRequest::header(const QByteArray& name) const {
    const auto existing = std::find_if(headers.begin(), headers.end(), namedLike(name));
    return existing == headers.end() ? QByteArray() : existing->second;
}

} // namespace Varnel
