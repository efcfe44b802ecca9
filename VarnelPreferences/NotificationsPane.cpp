#include <VarnelPreferences/NotificationsPane.h>

#include <VarnelPreferences/PaneWidgets.h>

#include <QVBoxLayout>

namespace Varnel {

namespace {
StateLine::Sign signOf(NotificationPermission permission) {
    switch (permission) {
    case NotificationPermission::notInstalled:
        return StateLine::Sign::off;
    case NotificationPermission::noService:
    case NotificationPermission::denied:
        return StateLine::Sign::warning;
    case NotificationPermission::authorized:
        return StateLine::Sign::good;
    }
    return StateLine::Sign::none;
}

/// The state, and what to do about it where there is something to do.
QString textOf(NotificationPermission permission) {
    switch (permission) {
    case NotificationPermission::notInstalled:
        return NotificationsPane::tr("Varnel shows notifications once it is installed.");
    case NotificationPermission::noService:
        return NotificationsPane::tr(
            "No notification service is running, so nothing can be shown. Start the notification "
            "service of your desktop, or install one.");
    case NotificationPermission::denied:
        return NotificationsPane::tr(
            "Notifications are blocked. Allow them for Varnel in the notification settings of your "
            "desktop.");
    case NotificationPermission::authorized:
        return NotificationsPane::tr("Notifications are allowed.");
    }
    return {};
}
} // namespace

NotificationsPane::NotificationsPane(PreferencesForm& form)
    : m_form(form)
    , m_firstSwitch(makeSwitch(form, &PreferencesDraft::notifyOnProductionStart, tr("Production &starts")))
    , m_permission(new StateLine(paneColumns)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(paneMargins);
    layout->addWidget(new ParagraphLabel(paneColumns, tr("Show a notification when:")));
    layout->addWidget(m_firstSwitch);
    layout->addWidget(makeSwitch(form, &PreferencesDraft::notifyOnProductionEnd, tr("Production &ends")));
    layout->addWidget(
        makeSwitch(form, &PreferencesDraft::notifyOnProductionRiseAboveOneKilowatt, tr("Output &rises above 1 kW")));
    layout->addSpacing(8);
    layout->addWidget(m_permission);
    layout->addStretch();
    connect(&form, &PreferencesForm::notificationPermissionChanged, this, &NotificationsPane::showPermission);
    showPermission();
}

void NotificationsPane::showPermission() {
    const std::optional<NotificationPermission> permission = m_form.notificationPermission();
    m_permission->setVisible(permission.has_value());
    if (permission) {
        m_permission->setState(signOf(*permission), textOf(*permission));
    }
}

} // namespace Varnel
