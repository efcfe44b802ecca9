#include <VarnelStatusMenu/Linux/PanelKind.h>

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace Varnel {

namespace {

struct KnownPanel {
    QLatin1String program;
    PanelKind kind;
};
constexpr std::array knownPanels{
    KnownPanel{QLatin1String("mate-panel"), {TitleForm::label}},
    // The tray of MATE, outside of its panel.
    KnownPanel{QLatin1String("notification-area-applet"), {TitleForm::label}},
    KnownPanel{QLatin1String("gnome-shell"), {TitleForm::label}},
    KnownPanel{QLatin1String("indicator-application-service"), {TitleForm::label}},
    KnownPanel{QLatin1String("ayatana-indicator-application-service"), {TitleForm::label}},
    KnownPanel{QLatin1String("waybar"), {TitleForm::widePicture}},
    // Of Plasma: the watcher is a part of its daemon.
    KnownPanel{QLatin1String("kded5"), {TitleForm::square, KeyNames::qt}},
    KnownPanel{QLatin1String("kded6"), {TitleForm::square, KeyNames::qt}},
    KnownPanel{QLatin1String("lxqt-panel"), {TitleForm::square, KeyNames::qt, false}},
};

} // namespace

PanelKind panelKind(const QStringList& commandLine) {
    const QString program = commandLine.isEmpty() ? QString() : QFileInfo(commandLine.first()).fileName();
    const auto known = std::find_if(knownPanels.begin(), knownPanels.end(),
                                    [&program](const KnownPanel& panel) { return panel.program == program; });
    return known == knownPanels.end() ? PanelKind() : known->kind;
}

} // namespace Varnel
