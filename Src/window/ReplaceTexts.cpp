#include "window/ReplaceTexts.h"

#include "foundation/LocalizedText.h"

#include <QLocale>

#include <map>

namespace tidemark {

namespace {

/// Line ends in it are shown, so that it can't look like something else than the one text that it is.
QString onOneLine(QString text)
{
    for (QChar &character : text) {
        if ((character >= u'\n' && character <= u'\r') || character == u'\x85' || character == u'\u2028' ||
            character == u'\u2029')
            character = u'\u23CE';
    }
    return text;
}

QString linesOf(const TDSelectedMatchReplacement::FileFailure &failure)
{
    const QString lines = onOneLine(failure.path.displayText()) + u'\n';
    if (failure.backup.isEmpty())
        return lines;
    const QString backup = onOneLine(failure.backup.displayText());
    return lines + QStringLiteral("    ") + formatted(localizedString("old content in %@"), {backup}) + u'\n';
}

} // namespace

QString failedFilesText(const std::vector<TDSelectedMatchReplacement::FileFailure> &failures)
{
    struct Group
    {
        qint64 count = 0;
        QString lines;
    };
    std::map<RewriteProblem, Group> groups;
    for (const auto &failure : failures) {
        Group &group = groups[failure.problem];
        ++group.count;
        group.lines += linesOf(failure);
    }
    QStringList texts;
    for (const auto &[problem, group] : groups)
        texts << formatted(localizedString("%@ (%@):"),
                           {textOfProblem(problem), QLocale().toString(group.count)}) +
                     u'\n' + group.lines;
    return texts.join(u'\n').trimmed();
}

} // namespace tidemark
