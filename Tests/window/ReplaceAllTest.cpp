#include "support/PlainUser.h"
#include "support/TimeLimit.h"
#include "support/gui/OpenWindow.h"

#include "foundation/FileSystemCalls.h"
#include "foundation/TDFileCommon.h"
#include "window/results/FolderTexts.h"
#include "window/results/ResultsTreeModel.h"

#include <QDirIterator>
#include <QPlainTextEdit>
#include <QRegularExpression>
#include <QStringDecoder>

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <sys/stat.h>

namespace tidemark::test {

namespace {

constexpr int HEADERS = rounds(3000);
constexpr qint64 OLD = 1234567890000000000;

/// Thousands of files needn't survive a power failure here.
class WithoutSync : public FileSystemCalls
{
public:
    WithoutSync() { setCurrent(this); }
    ~WithoutSync() override { setCurrent(nullptr); }
    int sync(int) override { return 0; }
    int syncFileSystem(int) override { return 0; }
};

class ReplaceAllTest : public WindowTest
{
protected:
    ReplaceAllTest()
    {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, false);
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_IGNORE_CASE, false);
    }

    /// Copies of this system's own C headers, all with the same old date.
    void copyHeaders(const std::function<bool(const QByteArray &)> &isWanted)
    {
        QDirIterator headers(u"/usr/include"_s, {u"*.h"_s}, QDir::Files | QDir::NoSymLinks,
                             QDirIterator::Subdirectories);
        while (headers.hasNext() && contents.size() < HEADERS) {
            const QByteArray content = contentOfFile(FilePath(headers.next().toUtf8()));
            if (!isWanted(content))
                continue;
            const QByteArray name =
                QByteArray::number(contents.size() / 200) + '/' + QByteArray::number(contents.size()) + ".h";
            setModificationDate(folder.write(name, content), OLD);
            contents.append({name, content});
        }
    }

    /// Searches and replaces everything in the window, then looks at each file.
    void replaceAllAndCompare(const QString &findText, const QString &replaceText,
                              const std::function<QByteArray(const QByteArray &)> &expected)
    {
        const WithoutSync quick;
        OpenWindow window(application);
        window.searchIn(folder.path(), findText);
        window.search();
        window.replaceAll(replaceText);
        EXPECT_EQ(window.sheet(), nullptr) << (window.sheet() ? qPrintable(window.sheet()->text()) : "");
        qsizetype changed = 0;
        for (const auto &[name, content] : std::as_const(contents)) {
            const QByteArray wanted = isUtf8(content) ? expected(content) : content;
            ASSERT_EQ(folder.read(name), wanted) << name.constData();
            const auto date = TDFileCommon::fileModificationDate(folder.path(name));
            ASSERT_EQ(date->nanoseconds == OLD, wanted == content) << name.constData();
            changed += wanted != content;
        }
        EXPECT_GT(changed, contents.size() / 10);
    }

    static bool isUtf8(const QByteArray &content)
    {
        QStringDecoder decoder(QStringDecoder::Utf8, QStringDecoder::Flag::Stateless);
        const QString decoded = decoder.decode(content);
        return !decoder.hasError() && !decoded.isNull();
    }

    QList<std::pair<QByteArray, QByteArray>> contents;
};

TEST_F(ReplaceAllTest, PlainTextEqualsReplacingTheBytes)
{
    copyHeaders([](const QByteArray &) { return true; });
    if (contents.isEmpty())
        GTEST_SKIP() << "This system has no headers in /usr/include.";
    replaceAllAndCompare(u"int"_s, u"whole number"_s,
                         [](QByteArray content) { return content.replace("int", "whole number"); });
}

TEST_F(ReplaceAllTest, SwappedGroupsEqualAnotherLibrarysWork)
{
    // Positions in an expression's line count bytes, so that behind other characters they are shifted.
    copyHeaders([](const QByteArray &content) {
        return std::all_of(content.begin(), content.end(), [](char byte) { return byte >= 0; });
    });
    if (contents.isEmpty())
        GTEST_SKIP() << "This system has no headers in /usr/include.";
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_REGULAR_EXPRESSION, true);
    const QRegularExpression expression(u"([a-z]+)_([a-z]+)"_s);
    replaceAllAndCompare(u"([a-z]+)_([a-z]+)"_s, u"$2_$1"_s, [&expression](const QByteArray &content) {
        // One character for each byte.
        QString text = QString::fromLatin1(content);
        return text.replace(expression, u"\\2_\\1"_s).toLatin1();
    });
}

/// No room for backups of files whose path ends so.
class FullBackupFolder : public FileSystemCalls
{
public:
    explicit FullBackupFolder(QByteArray namePart) : _namePart(std::move(namePart)) { setCurrent(this); }
    ~FullBackupFolder() override { setCurrent(nullptr); }

