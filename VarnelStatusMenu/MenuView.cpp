#include <VarnelStatusMenu/MenuView.h>

namespace Varnel {

MenuView::MenuView(int height, QWidget* parent)
    : QWidget(parent)
    , m_height(height) {
    setSizePolicy(QSizePolicy::Minimum, QSizePolicy::Fixed);
}

} // namespace Varnel
