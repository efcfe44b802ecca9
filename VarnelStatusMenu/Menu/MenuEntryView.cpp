#include <VarnelStatusMenu/Menu/MenuEntryView.h>

#include <VarnelStatusMenu/Chart/OutputChartMenuView.h>
#include <VarnelStatusMenu/Menu/MenuStyle.h>

#include <QHelpEvent>
#include <QPainter>
#include <QStyle>
#include <QToolTip>

#include <algorithm>
#include <utility>

namespace Varnel {

namespace {

constexpr int standardHeight = 22;
constexpr int edge = 14;
constexpr int smallestGap = 8; // between label and value
constexpr int spacerHeight = 4;

/// A desktop with very large text gets taller rows rather than cut letters.
int rowHeight() {
    return std::max(standardHeight, QFontMetrics(MenuFonts::row()).height());
}

struct ViewFactory {
    using View = std::unique_ptr<MenuView>;

    View operator()(const StatusMenuChart& chart) const { return std::make_unique<OutputChartMenuView>(chart); }
    View operator()(const StatusMenuRow& row) const {
        return std::make_unique<MenuRowView>(row.label, row.value, row.label + QStringLiteral(": ") + row.value);
    }
    View operator()(const StatusMenuError& error) const {
        return std::make_unique<MenuRowView>(error.text, QString(), error.wholeText);
    }
    View operator()(const StatusMenuSpacer&) const { return std::make_unique<MenuView>(spacerHeight); }
    View operator()(const StatusMenuSeparator&) const { return nullptr; }
    View operator()(const StatusMenuAction&) const { return nullptr; }
};

} // namespace

MenuView::MenuView(int height, QWidget* parent)
    : QWidget(parent)
    , m_height(height) {
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

MenuRowView::MenuRowView(QString label, QString value, QString wholeText, QWidget* parent)
    : MenuView(rowHeight(), parent)
    , m_label(std::move(label))
    , m_value(std::move(value))
    , m_wholeText(std::move(wholeText)) {
    setFont(MenuFonts::row());
    setAccessibleName(m_wholeText);
}

bool MenuRowView::event(QEvent* event) {
    if (event->type() != QEvent::ToolTip) {
        return MenuView::event(event);
    }
    const Texts drawn = drawnTexts();
    const bool isWhole =
        drawn.label == m_wholeText || (!m_value.isEmpty() && drawn.label == m_label && drawn.value == m_value);
    // As rich text, which is broken into lines; the error may hold what a service has answered.
    const QString tip = isWhole ? QString() : QStringLiteral("<p>%1</p>").arg(m_wholeText.toHtmlEscaped());
    QToolTip::showText(static_cast<QHelpEvent*>(event)->globalPos(), tip, this);
    return true;
}

void MenuRowView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setPen(MenuColors::of(palette()).secondaryLabel);
    painter.setLayoutDirection(Qt::LayoutDirectionAuto); // "3.42 kW" reads the same in a mirrored layout
    const Texts drawn = drawnTexts();
    const auto draw = [&](Qt::Alignment side, const QString& text) {
        const Qt::Alignment seen = QStyle::visualAlignment(layoutDirection(), side) | Qt::AlignAbsolute;
        painter.drawText(textRect(), static_cast<int>(seen | Qt::AlignVCenter) | Qt::TextSingleLine, text);
    };
    draw(Qt::AlignLeading, drawn.label);
    draw(Qt::AlignTrailing, drawn.value);
}

MenuRowView::Texts MenuRowView::drawnTexts() const {
    const QFontMetrics metrics = fontMetrics();
    const int room = textRect().width();
    const QString value = metrics.elidedText(m_value, Qt::ElideRight, room);
    const int taken = value.isEmpty() ? 0 : metrics.horizontalAdvance(value) + smallestGap;
    return {metrics.elidedText(m_label, Qt::ElideRight, std::max(0, room - taken)), value};
}

QRect MenuRowView::textRect() const {
    return rect().adjusted(edge, 0, -edge, 0);
}

std::unique_ptr<MenuView> menuEntryView(const StatusMenuEntry& entry) {
    return std::visit(ViewFactory{}, entry);
}

} // namespace Varnel
