#include <VarnelPreferences/GeneralPane.h>

#include <VarnelPreferences/PaneWidgets.h>

#include <QHBoxLayout>
#include <QLabel>
#include <QSpinBox>

namespace Varnel {

namespace {
void addGap(QFormLayout& layout) {
    layout.addItem(new QSpacerItem(0, 2));
}
} // namespace

GeneralPane::GeneralPane(PreferencesForm& form)
    : m_form(form)
    , m_interval(new QSpinBox)
    , m_launchAtLogin(new QCheckBox(tr("&Launch at login")))
    , m_launchAtLoginError(new StateLine(fieldColumns)) {
    auto* layout = new QFormLayout(this);
    layout->setFieldGrowthPolicy(QFormLayout::FieldsStayAtSizeHint);
    layout->setContentsMargins(paneMargins);
    buildInterval(*layout);
    addGap(*layout);
    buildChart(*layout);
    addGap(*layout);
    buildIcons(*layout);
    addGap(*layout);
    buildLaunchAtLogin(*layout);
}

void GeneralPane::focusFirstField() {
    m_interval->setFocus();
    m_interval->selectAll();
}

void GeneralPane::finishEditing() {
    m_interval->interpretText();
    m_form.handOn();
}

void GeneralPane::buildInterval(QFormLayout& layout) {
    constexpr auto range = AppSettings::pollIntervalRange;
    m_interval->setRange(shownMinutes(range.first), shownMinutes(range.second));
    m_interval->setSuffix(tr(" minutes"));
    m_interval->setValue(shownMinutes(m_form.draft().pollIntervalSeconds));
    connect(m_interval, &QSpinBox::valueChanged, &m_form, &PreferencesForm::editPollInterval);
    connect(m_interval, &QSpinBox::editingFinished, &m_form, &PreferencesForm::handOn);
    addField(
        layout, tr("&Update every"), m_interval,
        besideInterval(tr("from %1 to %2")
                           .arg(locale().toString(m_interval->minimum()), locale().toString(m_interval->maximum()))));
}

/// The range stands beside the field: a value outside of it cannot be typed, and nothing else would say why.
QWidget* GeneralPane::besideInterval(const QString& range) {
    auto* row = new QWidget;
    auto* layout = new QHBoxLayout(row);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_interval);
    layout->addWidget(new QLabel(range));
    m_interval->setAccessibleDescription(range);
    return row;
}

void GeneralPane::buildChart(QFormLayout& layout) {
    auto* isShown = makeSwitch(m_form, &AppSettings::showOutputChart, tr("Show output &chart"));
    auto* scale = makePicker(m_form, &AppSettings::chartScaleMode);
    scale->setEnabled(isShown->isChecked());
    connect(isShown, &QCheckBox::toggled, scale, &QWidget::setEnabled);
    layout.addRow(QString(), isShown);
    addField(layout, tr("Chart &scale"), scale);
}

void GeneralPane::buildIcons(QFormLayout& layout) {
    layout.addRow(QString(), makeSwitch(m_form, &AppSettings::showDockIcon, tr("Show &dock icon")));
    layout.addRow(QString(), makeHint(tr("Keeps Varnel in the taskbar or dock.")));
    auto* refusal = new StateLine(fieldColumns);
    refusal->setState(StateLine::Sign::off,
                      tr("This desktop offers no such entry. The switch takes effect on one that does."));
    const auto showRefusal = [this, refusal] { refusal->setVisible(m_form.isDockIconRefused()); };
    connect(&m_form, &PreferencesForm::dockIconRefusedChanged, refusal, showRefusal);
    layout.addRow(QString(), refusal);
    showRefusal();
    addField(layout, tr("&Icon appearance"), makePicker(m_form, &AppSettings::iconAppearanceMode));
}

void GeneralPane::buildLaunchAtLogin(QFormLayout& layout) {
    m_launchAtLogin->setChecked(m_form.draft().launchAtLogin);
    m_launchAtLoginError->hide();
    layout.addRow(QString(), m_launchAtLogin);
    layout.addRow(QString(), m_launchAtLoginError);
    connect(m_launchAtLogin, &QCheckBox::toggled, this, &GeneralPane::handleLaunchAtLoginToggled);
    connect(&m_form, &PreferencesForm::launchAtLoginRefused, this, &GeneralPane::handleLaunchAtLoginRefused);
}

void GeneralPane::handleLaunchAtLoginToggled(bool isOn) {
    m_launchAtLoginError->hide(); // first: the edit may bring a new one
    m_form.edit(&AppSettings::launchAtLogin, isOn);
}

void GeneralPane::handleLaunchAtLoginRefused(const QString& description) {
    m_launchAtLogin->setChecked(m_form.draft().launchAtLogin); // no edit: the form has this value already
    m_launchAtLoginError->setState(StateLine::Sign::warning, description);
    m_launchAtLoginError->setVisible(true);
}

} // namespace Varnel
