#include "search/LeaveOutPattern.h"

#include "search/IgnorePatterns.h"

#include <algorithm>

namespace tidemark {

namespace {

/// What matches exactly these bytes. Where they are no text a question mark stands for each.
QString escaped(const QByteArray &bytes)
{
    if (!bytes.isValidUtf8()) {
        QString pattern;
        for (const char byte : bytes)
            pattern += uchar(byte) < 0x80 ? escaped(QByteArray(1, byte)) : QStringLiteral("?");
        return pattern;
    }
    QString pattern;
    for (const QChar character : QString::fromUtf8(bytes)) {
        const char latin = character.toLatin1();
        if (QByteArrayView("*?[\\, ").contains(latin) || (latin >= '\t' && latin <= '\r'))
            pattern += u'\\';
        pattern += character;
    }
    return pattern;
}

/// What of the file's path lies below the location, or nothing.
QByteArray pathBelow(const TDSearchLocation &location, const FilePath &file)
{
    QByteArray folder = location.path().bytes();
    if (!folder.endsWith('/'))
        folder += '/';
    return location.isFolder && file.bytes().startsWith(folder) ? file.bytes().mid(folder.size())
                                                                : QByteArray();
}

} // namespace

QString patternForFolderOf(const FilePath &file, const QList<TDSearchLocation> &locations)
{
    for (const TDSearchLocation &location : locations) {
        const QByteArray path = pathBelow(location, file);
        if (!path.isEmpty())
            return path.contains('/') ? u'/' + escaped(path.first(path.lastIndexOf('/'))) + u'/' : QString();
    }
    return {};
}

QString patternForFilesLike(const FilePath &file)
{
    const QByteArray name = file.lastPathComponent();
    const qsizetype dot = name.lastIndexOf('.');
    if (dot > 0 && dot + 1 < name.size())
        return u'*' + escaped(name.mid(dot));
    const QString pattern = escaped(name);
    return pattern.startsWith(u'!') ? u'\\' + pattern : pattern;
}

QString withPattern(const QString &patterns, const QString &pattern)
{
    const IgnorePatterns parsed = IgnorePatterns::ofField(patterns, CaseRule::Exact);
    const QByteArray bytes = pattern.toUtf8();
    const bool isThere = std::any_of(parsed.all().begin(), parsed.all().end(),
                                     [&bytes](const IgnorePattern &each) { return each.text() == bytes; });
    if (isThere)
        return patterns;
    // A backslash at the end would take the blank into its pattern, which matches nothing anyway.
    const QString before = patterns.trimmed();
    return before.isEmpty() ? pattern : before + u' ' + pattern;
}

std::optional<PatternFault> faultOfPatterns(const QString &patterns)
{
    const IgnorePatterns parsed = IgnorePatterns::ofField(patterns, CaseRule::Exact);
    for (const IgnorePattern &pattern : parsed.all()) {
        if (pattern.fault() != IgnorePattern::Fault::None)
            return PatternFault{QString::fromUtf8(pattern.text()), pattern.fault()};
    }
    return {};
}

} // namespace tidemark
