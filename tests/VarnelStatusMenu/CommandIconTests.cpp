#include <VarnelStatusMenu/Menu/CommandIcon.h>
#include <VarnelStatusMenu/Menu/StatusMenuPanel.h>
#include <VarnelStatusMenu/Menu/StatusPopup.h>

#include <tests/Support/Contrast.h>
#include <tests/Support/EventLoop.h>

#include <QAbstractButton>
#include <QApplication>
#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

using namespace Varnel;
using namespace Varnel::Testing;

namespace {

const QPalette lightPalette(QColor(0xef, 0xef, 0xef));
const QPalette darkPalette = [] {
    QPalette palette(QColor(0x35, 0x36, 0x3a), QColor(0x2b, 0x2c, 0x30));
    palette.setColor(QPalette::Highlight, QColor(0x1d, 0x5b, 0xb8));
    palette.setColor(QPalette::HighlightedText, Qt::white);
    return palette;
}();

StatusMenu menu() {
    StatusPresentation presentation; // Refresh is disabled, Settings is not
    return statusMenu(presentation);
}

/// An icon theme with black icons, as many are that are made for light windows.
class BlackIconTheme {
public:
    BlackIconTheme() {
        const QDir folder(m_folder.filePath(QStringLiteral("black/16")));
        folder.mkpath(QStringLiteral("."));
        QImage icon(16, 16, QImage::Format_ARGB32);
        icon.fill(Qt::black);
        icon.save(folder.filePath(QStringLiteral("preferences-system.png")));
        icon.save(folder.filePath(QStringLiteral("view-refresh.png")));
        QFile index(folder.filePath(QStringLiteral("../index.theme")));
        if (index.open(QIODevice::WriteOnly)) {
            index.write("[Icon Theme]\nName=black\nDirectories=16\n[16]\nSize=16\n");
        }
        QIcon::setThemeSearchPaths({m_folder.path()});
        QIcon::setThemeName(QStringLiteral("black"));
    }
    ~BlackIconTheme() {
        QIcon::setThemeName({});
        QIcon::setThemeSearchPaths(m_before);
    }
    BlackIconTheme(const BlackIconTheme&) = delete;
    BlackIconTheme& operator=(const BlackIconTheme&) = delete;

private:
    QTemporaryDir m_folder;
    QStringList m_before = QIcon::themeSearchPaths();
};

/// How the icon at the left end of a row stands out from what the row has at its very edge.
double iconContrast(const QImage& row) {
    const QColor background = row.pixelColor(4, row.height() / 2);
    double strongest = 1;
    for (int y = 0; y < row.height(); ++y) {
        for (int x = 4; x < 26; ++x) {
            strongest = std::max(strongest, contrastOf(row.pixelColor(x, y), background));
        }
    }
    return strongest;
}

struct Contrasts {
    double plain;
    double highlighted;
    double disabled;
};

void expectReadable(const Contrasts& contrasts, const char* where) {
    EXPECT_GT(contrasts.plain, 4) << where;
    EXPECT_GT(contrasts.highlighted, 3) << where;
    EXPECT_GT(contrasts.disabled, 1.2) << where;
    EXPECT_LT(contrasts.disabled, 0.7 * contrasts.plain) << where;
}

Contrasts contrastsIn(StatusPopupMenu& popup) {
    QList<QAction*> commands = popup.actions();
    commands.removeIf([](const QAction* action) { return action->icon().isNull(); });
    const auto rowOf = [&popup](QAction* action) {
        return iconContrast(popup.grab(popup.actionGeometry(action)).toImage());
    };
    popup.setActiveAction(nullptr);
    const double plain = rowOf(commands.last());
    popup.setActiveAction(commands.last());
    return {plain, rowOf(commands.last()), rowOf(commands.first())};
}

Contrasts contrastsIn(StatusMenuPanel& panel) {
    const auto buttons = panel.findChildren<QAbstractButton*>();
    const auto rowOf = [](QWidget* row) { return iconContrast(row->grab().toImage()); };
    buttons[1]->clearFocus();
    const double plain = rowOf(buttons[1]);
    buttons[1]->setFocus();
    return {plain, rowOf(buttons[1]), rowOf(buttons[0])};
}

} // namespace

TEST(CommandIcon, IsReadableInEveryMenuOnEveryRowAndAfterAChangeOfTheTheme) {
    const BlackIconTheme theme;
    const QPalette before = QApplication::palette();
    QApplication::setPalette(lightPalette);
    StatusPopupMenu popup(menu());
    popup.popup({0, 0});
    StatusMenuPanel panel(menu());
    panel.show();
    panel.activateWindow();
    settle();
    for (const auto& [name, palette] : {std::pair("light", lightPalette), {"dark", darkPalette}}) {
        QApplication::setPalette(palette);
        settle();
        expectReadable(contrastsIn(popup), name);
        panel.activateWindow();
        expectReadable(contrastsIn(panel), name);
    }
    QApplication::setPalette(before);
}
