#include <Varnel/Linux/OutputBusObject.h>

#include <QDBusAbstractAdaptor>
#include <QDBusMessage>
#include <QDateTime>
#include <QElapsedTimer>

#include <cmath>
#include <limits>
#include <map>
#include <set>
#include <utility>

namespace Varnel {

namespace {

constexpr qint64 restMilliseconds = 1000;

} // namespace

/// The interface itself. A bus has no absent values: an unknown power or energy is no number ("nan"), an unknown time
/// 0, and an unknown text empty.
class OutputAdaptor final : public QDBusAbstractAdaptor {
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "com.varnel.menubar.Output")
    Q_PROPERTY(double PowerKW READ powerKW)
    Q_PROPERTY(double EnergyTodayKWh READ energyTodayKWh)
    Q_PROPERTY(QString Station READ station)
    Q_PROPERTY(qlonglong UpdatedAt READ updatedAt)
    Q_PROPERTY(QString Title READ title)
    Q_PROPERTY(QString LastError READ lastError)
    Q_PROPERTY(bool Connected READ isConnected)

public:
    /// `parent` is the object that is exported and owns this.
    explicit OutputAdaptor(QObject* parent)
        : QDBusAbstractAdaptor(parent) {}

    double powerKW() const { return m_output.powerKW.value_or(std::numeric_limits<double>::quiet_NaN()); }
    double energyTodayKWh() const { return m_output.todayOutputKWh.value_or(std::numeric_limits<double>::quiet_NaN()); }
    QString station() const { return m_output.stationID; }
    /// In seconds since 1970-01-01 00:00:00 UTC.
    qlonglong updatedAt() const {
        return m_output.lastUpdatedAt ? m_output.lastUpdatedAt->toDateTime().toSecsSinceEpoch() : 0;
    }
    QString title() const { return m_output.title; }
    QString lastError() const { return m_output.errorMessage; }
    bool isConnected() const { return m_output.isConnected; }

    void setCommandHandler(std::function<void(OutputBusObject::Command)> handler);

    /// The properties that have become others.
    QVariantMap take(const PublishedOutput& output);

public Q_SLOTS:
    void Refresh() { wish(OutputBusObject::Command::refresh); }
    void ShowOutput() { wish(OutputBusObject::Command::showOutput); }
    void ShowSettings() { wish(OutputBusObject::Command::showSettings); }

private:
    void wish(OutputBusObject::Command command);
    void call(OutputBusObject::Command command);
    QVariantMap properties() const;

    PublishedOutput m_output;
    std::function<void(OutputBusObject::Command)> m_handler;
    std::map<OutputBusObject::Command, QElapsedTimer> m_sinceLast;
    std::set<OutputBusObject::Command> m_wishedEarly; ///< before there was a handler
};

void OutputAdaptor::setCommandHandler(std::function<void(OutputBusObject::Command)> handler) {
    m_handler = std::move(handler);
    for (const OutputBusObject::Command command : std::exchange(m_wishedEarly, {})) {
        call(command);
    }
}

void OutputAdaptor::wish(OutputBusObject::Command command) {
    if (!m_handler) {
        m_wishedEarly.insert(command);
        return;
    }
    QElapsedTimer& sinceLast = m_sinceLast[command];
    if (!sinceLast.isValid() || sinceLast.hasExpired(restMilliseconds)) {
        sinceLast.start();
        call(command);
    }
}

void OutputAdaptor::call(OutputBusObject::Command command) {
    QMetaObject::invokeMethod(this, [this, command] { m_handler(command); }, Qt::QueuedConnection);
}

QVariantMap OutputAdaptor::take(const PublishedOutput& output) {
    const QVariantMap before = properties();
    m_output = output;
    QVariantMap changed = properties();
    changed.removeIf([&before](QVariantMap::iterator entry) {
        const QVariant old = before.value(entry.key());
        // No number equals no number, but has not become another.
        const bool isUnknown = entry->typeId() == QMetaType::Double && std::isnan(entry->toDouble());
        return isUnknown ? std::isnan(old.toDouble()) : *entry == old;
    });
    return changed;
}

QVariantMap OutputAdaptor::properties() const {
    return {{QStringLiteral("PowerKW"), powerKW()},      {QStringLiteral("EnergyTodayKWh"), energyTodayKWh()},
            {QStringLiteral("Station"), station()},      {QStringLiteral("UpdatedAt"), updatedAt()},
            {QStringLiteral("Title"), title()},          {QStringLiteral("LastError"), lastError()},
            {QStringLiteral("Connected"), isConnected()}};
}

OutputBusObject::OutputBusObject(const QDBusConnection& bus)
    : m_adaptor(new OutputAdaptor(&m_object))
    , m_bus(bus) {
    m_bus.registerObject(QString::fromLatin1(path), &m_object);
}

OutputBusObject::~OutputBusObject() = default;

void OutputBusObject::setCommandHandler(std::function<void(Command)> handler) {
    m_adaptor->setCommandHandler(std::move(handler));
}

void OutputBusObject::publish(const PublishedOutput& output) {
    const QVariantMap changed = m_adaptor->take(output);
    if (changed.isEmpty()) {
        return;
    }
    QDBusMessage signal =
        QDBusMessage::createSignal(QString::fromLatin1(path), QStringLiteral("org.freedesktop.DBus.Properties"),
                                   QStringLiteral("PropertiesChanged"));
    signal << QString::fromLatin1(interface) << changed << QStringList();
    m_bus.send(signal);
}

} // namespace Varnel

#include "OutputBusObject.moc"
