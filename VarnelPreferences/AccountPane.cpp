#include <VarnelPreferences/AccountPane.h>

#include <VarnelPreferences/PaneWidgets.h>
#include <VarnelShared/Text.h>

#include <QApplication>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QProgressBar>
#include <QPushButton>
#include <QRegularExpression>
#include <QToolButton>
#include <QUrl>
#include <QVBoxLayout>

#include <initializer_list>

namespace Varnel {

namespace {
constexpr int minimumFieldColumns = 30;

StateLine::Sign signOf(ConnectionState::Kind kind) {
    switch (kind) {
    case ConnectionState::Kind::notConnected:
    case ConnectionState::Kind::connecting:
        return StateLine::Sign::off;
    case ConnectionState::Kind::connected:
        return StateLine::Sign::good;
    case ConnectionState::Kind::error:
        return StateLine::Sign::warning;
    }
    return StateLine::Sign::none;
}

QString textOf(AccountNotices notices) {
    QStringList texts;
    if (notices.testFlag(AccountNotice::passwordNotDeleted)) {
        texts +=
            AccountPane::tr("The password could not be deleted. Start or unlock the keyring, then sign out again.");
    }
    if (notices.testFlag(AccountNotice::passwordNotStored)) {
        texts += AccountPane::tr("The password could not be stored. Start or unlock the keyring, then save again.");
    }
    if (notices.testFlag(AccountNotice::settingsNotStored)) {
        texts += AccountPane::tr("The settings could not be stored. Make room on the disk, then save again.");
    }
    return texts.join(QLatin1Char('\n'));
}

/// Whether what is sent to the address can be read on its way. This machine's own address is on none.
bool isReadableOnTheWay(const QString& baseURL) {
    const QUrl url(trimmed(baseURL), QUrl::StrictMode);
    static const QRegularExpression own(QStringLiteral(R"(^(localhost|.+\.localhost|127(\.\d+){3}|::1)$)"));
    return url.scheme() == QLatin1String("http") && !own.match(url.host()).hasMatch();
}
} // namespace

AccountPane::AccountPane(PreferencesForm& form)
    : m_form(form)
    , m_account(makeField(form.draft().account, tr("E-mail address")))
    , m_password(makeField(form.draft().password, {}))
    , m_baseURL(makeField(form.draft().baseURL, AppSettings::defaults().baseURL))
    , m_stationID(makeField(form.draft().stationID, tr("Found automatically")))
    , m_reveal(new QPushButton)
    , m_advanced(new QToolButton)
    , m_state(new StateLine(paneColumns))
    , m_notices(new StateLine(paneColumns))
    , m_progress(new QProgressBar)
    , m_signOut(new QPushButton(tr("S&ign Out")))
    , m_save(new QPushButton(tr("Save and &Connect")))
    , m_fields(buildFields()) {
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(paneMargins);
    layout->addLayout(m_fields);
    layout->addSpacing(8);
    layout->addWidget(m_state);
    layout->addWidget(m_notices);
    layout->addStretch();
    layout->addLayout(buildButtons());
    layout->addWidget(makeHint(tr("Signing out deletes the password and the samples that are stored on this computer."),
                               HintPlace::ofAll));
    connect(m_account, &QLineEdit::textEdited, this, &AccountPane::followAccount);
    connect(m_baseURL, &QLineEdit::textChanged, this, &AccountPane::showNotices);
    connect(&form, &PreferencesForm::connectionChanged, this, &AccountPane::showConnection);
    connect(&form, &PreferencesForm::accountNoticesChanged, this, &AccountPane::showNotices);
    connect(&form, &PreferencesForm::signedOut, this, &AccountPane::handleSignedOut);
    setAdvancedShown(false);
    showNotices();
    showConnection();
}

void AccountPane::focusFirstField() {
    QLineEdit* first = !m_account->text().isEmpty() && m_password->text().isEmpty() ? m_password : m_account;
    first->setFocus();
    first->selectAll();
}

QLineEdit* AccountPane::makeField(const QString& text, const QString& placeholder) {
    auto* field = new QLineEdit(text);
    field->setPlaceholderText(placeholder);
    field->setMinimumWidth(minimumFieldColumns * field->fontMetrics().averageCharWidth());
    field->setCursorPosition(0);
    connect(field, &QLineEdit::returnPressed, this, &AccountPane::handleSave);
    return field;
}

QFormLayout* AccountPane::buildFields() {
    auto* fields = new QFormLayout;
    addField(*fields, tr("&Account"), m_account);
    addField(*fields, tr("&Password"), m_password, buildPasswordRow());
    buildAdvanced(*fields);
    return fields;
}

QWidget* AccountPane::buildPasswordRow() {
    connect(m_reveal, &QPushButton::clicked, this,
            [this] { setPasswordShown(m_password->echoMode() == QLineEdit::Password); });
    setPasswordShown(false);
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_password, 1);
    layout->addWidget(m_reveal);
    return row;
}

void AccountPane::buildAdvanced(QFormLayout& fields) {
    m_advanced->setAccessibleName(tr("A&dvanced").remove(QLatin1Char('&')));
    m_advanced->setAutoRaise(true);
    m_advanced->setFocusPolicy(Qt::StrongFocus);
    connect(m_advanced, &QToolButton::clicked, this, [this] { setAdvancedShown(!m_fields->isRowVisible(m_baseURL)); });
    fields.addRow(m_advanced);
    addField(fields, tr("&Base URL"), m_baseURL);
    addField(fields, tr("S&tation ID"), m_stationID);
}

