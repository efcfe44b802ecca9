#include <VarnelPreferences/PaneWidgets.h>

#include <QFontMetrics>
#include <QStyle>

namespace Varnel {

ParagraphLabel::ParagraphLabel(int columns, const QString& text)
    : QLabel(text)
    , m_columns(columns) {
    setWordWrap(true);
    setTextFormat(Qt::PlainText);
    setAlignment(Qt::AlignLeading | Qt::AlignTop);
}

QSize ParagraphLabel::sizeHint() const {
    const QMargins margins = contentsMargins();
    const int width = m_columns * fontMetrics().averageCharWidth() + margins.left() + margins.right();
    return {width, heightForWidth(width)};
}

ParagraphLabel* makeHint(const QString& text) {
    auto* hint = new ParagraphLabel(fieldColumns, text);
    QFont small = hint->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    hint->setFont(small);
    const QStyle& style = *hint->style();
    const int indent =
        style.pixelMetric(QStyle::PM_IndicatorWidth) + style.pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
    hint->setContentsMargins(indent, 0, 0, 0);
    return hint;
}

void addField(QFormLayout& layout, const QString& label, QWidget* control, QWidget* row) {
    auto* labelWidget = new QLabel(label + QLatin1Char(':'));
    labelWidget->setBuddy(control);
    layout.addRow(labelWidget, row ? row : control);
    // Said outright: a label is found as the name only of some kinds of controls, and only beside it.
    control->setAccessibleName(QString(label).remove(QLatin1Char('&')));
}

QCheckBox* makeSwitch(PreferencesForm& form, bool AppSettings::*field, const QString& text) {
    auto* toggle = new QCheckBox(text);
    toggle->setChecked(form.draft().*field);
    QObject::connect(toggle, &QCheckBox::toggled, &form, [&form, field](bool isOn) { form.edit(field, isOn); });
    return toggle;
}

} // namespace Varnel
