#include <VarnelStatusMenu/Linux/SessionStatusItem.h>

#include <VarnelShared/Logging.h>
#include <VarnelStatusMenu/Linux/ItemProtocolStatusItem.h>
#include <VarnelStatusMenu/Linux/PanelFreeArea.h>
#include <VarnelStatusMenu/Linux/ScreenLock.h>
#include <VarnelStatusMenu/Linux/XEmbedStatusItem.h>

#include <utility>

namespace Varnel {

namespace {

/// How long the session may be without a panel before the window opens.
constexpr Seconds patience{10};

/// While the screen is locked nobody misses a panel.
constexpr Seconds lockedPatience{60};

/// Many panels are of both kinds, and a starting one brings up its legacy tray first.
constexpr Seconds settlingTime{1};

SessionStatusItem::BackEnds sessionBackEnds(const QString& identifier, TimerFactory& timers,
                                            const StatusItemHandlers& handlers) {
    SessionStatusItem::BackEnds backEnds;
    backEnds.push_back(
        std::make_unique<ItemProtocolStatusItem>(QDBusConnection::sessionBus(), identifier, timers, handlers));
    backEnds.push_back(std::make_unique<XEmbedStatusItem>(handlers));
    return backEnds;
}

} // namespace

SessionStatusItem::SessionStatusItem(const QString& identifier, TimerFactory& timers)
    : SessionStatusItem(
          [&](const StatusItemHandlers& handlers) { return sessionBackEnds(identifier, timers, handlers); },
          [lock = std::make_shared<ScreenLock>(QDBusConnection::sessionBus())](auto handle) {
              lock->ask(std::move(handle));
          },
          timers) {}

SessionStatusItem::SessionStatusItem(const std::function<BackEnds(const StatusItemHandlers&)>& makeBackEnds,
                                     AskWhetherLocked askWhetherLocked, TimerFactory& timers)
    : m_timers(timers)
    , m_askWhetherLocked(std::move(askWhetherLocked))
    , m_presenter(panelFreeArea)
    , m_backEnds(makeBackEnds(handlers())) {
    m_presenter.setCommandHandler(handlers().choose);
    m_presenter.setWindowClosedHandler([this] { keepInTaskbar(); });
    for (const auto& backEnd : m_backEnds) {
        backEnd->setAvailabilityHandler([this] { choose(); });
    }
    awaitPanel();
    choose();
}

SessionStatusItem::~SessionStatusItem() = default;

StatusItemHandlers SessionStatusItem::handlers() {
    return {[this](std::optional<QPoint> item) { m_presenter.toggleMenu(item); },
            [this](StatusMenuCommand command) {
                if (m_commandHandler) {
                    m_commandHandler(command);
                }
            },
            [this] { showWindow(); }};
}

void SessionStatusItem::show(const StatusItemContent& content) {
    m_presenter.setContent(content);
    for (const auto& backEnd : m_backEnds) {
        backEnd->setContent(content);
    }
}

void SessionStatusItem::setCommandHandler(std::function<void(StatusMenuCommand)> handler) {
    m_commandHandler = std::move(handler);
}

void SessionStatusItem::setOutputSource(std::weak_ptr<OutputSource> source) {
    m_presenter.setOutputSource(std::move(source));
}

void SessionStatusItem::showWindow() {
    m_isFallbackWindow = m_isFallbackWindow && m_presenter.isWindowOpen();
    m_presenter.showWindow();
}

std::optional<StatusItemBackEnd*> SessionStatusItem::best() const {
    for (const auto& backEnd : m_backEnds) {
        switch (backEnd->availability()) {
        case StatusItemBackEnd::Availability::unknown:
            return std::nullopt;
        case StatusItemBackEnd::Availability::available:
            return backEnd.get();
        case StatusItemBackEnd::Availability::unavailable:
            break;
        }
    }
    return nullptr;
}

void SessionStatusItem::choose() {
    const std::optional<StatusItemBackEnd*> chosen = best();
    if (!chosen) {
        return;
    }
    m_settleTimer.reset();
    if (m_current && m_current->availability() == StatusItemBackEnd::Availability::unavailable) {
        leavePanel();
    }
    const bool isFirstChoice = !std::exchange(m_hasChosen, true);
    if (!*chosen || *chosen == m_current) {
        return;
    }
    if (isFirstChoice || *chosen == m_backEnds.front().get()) {
        moveTo(**chosen);
    } else {
        m_settleTimer = m_timers.schedule(settlingTime, [this, backEnd = *chosen] { moveTo(*backEnd); });
    }
}

void SessionStatusItem::leavePanel() {
    qCInfo(lcApp, "The panel with the status item has gone");
    m_current->setShown(false);
    m_current = nullptr;
    awaitPanel();
}

void SessionStatusItem::moveTo(StatusItemBackEnd& backEnd) {
    if (m_current) {
        m_current->setShown(false);
    }
    m_current = &backEnd;
    m_windowTimer.reset();
    m_presenter.setWindowStandsForItem(false);
    backEnd.setShown(true);
    if (std::exchange(m_isFallbackWindow, false)) {
        m_presenter.closeWindow();
    }
}

void SessionStatusItem::awaitPanel() {
    m_presenter.setWindowStandsForItem(true);
    m_windowTimer = m_timers.schedule(patience, [this] { showFallbackWindowUnlessLocked(); });
}

void SessionStatusItem::showFallbackWindowUnlessLocked() {
    m_askWhetherLocked([this](bool isLocked) {
        if (m_current) {
            return; // a panel has come meanwhile
        }
        if (isLocked) {
            m_windowTimer = m_timers.schedule(lockedPatience, [this] { showFallbackWindowUnlessLocked(); });
        } else {
            showFallbackWindow();
        }
    });
}

void SessionStatusItem::showFallbackWindow() {
    if (!m_presenter.isWindowOpen()) {
        qCInfo(lcApp, "The desktop shows no status items: a window takes their place");
        m_isFallbackWindow = true;
        m_presenter.showWindowQuietly(); // the user may be typing the account
    }
}

void SessionStatusItem::keepInTaskbar() {
    if (!m_current) {
        m_isFallbackWindow = true;
        m_presenter.showWindowMinimized();
    }
}

} // namespace Varnel
