#pragma once

#include <QDBusMessage>
#include <QObject>

#include <vector>

namespace Varnel::Testing {

/// Records the signals of the bus it is connected to.
class SignalSpy final : public QObject {
    Q_OBJECT

public:
    std::vector<QDBusMessage> messages;

    int count(const QString& member) const {
        int found = 0;
        for (const QDBusMessage& message : messages) {
            found += message.member() == member ? 1 : 0;
        }
        return found;
    }

public Q_SLOTS:
    void receive(const QDBusMessage& message) { messages.push_back(message); }
};

} // namespace Varnel::Testing
