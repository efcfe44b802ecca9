#pragma once

#include <QString>

namespace Varnel {

/// Loads the catalogue of the user's language from this folder, with Qt's own beside it, and has the windows laid out
/// in the direction of its script. The program itself is in English: without a catalogue for the language it stays so,
/// from left to right. For the life of the application; to be called once, before the first window.
void loadCatalogue(const QString& folder);

/// The first of the languages, as "de" or "pt-BR", for which the folder has a catalogue; empty where there is none, or
/// where English comes first.
QString catalogueLanguage(const QStringList& languages, const QString& folder);

} // namespace Varnel
