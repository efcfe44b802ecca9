#include <VarnelPreferences/NotificationsPane.h>

#include <VarnelPreferences/PaneWidgets.h>
#include <VarnelPreferences/StateLine.h>

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
} // namespace

NotificationsPane::NotificationsPane(PreferencesForm& form)
    : m_form(form)
    , m_firstSwitch(makeSwitch(form, &PreferencesDraft::notifyOnProductionStart, tr("Production &starts")))
    , m_permission(new StateLine(paneColumns)) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(paneMargins);
    layout->addWidget(new QLabel(tr("Show a notification when:")));
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
        m_permission->setState(signOf(*permission), notificationPermissionText(*permission));
    }
}

} // namespace Varnel
