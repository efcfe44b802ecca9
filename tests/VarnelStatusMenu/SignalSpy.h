#pragma once

#include <QDBusMessage>
#include <QObject>
#include <QStringList>

#include <string>
#include <vector>

namespace Varnel::Testing {

/// Records the signals of the bus it is connected to.
class SignalSpy final : public QObject {
    Q_OBJECT

public:
    std::vector<QDBusMessage> messages;

    /// The names of what was received, in order.
    std::string members() const {
        QStringList names;
        for (const QDBusMessage& message : messages) {
            names << message.member();
        }
        return names.join(u' ').toStdString();
    }

public Q_SLOTS:
    void receive(const QDBusMessage& message) { messages.push_back(message); }
};

} // namespace Varnel::Testing
