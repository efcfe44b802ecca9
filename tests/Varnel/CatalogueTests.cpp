#include <Varnel/Linux/Catalogue.h>

#include "../Support/Files.h"

#include <QCoreApplication>
#include <QGuiApplication>
#include <QLocale>
#include <QTemporaryDir>
#include <QTranslator>

#include <gtest/gtest.h>

namespace Varnel {
namespace {

TEST(Catalogue, IsThatOfTheFirstLanguageThatHasOneUnlessEnglishComesFirst) {
    const QTemporaryDir folder;
    Testing::putFile(folder.filePath(QStringLiteral("varnel_de.qm")), "");
    Testing::putFile(folder.filePath(QStringLiteral("varnel_pt-BR.qm")), "");
    const struct {
        const char* languages;
        const char* catalogue;
    } rows[] = {
        {"de-AT,de,en", "de"}, {"pt-BR,pt", "pt-BR"}, {"pt-PT", ""}, {"en-US,de", ""}, {"fr,de", "de"}, {"C", ""},
    };
    for (const auto& row : rows) {
        const QStringList languages = QString::fromLatin1(row.languages).split(QLatin1Char(','));
        EXPECT_EQ(catalogueLanguage(languages, folder.path()), QString::fromLatin1(row.catalogue)) << row.languages;
    }
}

// German sentences in Hebrew letters.
TEST(Catalogue, TurnsTheLayoutRoundOnlyWithItsSentences) {
    const QString english = QStringLiteral("Refresh");
    const struct {
        const char* locale;
        Qt::LayoutDirection direction;
        bool isTranslated;
    } rows[] = {
        {"he_IL", Qt::RightToLeft, true},
        {"ar_EG", Qt::LeftToRight, false},
        {"en_IL", Qt::LeftToRight, false},
    };
    for (const auto& row : rows) {
        QLocale::setDefault(QLocale(QString::fromLatin1(row.locale)));
        loadCatalogue(QStringLiteral(VARNEL_MIRRORED_CATALOGUE));
        EXPECT_EQ(QGuiApplication::layoutDirection(), row.direction) << row.locale;
        EXPECT_EQ(QCoreApplication::translate("StatusMenu", "Refresh") != english, row.isTranslated) << row.locale;
        qDeleteAll(qApp->findChildren<QTranslator*>());
    }
    QLocale::setDefault(QLocale::system());
    QGuiApplication::setLayoutDirection(Qt::LeftToRight);
}

} // namespace
} // namespace Varnel
