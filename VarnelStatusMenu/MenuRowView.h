#pragma once

#include <VarnelStatusMenu/MenuView.h>

namespace Varnel {

/// One line of text in the menu, 250 x 22 points: a label at the leading edge, and a value at the trailing one. Where
/// room is short the label is cut before the value.
class MenuRowView : public MenuView {
    Q_OBJECT

public:
    /// An empty `value` leaves the whole row to the label. `wholeText` is what a screen reader says, and the tooltip
    /// where something of it is not drawn.
    MenuRowView(QString label, QString value, QString wholeText, QWidget* parent = nullptr);

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    struct Texts {
        QString label;
        QString value;
    };
    Texts drawnTexts() const;
    QRect textRect() const;

    QString m_label;
    QString m_value;
    QString m_wholeText;
};

} // namespace Varnel
