#pragma once

#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <QVariantMap>

#include <functional>

namespace Varnel {

/// One instance per session: whoever owns the application's name on the session bus is the instance. Later starts ask
/// it to show itself through the freedesktop application interface.
class SingleInstance final : public QObject, protected QDBusContext {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.freedesktop.Application")
public:
    enum class Role {
        first, ///< this process is the instance; also where there is no session bus, or the former one has just ended
        later, ///< another one is, and was asked to show itself
    };

    explicit SingleInstance(const QString& busName);
    ~SingleInstance() override;

    /// Decides the role. To be called once, before anything else is built; waits for the bus daemon only, and for the
    /// other instance at most three seconds.
    Role claim();

    /// Called each time a later start asks this instance to show itself. Whoever asks before that has started it.
    void setActivationHandler(std::function<void()> handler);

    /// Called with the name of each action of the desktop entry that is chosen, also with those chosen before; false
    /// where there is no such action, which the caller is then told.
    void setActionHandler(std::function<bool(const QString& action)> handler);

public Q_SLOTS:
    Q_SCRIPTABLE void Activate(const QVariantMap& platformData);
    Q_SCRIPTABLE void Open(const QStringList& uris, const QVariantMap& platformData);
    Q_SCRIPTABLE void ActivateAction(const QString& action, const QVariantList& parameters,
                                     const QVariantMap& platformData);

private:
    QString objectPath() const;
    bool askOtherInstance() const; ///< whether it has answered

    QString m_busName;
    std::function<void()> m_activate;
    QStringList m_pendingActions; ///< chosen before there was a handler
    std::function<bool(const QString&)> m_act;
};

} // namespace Varnel
