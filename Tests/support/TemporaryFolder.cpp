#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <dirent.h>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <ostream>
#include <sys/stat.h>
#include <unistd.h>

namespace tidemark::test {

TemporaryFolder::TemporaryFolder()
{
    EXPECT_TRUE(_folder.isValid());
}

TemporaryFolder::~TemporaryFolder()
{
    // Qt's own clean-up can't name entries that aren't UTF-8.
    std::error_code ignored;
    std::filesystem::remove_all(path().cString(), ignored);
}

FilePath TemporaryFolder::path() const
{
    // Resolved, so that comparisons with resolved paths hold where the temporary folder is a link.
    return FilePath(
        QByteArray::fromStdString(std::filesystem::canonical(_folder.path().toStdString()).native()));
}

FilePath TemporaryFolder::path(const QByteArray &name) const
{
    return path().appendingPathComponent(name);
}

FilePath TemporaryFolder::write(const QByteArray &name, const QByteArray &content) const
{
    const FilePath file = path(name);
    std::filesystem::create_directories(file.deletingLastPathComponent().cString());
    writeFile(file, content);
    return file;
}

FilePath TemporaryFolder::makeFolder(const QByteArray &name) const
{
    std::filesystem::create_directories(path(name).cString());
    return path(name);
}

QByteArray TemporaryFolder::read(const QByteArray &name) const
{
    return contentOfFile(path(name));
}

QList<QByteArray> TemporaryFolder::names() const
{
    QList<QByteArray> names;
    for (const auto &entry : std::filesystem::directory_iterator(path().cString()))
        names << QByteArray::fromStdString(entry.path().filename().native());
    std::sort(names.begin(), names.end());
    return names;
}

QByteArray contentOfFile(const FilePath &path)
{
    std::ifstream file(path.cString(), std::ios::binary);
    EXPECT_TRUE(file.is_open()) << path.cString();
    return QByteArray::fromStdString(std::string(std::istreambuf_iterator<char>(file), {}));
}

void writeFile(const FilePath &path, const QByteArray &content)
{
    std::ofstream file(path.cString(), std::ios::binary | std::ios::trunc);
    file.write(content.constData(), content.size());
    file.close();
    EXPECT_TRUE(file.good()) << path.cString();
}

void setModificationDate(const FilePath &path, qint64 nanoseconds)
{
    const timespec date = {nanoseconds / 1000000000, nanoseconds % 1000000000};
    const timespec times[2] = {date, date};
    EXPECT_EQ(utimensat(AT_FDCWD, path.cString(), times, 0), 0) << path.cString();
}

QList<QByteArray> makeSpecialFiles(const TemporaryFolder &folder)
{
    constexpr dev_t ZERO_DEVICE = 0x105;
    EXPECT_EQ(mknod(folder.path("pipe").cString(), S_IFIFO | 0600, 0), 0);
    EXPECT_EQ(mknod(folder.path("socket").cString(), S_IFSOCK | 0600, 0), 0);
    QList<QByteArray> names = {"pipe", "socket"};
    if (mknod(folder.path("device").cString(), S_IFCHR | 0600, ZERO_DEVICE) == 0)
        names << "device";
    return names;
}

QList<QByteArray> namesOfEveryByte()
{
    QList<QByteArray> names;
    for (int byte = 1; byte < 256; ++byte) {
        if (byte != '/' && byte != '.')
            names << QByteArray(1, char(byte)) + 'x';
    }
    return names;
}

bool runsAsRoot()
{
    return geteuid() == 0;
}

} // namespace tidemark::test

QT_BEGIN_NAMESPACE

void PrintTo(const QByteArray &bytes, std::ostream *out)
{
    *out << '"';
    for (const char byte : bytes) {
        if (byte >= ' ' && byte < 0x7F && byte != '\\' && byte != '"')
            *out << byte;
        else
            *out << "\\x" << QByteArray(1, byte).toHex().constData();
    }
    *out << '"';
}

void PrintTo(const QString &text, std::ostream *out)
{
    *out << '"';
    for (const QChar unit : text) {
        if (unit >= u' ' && unit < u'\x7F')
            *out << unit.toLatin1();
        else
            *out << "\\u" << QByteArray::number(unit.unicode(), 16).rightJustified(4, '0').constData();
    }
    *out << '"';
}

QT_END_NAMESPACE
