#include <VarnelShared/Text.h>

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

} // namespace Varnel
