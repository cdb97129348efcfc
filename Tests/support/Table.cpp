#include "support/Table.h"

#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tidemark::test {

namespace {

char16_t valueOf(char byte)
{
    return static_cast<unsigned char>(byte);
}

char16_t valueOf(QChar character)
{
    return character.unicode();
}

template <typename Text>
Text unescaped(const Text &field)
{
    static const QByteArray LETTERS = "nrtvfba0\\";
    static const QByteArray MEANINGS("\n\r\t\v\f\b\a\0\\", 9);
    using Unit = typename Text::value_type;
    Text text;
    for (qsizetype at = 0; at < field.size(); ++at) {
        if (valueOf(field[at]) != u'\\') {
            text += field[at];
            continue;
        }
        const char16_t letter = valueOf(field[++at]);
        const int digits = letter == u'x' ? 2 : letter == u'u' ? 4 : 0;
        const ushort value = digits > 0 ? field.mid(at + 1, digits).toUShort(nullptr, 16)
                                        : ushort(MEANINGS.at(LETTERS.indexOf(char(letter))));
        if constexpr (sizeof(Unit) == 1)
            text += char(value);
        else
            text += QChar(value);
        at += digits;
    }
    return text;
}

} // namespace

QByteArray TableRow::bytes(int field) const
{
    return unescaped(fields.value(field));
}

QString TableRow::text(int field) const
{
    return unescaped(QString::fromUtf8(fields.value(field)));
}

QList<TableRow> rowsOf(const char *path)
{
    QList<TableRow> rows;
    for (const QByteArray &line : contentOfFile(FilePath(path)).split('\n')) {
        if (line.isEmpty() || line.startsWith("# "))
            continue;
        rows << TableRow{line.split('\t'), line.toStdString()};
    }
    EXPECT_FALSE(rows.isEmpty()) << path;
    return rows;
}

} // namespace tidemark::test
