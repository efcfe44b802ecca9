#include "ViewerStatusItem.h"

#include <VarnelStatusMenu/Linux/SessionStatusItem.h>
#include <VarnelStatusMenu/StatusMenuPresenter.h>

#include <QTimer>

#include <utility>

namespace Varnel::Testing {

namespace {

/// Needs no panel: opens the menu once, as soon as the event loop runs.
class ImmediateStatusItem : public StatusItem {
public:
    explicit ImmediateStatusItem(ViewerForm form) {
        QTimer::singleShot(0, &m_context, [this, form] {
            form == ViewerForm::popup ? m_presenter.toggleMenu() : m_presenter.showWindow(m_title);
        });
    }

    void setTitle(const QString& title) override {
        m_title = title;
        m_presenter.setWindowTitle(title);
    }
    void setToolTip(const QString& /*toolTip*/) override {}
    void setMenu(const StatusMenu& menu) override { m_presenter.setMenu(menu); }
    void setCommandHandler(std::function<void(StatusMenuCommand)> handler) override {
        m_presenter.setCommandHandler(std::move(handler));
    }
    void showWindow() override { m_presenter.showWindow(m_title); }

private:
    QObject m_context;
    QString m_title;
    StatusMenuPresenter m_presenter;
};

} // namespace

std::unique_ptr<StatusItem> makeViewerStatusItem(ViewerForm form, TimerFactory& timers) {
    if (form == ViewerForm::item) {
        return std::make_unique<SessionStatusItem>(QStringLiteral("com.varnel.menubar"), timers);
    }
    return std::make_unique<ImmediateStatusItem>(form);
}

} // namespace Varnel::Testing
