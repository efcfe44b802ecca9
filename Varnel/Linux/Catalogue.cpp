#include <Varnel/Linux/Catalogue.h>

#include <QApplication>
#include <QFileInfo>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

namespace Varnel {

namespace {
void install(const QString& file, const QString& folder) {
    auto* translator = new QTranslator(qApp);
    if (translator->load(file, folder)) {
        QCoreApplication::installTranslator(translator);
    }
}
} // namespace

QString catalogueLanguage(const QStringList& languages, const QString& folder) {
    for (const QString& language : languages) {
        if (language.section(QLatin1Char('-'), 0, 0) == QLatin1String("en")) {
            break;
        }
        for (const QString& name : {language, language.section(QLatin1Char('-'), 0, 0)}) {
            if (QFileInfo(folder + QStringLiteral("/varnel_") + name + QStringLiteral(".qm")).isFile()) {
                return name;
            }
        }
    }
    return {};
}

void loadCatalogue(const QString& folder) {
    const QString language = catalogueLanguage(QLocale().uiLanguages(), folder);
    if (!language.isEmpty()) {
        install(QStringLiteral("qtbase_") + language, QLibraryInfo::path(QLibraryInfo::TranslationsPath));
        install(QStringLiteral("varnel_") + language, folder);
    }
    // Of the texts, not of the locale: English stays as it is in every one.
    QGuiApplication::setLayoutDirection(language.isEmpty() ? Qt::LeftToRight : QLocale(language).textDirection());
}

} // namespace Varnel
