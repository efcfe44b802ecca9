#pragma once

#include <VarnelShared/Clock.h>
#include <VarnelStatusMenu/Linux/StatusItemBackEnd.h>
#include <VarnelStatusMenu/Menu/StatusMenuPresenter.h>

#include <memory>
#include <vector>

namespace Varnel {

/// The application's status item in the session of the moment: in the best kind of panel that is there, chosen at the
/// start and again as panels come and go, and in an ordinary window once there has been none for ten seconds of a
/// screen that is not locked. That window closes when a panel comes.
class SessionStatusItem final : public StatusItem {
public:
    using BackEnds = std::vector<std::unique_ptr<StatusItemBackEnd>>;

    /// Calls its argument later, once, with whether the screen is locked; never once the status item is gone.
    using AskWhetherLocked = std::function<void(std::function<void(bool isLocked)> handle)>;

    /// The panels of this session: the item protocol on the session bus, else the legacy tray. `identifier` is the
    /// bundle identifier. `timers` must outlive this object.
    SessionStatusItem(const QString& identifier, TimerFactory& timers);

    /// The same with any kinds of panels, best first; `makeBackEnds` is called once, with what they have to call.
    SessionStatusItem(const std::function<BackEnds(const StatusItemHandlers&)>& makeBackEnds,
                      AskWhetherLocked askWhetherLocked, TimerFactory& timers);
    ~SessionStatusItem() override;

    void show(const StatusItemContent& content) override;
    void setCommandHandler(std::function<void(StatusMenuCommand)> handler) override;
    void setOutputSource(std::weak_ptr<OutputSource> source) override;
    void showWindow() override;

private:
    StatusItemHandlers handlers();
    /// The best kind of panel that is there; null when there is none. No value while a better one may yet answer.
    std::optional<StatusItemBackEnd*> best() const;
    void choose();
    void leavePanel();
    void moveTo(StatusItemBackEnd& backEnd);
    void awaitPanel();
    void showFallbackWindowUnlessLocked();
    void showFallbackWindow();
    /// A window closed by hand where no panel is comes back minimised: the program is never out of reach.
    void keepInTaskbar();

    TimerFactory& m_timers;
    AskWhetherLocked m_askWhetherLocked;
    StatusMenuPresenter m_presenter;
    std::function<void(StatusMenuCommand)> m_commandHandler;
    BackEnds m_backEnds;
    StatusItemBackEnd* m_current = nullptr; ///< where the item is shown; null: nowhere
    bool m_hasChosen = false;
    bool m_isFallbackWindow = false; ///< the open window was not asked for by anyone
    std::unique_ptr<OneShotTimer> m_settleTimer;
    std::unique_ptr<OneShotTimer> m_windowTimer;
};

} // namespace Varnel
