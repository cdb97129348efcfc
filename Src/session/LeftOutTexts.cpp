#include "session/LeftOutTexts.h"

#include "foundation/LocalizedText.h"

#include <QDir>
#include <QStringList>

#include <cerrno>

namespace tidemark {

namespace {

constexpr qsizetype MOST_NAMED = 20;

/// With "~" for the home folder.
QString shownPath(const FilePath &path)
{
    const QString home = QDir::homePath();
    const QString text = path.displayText();
    return text.startsWith(home + u'/') ? u'~' + text.mid(home.size()) : text;
}

void appendShares(QStringList &lines, const QList<LeftOut::Share> &shares, const char *format,
                  const char *rest)
{
    quint64 others = 0;
    for (qsizetype index = 0; index < shares.size(); ++index) {
        const LeftOut::Share &share = shares[index];
        if (index < MOST_NAMED)
            lines << formatted(localizedString(format),
                               {shownPath(FilePath(share.name)), grouped(share.count)});
        else
            others += share.count;
    }
    if (others > 0)
        lines << formatted(localizedString(rest), {grouped(others)});
}

QString textOf(const LeftOut::BrokenIgnoreFile &file)
{
    if (file.errorNumber != 0)
        return formatted(localizedString("The ignore file “%@” could not be read."), {shownPath(file.path)});
    QStringList patterns;
    for (const QByteArray &pattern : file.faultyPatterns.first(qMin(MOST_NAMED, file.faultyPatterns.size())))
        patterns << QString::fromUtf8(pattern);
    return formatted(localizedString("In the ignore file “%@” these patterns match nothing: %@"),
                     {shownPath(file.path), patterns.join(u' ')});
}

} // namespace

quint64 countInStatus(const LeftOut &leftOut)
{
    return leftOut.total() - leftOut[LeftOutReason::Unreadable];
}

QString leftOutStatus(const LeftOut &leftOut)
{
    return formatted(localizedString(" • %@ left out"), {grouped(countInStatus(leftOut))});
}

QString leftOutDetails(const LeftOut &leftOut)
{
    QStringList lines;
    const auto append = [&](LeftOutReason reason, const char *format) {
        if (leftOut[reason] > 0)
            lines << formatted(localizedString(format), {grouped(leftOut[reason])});
    };
    append(LeftOutReason::Kind, "Other kinds of files: %@");
    appendShares(lines, leftOut.byPattern, "Pattern “%@”: %@", "Other patterns: %@");
    appendShares(lines, leftOut.byIgnoreFile, "Ignore file “%@”: %@", "Other ignore files: %@");
    append(LeftOutReason::Hidden, "Hidden: %@");
    append(LeftOutReason::Size, "Larger than the limit: %@");
    append(LeftOutReason::Link, "Links: %@");
    append(LeftOutReason::Special, "Devices, pipes and sockets: %@");
    append(LeftOutReason::OwnBackup, "Backups of replaced files: %@");
    append(LeftOutReason::FoundBefore, "Searched already by another path: %@");
    append(LeftOutReason::Unreadable, "Could not be read: %@");
    for (const LeftOut::BrokenIgnoreFile &file : leftOut.brokenIgnoreFiles)
        lines << textOf(file);
    lines << localizedString("A folder that is left out counts once.");
    return lines.join(u'\n');
}

quint64 wouldBeSearchedOnDemand(const LeftOut &leftOut)
{
    return leftOut[LeftOutReason::Kind] + leftOut[LeftOutReason::Pattern] +
           leftOut[LeftOutReason::IgnoreFile] + leftOut[LeftOutReason::Hidden] + leftOut[LeftOutReason::Size];
}

QString nothingFoundText(quint64 searchedFiles, quint64 leftOutFiles)
{
    const QString searched = searchedFiles == 1 ? localizedString("No matches in %@ file.")
                                                : localizedString("No matches in %@ files.");
    const QString left = leftOutFiles == 1 ? localizedString("%@ file was left out…")
                                           : localizedString("%@ files were left out…");
    return formatted(searched, {grouped(searchedFiles)}) + u' ' + formatted(left, {grouped(leftOutFiles)});
}

} // namespace tidemark
