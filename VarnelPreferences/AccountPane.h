#pragma once

#include <VarnelPreferences/PreferencesForm.h>

#include <QPointer>
#include <QWidget>

class QFormLayout;
class QLineEdit;
class QProgressBar;
class QPushButton;
class QToolButton;

namespace Varnel {

class StateLine;

/// The account, where to find it, and the connection. Saved by its button alone; Return in a field is that button.
/// While a sign-in goes on the button cancels it.
class AccountPane final : public QWidget {
    Q_OBJECT

public:
    /// `form` must outlive the pane.
    explicit AccountPane(PreferencesForm& form);

    /// The password when it alone is still to be filled in, else the account.
    void focusFirstField();

private:
    QFormLayout* buildFields();
    QWidget* buildPasswordRow();
    void buildAdvanced(QFormLayout& fields);
    QLayout* buildButtons();
    QLineEdit* makeField(const QString& text, const QString& placeholder);
    void setAdvancedShown(bool isShown);
    void setPasswordShown(bool isShown);
    void followAccount(const QString& account);
    void handleButton();
    void handleSave();
    void handleSignedOut();
    void showConnection();
    void showNotices();
    void setResting(bool isResting);
    QLineEdit* wantedField() const;
    void showWantedField();

    PreferencesForm& m_form;
    QLineEdit* m_account;
    QLineEdit* m_password;
    QLineEdit* m_baseURL;
    QLineEdit* m_stationID;
    QPushButton* m_reveal;
    QToolButton* m_advanced;
    StateLine* m_state;
    StateLine* m_notices;
    QProgressBar* m_progress;
    QPushButton* m_signOut;
    QPushButton* m_save;
    QFormLayout* m_fields;
    bool m_isResting = false;
    bool m_hasTakenFocus = false; ///< the button has, from a field that rests
    QPointer<QWidget> m_focusBefore;
};

} // namespace Varnel
