#include <simulator/Fault.h>

namespace Varnel::Simulator {

namespace {
constexpr qsizetype deepNesting = 100000;
constexpr qsizetype largeBody = qsizetype(9) * 1024 * 1024;

Reply failureReply(const Fault& fault) {
    const std::string message = fault.text.toStdString();
    if (fault.code.isEmpty()) {
        return breakdown(message);
    }
    const Result<JSON> number = parseJSON(fault.code.toUtf8());
    const bool isNumber = number && number->is_number_integer();
    return refusal(isNumber ? *number : JSON(fault.code.toStdString()), message);
}

Reply statusReply(const Fault& fault) {
    Reply reply{
        .status = fault.status.value_or(500), .contentType = "text/plain; charset=utf-8", .body = fault.text.toUtf8()};
    if (!fault.retryAfter.isEmpty()) {
        reply.headers.emplace_back("Retry-After", fault.retryAfter.toUtf8());
    }
    return reply;
}

Reply redirection(const Fault& fault) {
    Reply reply;
    reply.status = fault.status.value_or(302);
    reply.headers.emplace_back("Location", fault.text.toUtf8());
    return reply;
}

Reply replaced(const Fault& fault, Reply reply) {
    switch (fault.kind) {
    case FaultKind::status:
        return statusReply(fault);
    case FaultKind::redirect:
        return redirection(fault);
    case FaultKind::envelope:
        return failureReply(fault);
    case FaultKind::emptyList:
        return success({{"record", 0}, {"list", JSON::array()}});
    case FaultKind::emptyData:
        return success(JSON::object());
    case FaultKind::wrongShape:
        return jsonReply(JSON::array({JSON::array({1, 2, 3}), "text", nullptr}));
    case FaultKind::notJSON:
        return {.body = "{\"hasError\":false,\"code\":0,\"data\":"};
    case FaultKind::html:
        return {.contentType = "text/html; charset=utf-8", .body = replyFile("login-page.html")};
    case FaultKind::tooDeep:
        return {.body = QByteArray(deepNesting, '[') + QByteArray(deepNesting, ']')};
    case FaultKind::tooLarge:
        return {.body = "{\"data\":\"" + QByteArray(largeBody, 'x') + "\"}"};
    case FaultKind::delay:
    case FaultKind::drip:
    case FaultKind::cut:
    case FaultKind::close:
    case FaultKind::silence:
    case FaultKind::refuse:
        break;
    }
    return reply;
}

Transmission transmission(const Fault& fault) {
    switch (fault.kind) {
    case FaultKind::drip:
        return {Transmission::Manner::dripped, fault.delay, fault.bytesPerSecond};
    case FaultKind::cut:
        return {Transmission::Manner::cutInHalf, fault.delay};
    case FaultKind::close:
    case FaultKind::refuse: // by a port that is still open
        return {Transmission::Manner::closed, fault.delay};
    case FaultKind::silence:
        return {Transmission::Manner::withheld, fault.delay};
    case FaultKind::delay:
    case FaultKind::status:
    case FaultKind::redirect:
    case FaultKind::envelope:
    case FaultKind::emptyList:
    case FaultKind::emptyData:
    case FaultKind::wrongShape:
    case FaultKind::notJSON:
    case FaultKind::html:
    case FaultKind::tooDeep:
    case FaultKind::tooLarge:
        break;
    }
    return {Transmission::Manner::whole, fault.delay};
}
} // namespace

bool Fault::holdsAt(QTime timeOfDay) const {
    if (!from.isValid() || !to.isValid()) {
        return true;
    }
    return from <= to ? from <= timeOfDay && timeOfDay < to : from <= timeOfDay || timeOfDay < to;
}

bool Fault::matches(const ServiceRequest& request) const {
    return request.matches(path) && (method.isEmpty() || method.toUtf8() == request.method) &&
           QString::fromUtf8(request.header("Content-Type")).contains(contentType, Qt::CaseInsensitive);
}

std::optional<Fault> takeFault(std::vector<Fault>& faults, const ServiceRequest& request, QTime timeOfDay) {
    for (auto fault = faults.begin(); fault != faults.end(); ++fault) {
        if (fault->count.value_or(1) <= 0 || !fault->holdsAt(timeOfDay) || !fault->matches(request)) {
            continue;
        }
        Fault taken = *fault;
        if (fault->count && --*fault->count <= 0) {
            faults.erase(fault);
        }
        return taken;
    }
    return std::nullopt;
}

bool keepsReply(FaultKind kind) {
    return kind == FaultKind::delay || kind == FaultKind::drip || kind == FaultKind::cut;
}

Reply disturbed(const Fault& fault, Reply reply) {
    Reply result = replaced(fault, std::move(reply));
    result.transmission = transmission(fault);
    return result;
}

} // namespace Varnel::Simulator
