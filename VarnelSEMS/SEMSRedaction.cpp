#include <VarnelSEMS/SEMSRedaction.h>

#include <VarnelSEMS/SEMSAPIError.h>

#include <algorithm>

namespace Varnel {

namespace {
constexpr qsizetype shortestSecret = 4;

/// In characters. What a person is shown of it is a line; a body may have millions.
constexpr qsizetype longestMessage = 4000;

/// As it is, as a form holds it, as a JSON text holds it (without the quotation marks around it), and as a page shows
/// it, where the apostrophe has an escape of its own or none.
void addInAllEncodings(QStringList& secrets, const QString& secret) {
    const QString inJSON = QString::fromUtf8(serializedJSON(JSON(toUtf8(secret))));
    const QString inPage = secret.toHtmlEscaped();
    for (const QString& text : {secret, QString::fromLatin1(formURLEncoded(secret)), inJSON.mid(1, inJSON.size() - 2),
                                inPage, QString(inPage).replace(QLatin1Char('\''), QLatin1String("&#39;"))}) {
        if (text.size() >= shortestSecret && !secrets.contains(text)) {
            secrets += text;
        }
    }
}

void redact(QString& text, const QStringList& secrets) {
    for (const QString& secret : secrets) {
        text.replace(secret, QStringLiteral("[…]"), Qt::CaseInsensitive);
    }
    text.truncate(longestMessage); // now: a secret that was cut in two would not be found
}
} // namespace

QStringList secretsOf(const SEMSRequest& request, const QStringList& more) {
    QStringList secrets = more;
    if (request.authSession) {
        addInAllEncodings(secrets, request.authSession->legacyTokenHeader.value_or(QString()));
        addInAllEncodings(secrets, request.authSession->token);
    }
    if (request.body) {
        for (const char* name : {"account", "pwd"}) {
            addInAllEncodings(secrets, textOf(request.body->value(name, JSON())));
        }
    }
    // The longest first: one that holds another must not be broken up by it.
    std::sort(secrets.begin(), secrets.end(),
              [](const QString& one, const QString& other) { return one.size() > other.size(); });
    return secrets;
}

Error withoutSecrets(const Error& error, const QStringList& secrets) {
    const auto* known = error.as<SEMSAPIError>();
    if (known == nullptr) {
        return error;
    }
    SEMSAPIError clean = *known;
    if (auto* status = std::get_if<SEMSAPIError::NetworkStatus>(&clean.kind)) {
        redact(status->body, secrets);
    } else if (auto* api = std::get_if<SEMSAPIError::API>(&clean.kind)) {
        redact(api->message, secrets);
    }
    return clean;
}

} // namespace Varnel
