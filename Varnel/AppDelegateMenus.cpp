#include <Varnel/AppDelegate.h>

#include <Varnel/ApplicationDialogs.h>
#include <Varnel/ApplicationIcon.h>
#include <Varnel/ApplicationMenu.h>

#include <VarnelShared/Task.h>

#include <QMenu>

namespace Varnel {

void AppDelegate::wireMenuActions() {
    const std::weak_ptr<AppDelegate> weak = weak_from_this();
    const auto openPreferences = [weak](PreferencesInitialTab tab) {
        return [weak, tab] {
            if (const auto self = weak.lock()) {
                self->showPreferencesWindow(tab);
            }
        };
    };
    m_statusBarController.onOpenPreferences = openPreferences(PreferencesInitialTab::general);
    m_statusBarController.onSignIn = openPreferences(PreferencesInitialTab::account);
    m_platform.shell.setReopenHandler([weak] {
        if (const auto self = weak.lock()) {
            self->bringPreferencesToFront();
        }
    });
    m_statusBarController.onRefresh = [weak] {
        startTask("refresh", [weak] {
            const auto self = weak.lock();
            return self ? self->refreshNow() : completedTask();
        });
    };
    m_statusBarController.onSignOut = [weak] {
        if (const auto self = weak.lock()) {
            self->signOut(true);
        }
    };
}

void AppDelegate::configureApplicationMenu() {
    m_applicationMenu = makeApplicationMenu([weak = weak_from_this()](ApplicationCommand command) {
        if (const auto self = weak.lock()) {
            self->handleApplicationCommand(command);
        }
    });
}

void AppDelegate::handleApplicationCommand(ApplicationCommand command) {
    switch (command) {
    case ApplicationCommand::about:
        showAboutPanel();
        break;
    case ApplicationCommand::settings:
        showPreferencesWindow(PreferencesInitialTab::general);
        break;
    case ApplicationCommand::checkForUpdates:
        ApplicationDialogs::showNoUpdatesAlert();
        break;
    case ApplicationCommand::hide:
        m_platform.shell.hide();
        break;
    case ApplicationCommand::quit:
        m_platform.shell.terminate();
        break;
    case ApplicationCommand::hideOthers:
    case ApplicationCommand::showAll:
        break; // disabled in the menu
    }
}

void AppDelegate::showAboutPanel() {
    const QString icon = applicationIconPath(m_platform.bundle.resourcesPath, IconAppearanceMode::automatic,
                                             m_platform.appearance.isDark());
    ApplicationDialogs::showAboutPanel(m_platform.bundle.version, icon);
}

void AppDelegate::showStatusWindow() {
    m_statusBarController.showWindow();
}

} // namespace Varnel
