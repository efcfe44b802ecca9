#include <simulator/Parameters.h>

#include <simulator/SimulatorError.h>

#include <VarnelShared/JSON.h>

namespace Varnel::Simulator {

namespace {
using Values = std::map<QString, QString>;

QString decoded(QByteArray text) {
    return QString::fromUtf8(QByteArray::fromPercentEncoding(text.replace('+', ' ')));
}

/// Pairs that are there already stay.
void addPairs(Values& values, const QByteArray& pairs) {
    for (const QByteArray& pair : pairs.split('&')) {
        const qsizetype equals = pair.indexOf('=');
        if (equals > 0) {
            values.try_emplace(decoded(pair.first(equals)), decoded(pair.mid(equals + 1)));
        }
    }
}

Result<void> addMembers(Values& values, const QByteArray& body) {
    const Result<JSON> json = parseJSON(body);
    if (!json) {
        return failure(json.error());
    }
    if (!json->is_object()) {
        return failure(SimulatorError{QStringLiteral("The body is not a JSON object.")});
    }
    for (const auto& [key, value] : json->items()) {
        const QString text = value.is_string() ? textOf(value) : QString::fromUtf8(serializedJSON(value));
        values.try_emplace(QString::fromStdString(key), text);
    }
    return {};
}

Result<void> addBody(Values& values, const ServiceRequest& request) {
    const QByteArray type = request.header("Content-Type").toLower();
    if (type.startsWith("application/json")) {
        return addMembers(values, request.body);
    }
    if (type.startsWith("application/x-www-form-urlencoded")) {
        addPairs(values, request.body);
        return {};
    }
    return failure(SimulatorError{QStringLiteral("The body is neither JSON nor a form.")});
}
} // namespace

Result<Parameters> Parameters::of(const ServiceRequest& request) {
    Parameters parameters;
    if (!request.body.isEmpty()) {
        if (const Result<void> added = addBody(parameters.m_values, request); !added) {
            return failure(added.error());
        }
    }
    addPairs(parameters.m_values, request.target.mid(request.path().size() + 1));
    return parameters;
}

QString Parameters::first(const QStringList& names) const {
    for (const QString& name : names) {
        if (const auto found = m_values.find(name); found != m_values.end() && !found->second.isEmpty()) {
            return found->second;
        }
    }
    return {};
}

int Parameters::number(const QString& name, int fallback) const {
    bool isNumber = false;
    const int value = first({name}).toInt(&isNumber);
    return isNumber ? value : fallback;
}

} // namespace Varnel::Simulator
