#pragma once

#include <Varnel/PlatformServices.h>

#include <QObject>

class QDBusMessage;

namespace Varnel {

/// Sleep as logind announces it on the system bus, the network as the desktop's network service reports it. Where
/// either is missing, its handler is never called. Begins a second after its construction; until then the network
/// counts as reachable.
class LinuxSystemEvents final : public QObject, public SystemEvents {
    Q_OBJECT
public:
    LinuxSystemEvents();
    ~LinuxSystemEvents() override;

    bool isNetworkReachable() const override;
    void setNetworkReachableHandler(std::function<void()> handler) override;
    void setResumeHandler(std::function<void()> handler) override;

private Q_SLOTS:
    void onPrepareForSleep(const QDBusMessage& signal);

private:
    void begin();
    void onReachabilityChanged();

    int m_reach = 0; ///< as last reported
    std::function<void()> m_networkReachable;
    std::function<void()> m_resume;
};

} // namespace Varnel