QLayout* AccountPane::buildButtons() {
    m_progress->setRange(0, 0);
    m_progress->setTextVisible(false);
    m_progress->setAccessibleName(tr("Signing in"));
    m_progress->setFixedHeight(m_progress->fontMetrics().height() * 3 / 4);
    m_save->setDefault(true);
    m_save->setMinimumWidth(m_save->sizeHint().width() + 2 * m_save->fontMetrics().averageCharWidth());
    m_signOut->setAutoDefault(true);
    connect(m_save, &QPushButton::clicked, this, &AccountPane::handleButton);
    connect(m_signOut, &QPushButton::clicked, &m_form, &PreferencesForm::signOut);
    auto* layout = new QHBoxLayout;
    layout->addWidget(m_progress, 1);
    layout->addStretch();
    layout->addWidget(m_signOut);
    layout->addWidget(m_save);
    return layout;
}

void AccountPane::setAdvancedShown(bool isShown) {
    if (layoutDirection() == Qt::RightToLeft) { // in which the toolkit leaves a button's arrow where it was
        m_advanced->setText((isShown ? QStringLiteral("\u25be ") : QStringLiteral("\u25c2 ")) + tr("A&dvanced"));
    } else {
        m_advanced->setText(tr("A&dvanced"));
        m_advanced->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
        m_advanced->setArrowType(isShown ? Qt::DownArrow : Qt::RightArrow);
    }
    m_advanced->setAccessibleDescription(isShown ? tr("Hides the advanced fields") : tr("Shows the advanced fields"));
    m_fields->setRowVisible(m_baseURL, isShown);
    m_fields->setRowVisible(m_stationID, isShown);
}

void AccountPane::setPasswordShown(bool isShown) {
    m_password->setEchoMode(isShown ? QLineEdit::Normal : QLineEdit::Password);
    m_reveal->setText(isShown ? tr("&Hide") : tr("Sho&w"));
    m_reveal->setAccessibleName(isShown ? tr("Hide password") : tr("Show password"));
    // Shown or not, no input method is to learn it.
    m_password->setInputMethodHints(m_password->inputMethodHints() | Qt::ImhSensitiveData | Qt::ImhNoPredictiveText |
                                    Qt::ImhNoAutoUppercase);
}

void AccountPane::followAccount(const QString& account) {
    if (!m_stationID->isModified()) { // a station that the user has typed stays
        m_stationID->setText(m_form.stationIDFor(account));
    }
}

void AccountPane::handleButton() {
    if (m_form.connection().connecting == ConnectionState::Connecting::no) {
        handleSave();
    } else {
        m_form.cancelSignIn();
    }
}

void AccountPane::handleSave() {
    m_form.save({m_baseURL->text(), m_account->text(), m_password->text(), m_stationID->text()});
    m_stationID->setModified(false); // what was typed is this account's station now
}

void AccountPane::handleSignedOut() {
    m_password->clear();
    setPasswordShown(false);
    showConnection();
}

void AccountPane::showConnection() {
    const ConnectionState connection = m_form.connection();
    const bool isConnecting = connection.connecting != ConnectionState::Connecting::no;
    m_state->setState(signOf(connectionKind(connection)), connectionText(connection));
    m_state->setDetails(connection.details);
    m_progress->setVisible(isConnecting);
    m_save->setText(isConnecting ? tr("&Cancel") : tr("Save and &Connect"));
    m_save->setDefault(!isConnecting); // Return belongs to the fields then
    setResting(m_form.isUserWaiting());
    m_signOut->setEnabled(m_form.canSignOut());
}

void AccountPane::showNotices() {
    QStringList texts(textOf(m_form.accountNotices()));
    if (isReadableOnTheWay(m_baseURL->text())) {
        texts += tr("The base URL begins with http: your password can be read on its way there. Prefer https.");
    }
    texts.removeAll(QString());
    m_notices->setState(StateLine::Sign::warning, texts.join(QLatin1Char('\n')));
    m_notices->setVisible(!texts.isEmpty());
    m_signOut->setEnabled(m_form.canSignOut());
}

/// Disabled fields lose the focus: meanwhile the button has it, and then the field that the user needs next.
void AccountPane::setResting(bool isResting) {
    if (std::exchange(m_isResting, isResting) == isResting) {
        return;
    }
    QWidget* focused = window()->focusWidget();
    if (isResting) {
        m_focusBefore = focused;
        m_hasTakenFocus = isAncestorOf(focused);
        if (m_hasTakenFocus) {
            m_save->setFocus();
        }
    }
    for (QWidget* control : std::initializer_list<QWidget*>{m_account, m_password, m_reveal, m_baseURL, m_stationID}) {
        control->setEnabled(!isResting);
    }
    if (!isResting && m_hasTakenFocus && focused == m_save) {
        showWantedField();
    }
}

QLineEdit* AccountPane::wantedField() const {
    switch (m_form.connection().wanted) {
    case ConnectionState::WantedField::none:
        break;
    case ConnectionState::WantedField::account:
        return m_account;
    case ConnectionState::WantedField::password:
        return m_password;
    case ConnectionState::WantedField::baseURL:
        return m_baseURL;
    }
    return nullptr;
}

void AccountPane::showWantedField() {
    QLineEdit* wanted = wantedField();
    if (!wanted) {
        if (m_focusBefore) {
            m_focusBefore->setFocus();
        }
        return;
    }
    if (wanted == m_baseURL) {
        setAdvancedShown(true);
    }
    wanted->setFocus();
    wanted->selectAll();
}

} // namespace Varnel
