#pragma once

#include <simulator/ServiceRequest.h>

#include <VarnelShared/Result.h>

#include <QStringList>

#include <map>

namespace Varnel::Simulator {

/// What a request passes to the service, whether in a JSON body, a form body or the query.
class Parameters {
public:
    /// A body counts before the query. Fails with the reason when the body is not what its Content-Type says.
    static Result<Parameters> of(const ServiceRequest& request);

    /// The first of these names that has a text which is not empty; empty when none has.
    QString first(const QStringList& names) const;

    /// The number under this name, or `fallback` when there is none.
    int number(const QString& name, int fallback) const;

private:
    std::map<QString, QString> m_values;
};

} // namespace Varnel::Simulator
