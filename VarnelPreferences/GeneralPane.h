#pragma once

#include <VarnelPreferences/PreferencesForm.h>

#include <QWidget>

class QCheckBox;
class QFormLayout;
class QSpinBox;

namespace Varnel {

class StateLine;

/// How often to poll, what to show and when to start. Every edit is handed on by itself.
class GeneralPane final : public QWidget {
    Q_OBJECT

public:
    /// `form` must outlive the pane.
    explicit GeneralPane(PreferencesForm& form);

    void focusFirstField();

    /// Takes over an interval that is still being typed, and hands on what is pending.
    void finishEditing();

private:
    void buildInterval(QFormLayout& layout);
    QWidget* besideInterval(const QString& range);
    void buildChart(QFormLayout& layout);
    void buildIcons(QFormLayout& layout);
    void buildLaunchAtLogin(QFormLayout& layout);
    void handleLaunchAtLoginToggled(bool isOn);
    void handleLaunchAtLoginRefused(const QString& description);

    PreferencesForm& m_form;
    QSpinBox* m_interval;
    QCheckBox* m_launchAtLogin;
    StateLine* m_launchAtLoginError;
};

} // namespace Varnel
