#include "search/TDSearchLocation.h"

#include "text/PlainTextPattern.h"
#include "text/StringComparison.h"

#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <sys/stat.h>

using namespace Qt::Literals::StringLiterals;

namespace tidemark {

namespace {

constexpr QLatin1String URL_KEY("url");
constexpr QLatin1String IS_FOLDER_KEY("isFolder");
constexpr QLatin1String INCLUDE_SUB_FOLDERS_KEY("includeSubFolders");
constexpr QLatin1String FILE_TYPES_KEY("fileTypes");

bool existsAsFolder(const FilePath &path)
{
    struct stat status = {};
    return stat(path.cString(), &status) == 0 && S_ISDIR(status.st_mode);
}

/// The display text of other names isn't theirs alone, so those are compared as bytes.
bool areTexts(const FilePath &left, const FilePath &right)
{
    return left.bytes().isValidUtf8() && right.bytes().isValidUtf8();
}

bool isSamePath(const FilePath &left, const FilePath &right)
{
    if (left == right)
        return true;
    return areTexts(left, right) && compare(left.displayText(), right.displayText()) == 0;
}

bool beginsWith(const FilePath &path, const FilePath &beginning)
{
    if (!areTexts(path, beginning))
        return !beginning.isEmpty() && path.bytes().startsWith(beginning.bytes());
    const QString text = path.displayText();
    const PlainTextPattern pattern(beginning.displayText(), CaseRule::Exact);
    return pattern.firstRange(text, {0, text.size()}).location == 0;
}

bool covers(const TDSearchLocation &location, const FilePath &path)
{
    if (!location.isFolder)
        return isSamePath(location.path(), path);
    if (!location.includeSubFolders)
        return isSamePath(location.path(), path.deletingLastPathComponent());
    return beginsWith(path, location.path());
}

} // namespace

void TDSearchLocation::setURL(const QUrl &newUrl)
{
    url = newUrl;
    isFolder = existsAsFolder(path());
    includeSubFolders = isFolder;
}

FilePath TDSearchLocation::path() const
{
    QByteArray bytes = FilePath::fromUrl(url).bytes();
    while (bytes.size() > 1 && bytes.endsWith('/'))
        bytes.chop(1);
    return FilePath(bytes);
}

bool TDSearchLocation::isEqual(const TDSearchLocation &other) const
{
    return isSamePath(path(), other.path());
}

QByteArray TDSearchLocation::comparisonKey() const
{
    const FilePath ownPath = path();
    if (!ownPath.bytes().isValidUtf8())
        return ownPath.bytes();
    return ownPath.displayText().normalized(QString::NormalizationForm_C).toUtf8();
}

bool TDSearchLocation::isInScopeOfLocations(const QList<TDSearchLocation> &locations) const
{
    const FilePath ownPath = path();
    return std::any_of(locations.begin(), locations.end(),
                       [&](const TDSearchLocation &location) { return covers(location, ownPath); });
}

QByteArray TDSearchLocation::archived() const
{
    QJsonObject fields{{URL_KEY, QString::fromLatin1(url.toEncoded())},
                       {IS_FOLDER_KEY, isFolder},
                       {INCLUDE_SUB_FOLDERS_KEY, includeSubFolders}};
    if (fileTypes.isValid())
        fields.insert(FILE_TYPES_KEY, QJsonValue::fromVariant(fileTypes));
    return QJsonDocument(fields).toJson(QJsonDocument::Compact);
}

TDSearchLocation TDSearchLocation::unarchived(const QByteArray &archive)
{
    const QJsonObject fields = QJsonDocument::fromJson(archive).object();
    TDSearchLocation location;
    location.url = QUrl::fromEncoded(fields.value(URL_KEY).toString().toUtf8());
    location.isFolder = fields.value(IS_FOLDER_KEY).toBool();
    location.includeSubFolders = fields.value(INCLUDE_SUB_FOLDERS_KEY).toBool();
    if (const QJsonValue fileTypes = fields.value(FILE_TYPES_KEY);
        !fileTypes.isUndefined() && !fileTypes.isNull())
        location.fileTypes = fileTypes.toVariant();
    return location;
}

bool isFileAmong(const QList<TDSearchLocation> &locations, const FilePath &path)
{
    return std::any_of(locations.begin(), locations.end(), [&path](const TDSearchLocation &location) {
        return !location.isFolder && location.path() == path;
    });
}

bool containedInArray(const QString &text, const QStringList &array)
{
    return std::any_of(array.begin(), array.end(),
                       [&](const QString &element) { return compare(element, text) == 0; });
}

} // namespace tidemark
