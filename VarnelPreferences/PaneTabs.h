#pragma once

#include <QTabWidget>

namespace Varnel {

/// Tabs that ask for the height of the selected pane instead of the tallest one's. The width is that of the widest, so
/// that the window changes its height alone.
class PaneTabs final : public QTabWidget {
    Q_OBJECT

public:
    PaneTabs();

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }
};

} // namespace Varnel
