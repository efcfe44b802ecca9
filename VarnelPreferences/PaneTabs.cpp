#include <VarnelPreferences/PaneTabs.h>

#include <algorithm>

namespace Varnel {

PaneTabs::PaneTabs() {
    connect(this, &QTabWidget::currentChanged, this, [this] { updateGeometry(); });
}

QSize PaneTabs::sizeHint() const {
    QSize size = QTabWidget::sizeHint();
    if (!currentWidget()) {
        return size;
    }
    int tallest = 0;
    for (int index = 0; index < count(); ++index) {
        tallest = std::max(tallest, widget(index)->sizeHint().height());
    }
    size.rheight() -= tallest - currentWidget()->sizeHint().height();
    return size;
}

} // namespace Varnel
