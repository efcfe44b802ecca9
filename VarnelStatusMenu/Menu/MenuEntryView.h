#pragma once

#include <VarnelStatusMenu/Menu/StatusMenu.h>

#include <QWidget>

#include <memory>

namespace Varnel {

/// An entry of the menu that is a widget of its own: 250 points wide and of a fixed height, and wider where the menu
/// is.
class MenuView : public QWidget {
    Q_OBJECT

public:
    static constexpr int standardWidth = 250;

    explicit MenuView(int height, QWidget* parent = nullptr);

    /// For a container that adds something of its own to the width that is asked for.
    void setPreferredWidth(int width) { m_preferredWidth = width; }

    QSize sizeHint() const override { return {m_preferredWidth, m_height}; }

private:
    int m_height;
    int m_preferredWidth = standardWidth;
};

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

/// The widget that shows an entry of the menu: chart, row, error or spacer; none for separators and commands, which
/// every kind of menu draws in the way of the desktop.
std::unique_ptr<MenuView> menuEntryView(const StatusMenuEntry& entry);

} // namespace Varnel