    int open(const char *path, int flags, mode_t mode) override
    {
        if ((flags & O_CREAT) == 0 || !QByteArrayView(path).contains(_namePart))
            return FileSystemCalls::open(path, flags, mode);
        errno = ENOSPC;
        return -1;
    }

private:
    const QByteArray _namePart;
};

TEST_F(ReplaceAllTest, EachFailureIsListedOnceAndTheRestIsWritten)
{
    UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_CREATE_BACKUP_BEFORE_REPLACING, true);
    const QByteArray before = "a tide and a tide\r\nno match\r\n";
    const QByteArray after = "a ebb and a ebb\r\nno match\r\n";
    for (int file = 0; file < 40; ++file)
        PlainUser::own(folder.write("file" + QByteArray::number(file) + ".txt", before));
    PlainUser::own(folder.path());
    OpenWindow window(application);
    window.searchIn(folder.path(), u"tide"_s);
    window.search();
    ASSERT_EQ(window.document.findResults().count(), 40);
    writeFile(folder.path("file3.txt"), "changed outside: tide\n");
    setModificationDate(folder.path("file3.txt"), OLD);
    chmod(folder.path("file7.txt").cString(), 0444);
    unlink(folder.path("file11.txt").cString());
    const QList<int> failing = {3, 7, 11, 13};
    const QMap<int, QString> reasons = {{3, u"Changed since the search"_s},
                                        {7, u"No permission"_s},
                                        {11, u"Not there any more"_s},
                                        {13, u"No room on the disk"_s}};
    {
        const FullBackupFolder full("file13");
        const PlainUser user;
        window.replaceAll(u"ebb"_s);
    }
    ASSERT_NE(window.sheet(), nullptr);
    const auto *list = window.sheet()->findChild<QPlainTextEdit *>();
    ASSERT_NE(list, nullptr);
    const QString path = folder.path().displayText();
    EXPECT_EQ(list->toPlainText(), u"Changed since the search (1):\n%1/file3.txt\n\n"
                                   "Not there any more (1):\n%1/file11.txt\n\n"
                                   "No permission (1):\n%1/file7.txt\n\n"
                                   "No room on the disk (1):\n%1/file13.txt"_s.arg(path));
    for (int file = 0; file < 40; ++file) {
        const QString name = u"file%1.txt"_s.arg(file);
        const bool fails = failing.contains(file);
        EXPECT_EQ(window.sheet()->text().contains(name), fails) << qPrintable(name);
        EXPECT_TRUE(fails || folder.read(name.toLatin1()) == after) << qPrintable(name);
    }
    EXPECT_EQ(folder.read("file3.txt"), "changed outside: tide\n");
    EXPECT_EQ(folder.read("file7.txt"), before);
    EXPECT_EQ(folder.read("file13.txt"), before);
    EXPECT_EQ(window.document.resultsStatusText(), u"Replaced 72 matches in 36 files"_s);
    const auto &model = dynamic_cast<const ResultsTreeModel &>(*window.outline()->model());
    for (const auto &file : window.document.findResults().files()) {
        const QString line = file->matchLines().first()->matchLine()->matchLineString();
        const int number = file->filenameMatchLineSortKey().remove(u"file"_s).remove(u".txt"_s).toInt();
        const QModelIndex row = model.indexOf(file.get());
        const QString folderColumn = row.siblingAtColumn(ResultsTreeModel::FolderColumn).data().toString();
        EXPECT_EQ(folderColumn, reasons.value(number, folderForPeople(file->displayPath())));
        EXPECT_TRUE(row.data(Qt::ToolTipRole).toString().contains(reasons.value(number)));
        EXPECT_EQ(line, failing.contains(number) ? u"a tide and a tide\r\n"_s : u"a ebb and a ebb\r\n"_s);
    }
    window.sheet()->close();

    // A second run writes what can be written now; what was changed outside has to be searched again first.
    chmod(folder.path("file7.txt").cString(), 0644);
    {
        const PlainUser user;
        window.replaceAll(u"ebb"_s);
    }
    ASSERT_NE(window.sheet(), nullptr);
    EXPECT_TRUE(window.sheet()->text().contains(u"file11.txt, file3.txt"_s))
        << qPrintable(window.sheet()->text());
    EXPECT_FALSE(window.sheet()->text().contains(u"file7.txt"_s));
    window.sheet()->close();
    EXPECT_EQ(folder.read("file7.txt"), after);
    EXPECT_EQ(folder.read("file13.txt"), after);
    window.search();
    {
        const PlainUser user;
        window.replaceAll(u"ebb"_s);
    }
    EXPECT_EQ(window.sheet(), nullptr);
    EXPECT_EQ(folder.read("file3.txt"), "changed outside: ebb\n");
}

} // namespace

} // namespace tidemark::test
