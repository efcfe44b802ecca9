#include <VarnelPreferences/PaneWidgets.h>

#include <QFontMetrics>
#include <QHBoxLayout>
#include <QPainter>
#include <QStyle>

namespace Varnel {

ParagraphLabel::ParagraphLabel(int columns, const QString& text)
    : QLabel(text)
    , m_columns(columns) {
    setWordWrap(true);
    setTextFormat(Qt::PlainText);
    // Where the window begins, not where the text would: what is not translated stands there with the rest.
    setAlignment(QStyle::visualAlignment(layoutDirection(), Qt::AlignLeading) | Qt::AlignTop | Qt::AlignAbsolute);
}

QSize ParagraphLabel::sizeHint() const {
    const QMargins margins = contentsMargins();
    const int width = m_columns * fontMetrics().averageCharWidth() + margins.left() + margins.right();
    return {width, heightForWidth(width)};
}

/// Draws the sign on a grid of 16 by 16 units, one unit a logical pixel at the usual font size.
class StateLine::SignWidget final : public QWidget {
public:
    void setSign(Sign sign) {
        m_sign = sign;
        setVisible(sign != Sign::none);
        update();
    }

    QSize sizeHint() const override {
        const int side = fontMetrics().height();
        return {side, side};
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.scale(width() / 16.0, height() / 16.0);
        switch (m_sign) {
        case Sign::none:
            return;
        case Sign::good:
            return drawGood(painter);
        case Sign::off:
            return drawOff(painter);
        case Sign::warning:
            return drawWarning(painter);
        }
    }

private:
    static QPen stroke(const QColor& colour, qreal width) {
        return QPen(colour, width, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin);
    }

    static void drawGood(QPainter& painter) {
        painter.setPen(Qt::NoPen);
        painter.setBrush(QColor(0x2e, 0x9e, 0x4f));
        painter.drawEllipse(QRectF(1.5, 1.5, 13, 13));
        painter.setPen(stroke(Qt::white, 1.8));
        painter.drawPolyline(QPolygonF({{4.8, 8.3}, {7.1, 10.6}, {11.3, 5.8}}));
    }

    void drawOff(QPainter& painter) const {
        painter.setPen(stroke(palette().color(QPalette::PlaceholderText), 1.6));
        painter.drawEllipse(QRectF(2.5, 2.5, 11, 11));
    }

    static void drawWarning(QPainter& painter) {
        painter.setPen(stroke(QColor(0xf0, 0xa8, 0x1c), 1.6));
        painter.setBrush(QColor(0xf0, 0xa8, 0x1c));
        painter.drawPolygon(QPolygonF({{8, 2.2}, {14.2, 13.4}, {1.8, 13.4}}));
        painter.setPen(stroke(QColor(0x20, 0x20, 0x20), 1.7));
        painter.drawLine(QPointF(8, 6.2), QPointF(8, 9.4));
        painter.drawPoint(QPointF(8, 11.8));
    }

    Sign m_sign = Sign::none;
};

StateLine::StateLine(int columns)
    : m_sign(new SignWidget)
    , m_text(new ParagraphLabel(columns)) {
    auto* layout = new QHBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_sign, 0, Qt::AlignTop);
    layout->addWidget(m_text, 1);
}

void StateLine::setState(Sign sign, const QString& text) {
    m_sign->setSign(sign);
    m_text->setText(text);
}

void StateLine::setDetails(const QString& lines) {
    m_text->setToolTip(lines.isEmpty()
                           ? QString()
                           : QStringLiteral("<p>%1</p>")
                                 .arg(lines.toHtmlEscaped().replace(QLatin1Char('\n'), QStringLiteral("<br>"))));
    m_text->setAccessibleDescription(lines);
}

ParagraphLabel* makeHint(const QString& text, HintPlace place) {
    auto* hint = new ParagraphLabel(place == HintPlace::ofSwitch ? fieldColumns : paneColumns, text);
    QFont small = hint->font();
    small.setPointSizeF(small.pointSizeF() * 0.9);
    hint->setFont(small);
    if (place == HintPlace::ofAll) {
        return hint;
    }
    const QStyle& style = *hint->style();
    const int indent =
        style.pixelMetric(QStyle::PM_IndicatorWidth) + style.pixelMetric(QStyle::PM_CheckBoxLabelSpacing);
    const bool isMirrored = hint->layoutDirection() == Qt::RightToLeft;
    hint->setContentsMargins(isMirrored ? 0 : indent, 0, isMirrored ? indent : 0, 0);
    return hint;
}

void addField(QFormLayout& layout, const QString& label, QWidget* control, QWidget* row) {
    auto* labelWidget = new QLabel(label + QLatin1Char(':'));
    labelWidget->setBuddy(control);
    layout.addRow(labelWidget, row ? row : control);
    // Said outright: a label is found as the name only of some kinds of controls, and only beside it.
    control->setAccessibleName(QString(label).remove(QLatin1Char('&')));
}

QCheckBox* makeSwitch(PreferencesForm& form, bool AppSettings::* field, const QString& text) {
    auto* toggle = new QCheckBox(text);
    toggle->setChecked(form.draft().*field);
    QObject::connect(toggle, &QCheckBox::toggled, &form, [&form, field](bool isOn) { form.edit(field, isOn); });
    return toggle;
}

} // namespace Varnel
