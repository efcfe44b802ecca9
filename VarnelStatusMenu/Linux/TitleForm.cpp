#include <VarnelStatusMenu/Linux/TitleForm.h>

#include <QFileInfo>

#include <algorithm>
#include <array>

namespace Varnel {

namespace {

struct KnownHost {
    QLatin1String program;
    TitleForm form;
};
constexpr std::array knownHosts{
    KnownHost{QLatin1String("mate-panel"), TitleForm::label},
    KnownHost{QLatin1String("notification-area-applet"), TitleForm::label}, // the tray of MATE, outside of its panel
    KnownHost{QLatin1String("gnome-shell"), TitleForm::label},
    KnownHost{QLatin1String("indicator-application-service"), TitleForm::label},
    KnownHost{QLatin1String("ayatana-indicator-application-service"), TitleForm::label},
    KnownHost{QLatin1String("waybar"), TitleForm::widePicture},
};
constexpr int longestLabel = 24;

} // namespace

TitleForm titleFormForHost(const QStringList& commandLine) {
    const QString program = commandLine.isEmpty() ? QString() : QFileInfo(commandLine.first()).fileName();
    const auto known = std::find_if(knownHosts.begin(), knownHosts.end(),
                                    [&program](const KnownHost& host) { return host.program == program; });
    return known == knownHosts.end() ? TitleForm::square : known->form;
}

TitleLines titleLines(const QString& title) {
    const QString text = title.simplified();
    const qsizetype space = text.lastIndexOf(QLatin1Char(' '));
    return space < 0 ? TitleLines{text, {}} : TitleLines{text.left(space), text.mid(space + 1)};
}

QString titleLabel(const QString& title) {
    return title.size() <= longestLabel ? title : title.left(longestLabel - 1).trimmed() + QChar(0x2026);
}

} // namespace Varnel
