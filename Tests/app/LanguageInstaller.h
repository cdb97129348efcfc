#pragma once

#include "foundation/LocalizedText.h"

#include <QCoreApplication>
#include <QSet>
#include <QTranslator>

namespace tidemark::test {

/// The texts of a language for as long as the object lives.
class LanguageInstaller
{
public:
    explicit LanguageInstaller(const QString &language) : _before(translators())
    {
        installLocalizedTexts(language);
    }
    ~LanguageInstaller()
    {
        const QSet<QTranslator *> installed = translators() - _before;
        qDeleteAll(installed);
    }
    Q_DISABLE_COPY_MOVE(LanguageInstaller)

private:
    static QSet<QTranslator *> translators()
    {
        const auto found =
            QCoreApplication::instance()->findChildren<QTranslator *>(QString(), Qt::FindDirectChildrenOnly);
        return {found.begin(), found.end()};
    }

    QSet<QTranslator *> _before;
};

} // namespace tidemark::test
