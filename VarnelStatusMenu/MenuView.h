#pragma once

#include <QWidget>

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

} // namespace Varnel
