#include "app/UserLanguage.h"

#include "foundation/LocalizedText.h"

#include <QCoreApplication>
#include <QLibraryInfo>
#include <QLocale>
#include <QTranslator>

#include <memory>

namespace tidemark {

QString bestLanguage(const QStringList &preferredLanguages)
{
    static const QStringList available = {QStringLiteral("en"), QStringLiteral("de"), QStringLiteral("fr")};
    for (const QString &preferred : preferredLanguages) {
        QString language = preferred.section(u'-', 0, 0).section(u'_', 0, 0);
        if (available.contains(language))
            return language;
    }
    return available.first();
}

void installUserLanguage()
{
    const QString language = bestLanguage(QLocale::system().uiLanguages());
    // The toolkit's texts come with the system, which may lack them.
    auto toolkitTexts = std::make_unique<QTranslator>();
    if (toolkitTexts->load(QStringLiteral("qtbase_") + language,
                           QLibraryInfo::path(QLibraryInfo::TranslationsPath))) {
        toolkitTexts->setParent(QCoreApplication::instance());
        QCoreApplication::installTranslator(toolkitTexts.release());
    }
    installLocalizedTexts(language);
}

} // namespace tidemark
