#include <VarnelStatusMenu/MenuFonts.h>

#include <QApplication>

namespace Varnel::MenuFonts {

namespace {

QFont menuFont(int pixels) {
    QFont font = row();
    font.setPixelSize(pixels);
    return font;
}

} // namespace

QFont row() {
    return QApplication::font("QMenu");
}

QFont axisLabel() {
    return menuFont(9);
}

QFont emptyChart() {
    return menuFont(11);
}

QFont inspector() {
    QFont font = QApplication::font();
    font.setPixelSize(10);
    font.setWeight(QFont::Medium);
    return font;
}

} // namespace Varnel::MenuFonts
