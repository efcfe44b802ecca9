#include <VarnelPreferences/PaneWidgets.h>

#include <QFontMetrics>
#include <QStyle>

namespace Varnel {

namespace {
constexpr int paragraphColumns = 52;
}

ParagraphLabel::ParagraphLabel(const QString& text)
    : QLabel(text) {
    setWordWrap(true);
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignLeading | Qt::AlignTop);
}

QSize ParagraphLabel::sizeHint() const {
    const int width = paragraphColumns * fontMetrics().averageCharWidth();
    return {width, heightForWidth(width)};
}

ParagraphLabel* makeHint(const QString& text) {
    auto* hint = new ParagraphLabel(text);
    QFont small = hint->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    hint->setFont(small);
    const QStyle& style = *hint->style();
    hint->setIndent(style.pixelMetric(QStyle::PM_IndicatorWidth) + style.pixelMetric(QStyle::PM_CheckBoxLabelSpacing));
    return hint;
}

void addField(QFormLayout& layout, const QString& label, QWidget* control, QWidget* row) {
    auto* labelWidget = new QLabel(label + QLatin1Char(':'));
    labelWidget->setBuddy(control);
    layout.addRow(labelWidget, row ? row : control);
    // Said outright: a label is found as the name only of some kinds of controls, and only beside it.
    control->setAccessibleName(QString(label).remove(QLatin1Char('&')));
}

QCheckBox* makeSwitch(PreferencesForm& form, bool PreferencesDraft::*field, const QString& text) {
    auto* toggle = new QCheckBox(text);
    toggle->setChecked(form.draft().*field);
    QObject::connect(toggle, &QCheckBox::toggled, &form, [&form, field](bool isOn) { form.edit(field, isOn); });
    return toggle;
}

} // namespace Varnel
