#pragma once

#include <QStringList>

namespace tidemark {

/// Of the languages a person prefers, best first, such as "de-AT", the first that the application has texts
/// in; English where there is none.
QString bestLanguage(const QStringList &preferredLanguages);

/// Installs all texts, the toolkit's own included, in the language that the system names.
void installUserLanguage();

} // namespace tidemark
