#pragma once

#include <simulator/Reply.h>

#include <QObject>
#include <QTimer>

#include <memory>

class QTcpSocket;

namespace Varnel::Simulator {

/// Sends one reply over a connection in the manner it asks for, from the event loop. Belongs to the connection and
/// ends with the reply's last byte or with the connection, whichever comes first.
class ReplyTransmission final : public QObject {
public:
    /// `inFlight` is let go when the transmission ends.
    static void start(QTcpSocket* socket, const Reply& reply, std::shared_ptr<void> inFlight);

private:
    ReplyTransmission(QTcpSocket* socket, const Reply& reply, std::shared_ptr<void> inFlight);

    void begin();
    void writePiece(qsizetype size);
    void onBytesWritten();

    QTcpSocket* m_socket; ///< the parent
    Transmission m_transmission;
    QByteArray m_unsent;
    QTimer m_timer;
    std::shared_ptr<void> m_inFlight;
};

} // namespace Varnel::Simulator
