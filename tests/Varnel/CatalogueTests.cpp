#include <Varnel/Linux/Catalogue.h>

#include "../Support/Files.h"

#include <QTemporaryDir>

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

} // namespace
} // namespace Varnel
