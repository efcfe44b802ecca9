#include <VarnelShared/Text.h>

#include <QLocale>
#include <QTextBoundaryFinder>

namespace Varnel {

QString firstCharacters(const QString& text, int count) {
    QTextBoundaryFinder finder(QTextBoundaryFinder::Grapheme, text);
    for (int found = 0; found < count; ++found) {
        if (finder.toNextBoundary() < 0) {
            return text;
        }
    }
    return text.left(finder.position());
}

QString kilowattsText(double kilowatts, const QLocale& locale) {
    return locale.toString(kilowatts, 'f', 2) + QStringLiteral(" kW");
}

} // namespace Varnel
