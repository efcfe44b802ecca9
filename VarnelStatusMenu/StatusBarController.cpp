#include <VarnelStatusMenu/StatusBarController.h>

#include <QCoreApplication>

#include <utility>

namespace Varnel {

namespace {

QString toolTip(const StatusPresentation& presentation) {
    const QString first = QCoreApplication::translate("StatusMenu", "Current Output: %1").arg(presentation.outputValue);
    return presentation.outdatedLine ? first + QLatin1Char('\n') + *presentation.outdatedLine : first;
}

} // namespace

StatusBarController::StatusBarController(std::unique_ptr<StatusItem> statusItem)
    : m_statusItem(std::move(statusItem)) {
    m_statusItem->setCommandHandler([this](StatusMenuCommand command) { handleCommand(command); });
    m_statusItem->show({m_presentation.title, {}, statusMenu(m_presentation), std::nullopt});
}

void StatusBarController::update(const StatusPresentation& presentation) {
    m_presentation = presentation;
    m_statusItem->show(
        {presentation.title, toolTip(presentation), statusMenu(presentation), presentation.outdatedLine});
}

void StatusBarController::setOutputSource(std::weak_ptr<OutputSource> source) {
    m_statusItem->setOutputSource(std::move(source));
}

void StatusBarController::showWindow() {
    m_statusItem->showWindow();
}

void StatusBarController::handleCommand(StatusMenuCommand command) {
    std::function<void()> callback; // a copy: the callback may replace itself while it runs
    switch (command) {
    case StatusMenuCommand::refresh:
        callback = onRefresh;
        break;
    case StatusMenuCommand::preferences:
        callback = onOpenPreferences;
        break;
    case StatusMenuCommand::signIn:
        callback = onSignIn;
        break;
    case StatusMenuCommand::signOut:
        callback = onSignOut;
        break;
    }
    if (callback) {
        callback();
    }
}

} // namespace Varnel
