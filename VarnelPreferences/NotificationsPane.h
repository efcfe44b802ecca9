#pragma once

#include <VarnelPreferences/PreferencesForm.h>

#include <QWidget>

namespace Varnel {

class StateLine;

/// The three notification switches, and whether the desktop lets them through. Every edit is handed on by itself.
class NotificationsPane final : public QWidget {
    Q_OBJECT

public:
    /// `form` must outlive the pane.
    explicit NotificationsPane(PreferencesForm& form);

    void focusFirstField() { m_firstSwitch->setFocus(); }

private:
    void showPermission();

    PreferencesForm& m_form;
    QWidget* m_firstSwitch;
    StateLine* m_permission;
};

} // namespace Varnel
