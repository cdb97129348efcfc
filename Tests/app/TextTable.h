#pragma once

#include "support/Testing.h"

#include <QFile>
#include <QMap>
#include <QXmlStreamReader>

namespace tidemark::test {

inline QString contentOfSource(const QString &path)
{
    QFile file(QStringLiteral(TIDEMARK_SOURCE_DIR) + u'/' + path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return QString::fromUtf8(file.readAll());
}

/// The texts of a language by their keys, as its table in the sources has them.
inline QMap<QString, QString> textTableOf(const QString &language)
{
    QMap<QString, QString> table;
    QXmlStreamReader reader(contentOfSource(u"Resources/texts/tidemark_%1.ts"_s.arg(language)));
    QString source;
    while (!reader.atEnd()) {
        if (reader.readNext() != QXmlStreamReader::StartElement)
            continue;
        if (reader.name() == u"source"_s)
            source = reader.readElementText();
        else if (reader.name() == u"translation"_s)
            table[source] = reader.readElementText();
    }
    EXPECT_FALSE(reader.hasError()) << reader.errorString().toStdString();
    return table;
}

} // namespace tidemark::test
