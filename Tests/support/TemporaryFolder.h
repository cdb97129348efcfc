#pragma once

#include "foundation/FilePath.h"

#include <QByteArray>
#include <QList>
#include <QTemporaryDir>

#include <iosfwd>

namespace tidemark::test {

/// A folder of its own for one test, removed with everything in it afterwards.
class TemporaryFolder
{
public:
    TemporaryFolder();
    ~TemporaryFolder();

    FilePath path() const;
    /// The full path of a name below the folder; no such file need exist.
    FilePath path(const QByteArray &name) const;

    /// Writes a file, with the folders above it, and returns its full path.
    FilePath write(const QByteArray &name, const QByteArray &content) const;
    FilePath makeFolder(const QByteArray &name) const;
    QByteArray read(const QByteArray &name) const;
    /// Names of the entries of the folder, sorted.
    QList<QByteArray> names() const;

private:
    QTemporaryDir _folder;
};

QByteArray contentOfFile(const FilePath &path);
void writeFile(const FilePath &path, const QByteArray &content);
/// Sets the modification date to this many nanoseconds since 1970.
void setModificationDate(const FilePath &path, qint64 nanoseconds);
/// A pipe, a socket and, where it is allowed, an endless device; their names.
QList<QByteArray> makeSpecialFiles(const TemporaryFolder &folder);
/// One for each byte that a name can hold, in their order; the dot is left out, as it hides files.
QList<QByteArray> namesOfEveryByte();
/// True when permission bits mean nothing to this process.
bool runsAsRoot();

} // namespace tidemark::test

QT_BEGIN_NAMESPACE
/// Lets test messages show bytes and texts.
void PrintTo(const QByteArray &bytes, std::ostream *out);
void PrintTo(const QString &text, std::ostream *out);
QT_END_NAMESPACE
