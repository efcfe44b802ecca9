#include <VarnelStatusMenu/Linux/ItemProtocolStatusItem.h>

#include <VarnelShared/Logging.h>

#include <QDBusError>
#include <QDBusPendingCallWatcher>

#include <utility>

namespace Varnel {

namespace {

/// Some panels accept an item and drop it within a second, without a word to the item.
constexpr Seconds listingTime{3};

constexpr int mostLosses = 1;

/// A panel that is busy with a login or an unlock does not tell at once whether it lists the item.
constexpr int mostListingChecks = 5;

} // namespace

ItemProtocolStatusItem::ItemProtocolStatusItem(const QDBusConnection& connection, const QString& identifier,
                                               TimerFactory& timers, const StatusItemHandlers& handlers)
    : m_timers(timers)
    , m_watcher(connection)
    , m_exported(connection, identifier, handlers) {
    connect(&m_watcher, &ItemWatcher::changed, this, &ItemProtocolStatusItem::onWatcherChanged);
    connect(&m_watcher, &ItemWatcher::itemLost, this, &ItemProtocolStatusItem::onLost);
}

ItemProtocolStatusItem::~ItemProtocolStatusItem() = default;

StatusItemBackEnd::Availability ItemProtocolStatusItem::availability() const {
    return m_isRefused ? Availability::unavailable : m_watcher.availability();
}

void ItemProtocolStatusItem::setAvailabilityHandler(std::function<void()> changed) {
    m_availabilityChanged = std::move(changed);
}

void ItemProtocolStatusItem::setContent(const StatusItemContent& content) {
    m_exported.setContent(content);
}

void ItemProtocolStatusItem::setShown(bool isShown) {
    m_isShown = isShown;
    registerWithWatcher();
}

void ItemProtocolStatusItem::onWatcherChanged() {
    if (m_watcher.owner() != m_registeredWith) {
        // Also where the same process is the watcher again later: GNOME's is away while the screen is locked.
        m_registeredWith.clear();
        m_isRefused = false;
        m_listingTimer.reset();
    }
    registerWithWatcher();
    if (m_availabilityChanged) {
        m_availabilityChanged();
    }
}

void ItemProtocolStatusItem::registerWithWatcher() {
    if (!m_isShown || m_watcher.availability() != Availability::available || m_registeredWith == m_watcher.owner()) {
        return;
    }
    m_registeredWith = m_watcher.owner();
    m_losses = 0;
    m_exported.setPanel(m_watcher.panel());
    sendRegistration();
}

void ItemProtocolStatusItem::sendRegistration() {
    m_listingTimer.reset();
    auto* pending = new QDBusPendingCallWatcher(m_watcher.registerItem(), this);
    connect(pending, &QDBusPendingCallWatcher::finished, this,
            [this, owner = m_watcher.owner()](QDBusPendingCallWatcher* finished) {
                finished->deleteLater();
                if (owner == m_watcher.owner()) {
                    onRegistered(finished->error());
                }
            });
}

void ItemProtocolStatusItem::onRegistered(const QDBusError& error) {
    if (error.isValid() && error.type() != QDBusError::NoReply) {
        qCWarning(lcApp, "The panel refused the status item: %s", qPrintable(error.message()));
        takeForNone();
        return;
    }
    if (!error.isValid()) {
        qCInfo(lcApp, "Status item registered with the panel");
    }
    // A busy panel reads the registration later; one that died is replaced by the next.
    checkListedLater(mostListingChecks);
}

void ItemProtocolStatusItem::checkListedLater(int mostChecks) {
    m_listingTimer = m_timers.schedule(listingTime, [this, mostChecks] {
        m_watcher.askWhetherListed([this, mostChecks](std::optional<bool> isListed) {
            if (isListed.value_or(false)) {
                m_losses = 0;
                m_exported.repeat();
            } else if (isListed) {
                onLost();
            } else if (mostChecks > 1) {
                checkListedLater(mostChecks - 1);
            }
        });
    });
}

void ItemProtocolStatusItem::onLost() {
    if (m_registeredWith != m_watcher.owner() || m_isRefused) {
        return;
    }
    if (m_losses++ < mostLosses) {
        qCInfo(lcApp, "The panel has let the status item go: it is registered again");
        sendRegistration();
    } else {
        qCWarning(lcApp, "The panel does not keep the status item");
        takeForNone();
    }
}

void ItemProtocolStatusItem::takeForNone() {
    m_listingTimer.reset();
    m_isRefused = true;
    if (m_availabilityChanged) {
        m_availabilityChanged();
    }
}

} // namespace Varnel
