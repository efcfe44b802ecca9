#include <VarnelSEMS/SEMSReply.h>

#include <VarnelSEMS/SEMSAPIError.h>
#include <VarnelSEMS/SEMSJSONSearch.h>
#include <VarnelShared/Logging.h>

#include <QCoreApplication>
#include <QDateTime>
#include <QStringDecoder>

#include <algorithm>
#include <chrono>

namespace Varnel {

namespace {
QString textOrNothing(const QByteArray& bytes) {
    QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
    const QString text = decoder(bytes);
    return decoder.hasError() ? QString() : text;
}

/// A date of HTTP, which is always in GMT; invalid for any other text.
QDateTime httpDate(const QByteArray& text) {
    return QDateTime::fromString(QString::fromLatin1(text).replace(QLatin1String(" GMT"), QLatin1String(" +0000")),
                                 Qt::RFC2822Date);
}

/// RFC 9110, 10.2.3: a number of seconds or a date. None for anything else, and for a date that has passed.
std::optional<std::chrono::seconds> retryAfter(const HTTPResponse& response, Timestamp now) {
    const QByteArray text = response.header("Retry-After").value_or(QByteArray()).trimmed();
    bool isNumber = false;
    qint64 seconds = text.toLongLong(&isNumber);
    if (const QDateTime date = httpDate(text); date.isValid()) {
        // By the service's own clock: that of the machine may be hours off.
        const QDateTime sent = httpDate(response.header("Date").value_or(QByteArray()));
        seconds = (sent.isValid() ? sent : now.toDateTime()).secsTo(date);
    } else if (!isNumber) {
        return std::nullopt;
    }
    constexpr std::chrono::seconds day = std::chrono::hours(24);
    return seconds < 0 ? std::nullopt : std::optional(std::min(std::chrono::seconds(seconds), day));
}

/// A blank message is none: a failure without a reason would show as no failure at all.
Failure envelopeFailure(const JSON& reply, const QString& fallback) {
    for (const char* key : {"msg", "message", "error_message"}) {
        const auto message = SEMSJSONSearch::firstString(reply, {QString::fromLatin1(key)});
        if (message && !message->isEmpty()) {
            return failure(SEMSAPIError::api(*message));
        }
    }
    return failure(SEMSAPIError::api(fallback));
}

/// A number as text.
std::optional<QString> envelopeCode(const JSON& reply) {
    return SEMSJSONSearch::firstString(reply, {QStringLiteral("code"), QStringLiteral("status")});
}

/// Code 1 is a success: one generation of the service counts that way. No code at all is one too.
bool isSuccessCode(const JSON& reply) {
    const auto code = envelopeCode(reply);
    static const QStringList accepted{QStringLiteral("0"),  QStringLiteral("1"),       QStringLiteral("200"),
                                      QStringLiteral("ok"), QStringLiteral("success"), QStringLiteral("true")};
    return !code || accepted.contains(code->toLower());
}

/// The service's own codes, which come as HTTP 200. The message beside them is in any language and tells nothing.
bool tellsExpiredSession(const JSON& reply) {
    const auto code = envelopeCode(reply);
    return code == QLatin1String("100001") || code == QLatin1String("100002");
}
} // namespace

Result<void> validateEnvelope(const JSON& reply) {
    if (!reply.is_object()) {
        return {};
    }
    const QString requestFailed = QCoreApplication::translate("SEMSAPIError", "SEMS API request failed.");
    const QStringList errorKeys{QStringLiteral("hasError"), QStringLiteral("error")};
    if (SEMSJSONSearch::firstBool(reply, errorKeys).value_or(false)) {
        return envelopeFailure(reply, QCoreApplication::translate("SEMSAPIError", "SEMS API error."));
    }
    const QStringList successKeys{QStringLiteral("success"), QStringLiteral("isSuccess")};
    if (!SEMSJSONSearch::firstBool(reply, successKeys).value_or(true)) {
        return envelopeFailure(reply, requestFailed);
    }
    if (!isSuccessCode(reply)) {
        return envelopeFailure(reply, requestFailed);
    }
    return {};
}

Result<JSON> judgedReply(const HTTPResponse& response, const SEMSRequest& request, Timestamp now) {
    if (!response.statusCode) {
        return failure(SEMSAPIError::invalidResponse());
    }
    const int status = *response.statusCode;
    if (status == 401 || status == 403) {
        return failure(SEMSAPIError::authenticationFailed());
    }
    if (status < 200 || status > 299) {
        const bool mayAskToWait = status == 429 || status == 503;
        return failure(SEMSAPIError::networkStatus(status, textOrNothing(response.body),
                                                   mayAskToWait ? retryAfter(response, now) : std::nullopt));
    }
    auto reply = parseJSON(response.body);
    if (!reply) {
        qCDebug(lcSEMSAPI, "Reply is no JSON: %s", qUtf8Printable(reply.error().localizedDescription()));
        return failure(JSONError{QStringLiteral("The answer could not be read. It may have come from the login page of "
                                                "a network instead of the service.")});
    }
    if (const auto valid = validateEnvelope(*reply); !valid) {
        const bool isExpired = request.authSession && tellsExpiredSession(*reply);
        return failure(isExpired ? Error(SEMSAPIError::authenticationFailed()) : valid.error());
    }
    return reply;
}

} // namespace Varnel
