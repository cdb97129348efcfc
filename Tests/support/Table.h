#pragma once

#include <QByteArrayList>
#include <QString>

#include <string>

namespace tidemark::test {

/// One line of a table of cases. Fields that the line leaves out at its end are empty.
struct TableRow
{
    /// What stands there with C's escapes resolved: \xNN is a byte, or a character; \uNNNN only a character.
    QByteArray bytes(int field) const;
    QString text(int field) const;
    quint64 number(int field) const { return bytes(field).toULongLong(nullptr, 0); }
    bool flag(int field) const { return bytes(field) == "yes"; }

    QByteArrayList fields;
    std::string line; ///< as it stands in the table, for messages
};

/// The rows of a file of fields with tabs between them; lines that begin with "# " are remarks.
QList<TableRow> rowsOf(const char *path);

} // namespace tidemark::test
