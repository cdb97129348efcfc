#include "session/ReplaceTexts.h"

#include "foundation/LocalizedText.h"
#include "text/CharacterSets.h"

#include <map>

namespace tidemark {

namespace {

constexpr qsizetype LONGEST_TEXT_SHOWN = 60;

/// Line ends in it are shown, so that it can't look like something else than the one text that it is.
QString withVisibleNewlines(QString text)
{
    for (QChar &character : text) {
        if (isNewlineCharacter(character.unicode()))
            character = u'\u23CE';
    }
    return text;
}

QString shortened(const QString &text)
{
    if (text.size() <= LONGEST_TEXT_SHOWN)
        return text;
    qsizetype left = LONGEST_TEXT_SHOWN / 2;
    qsizetype right = LONGEST_TEXT_SHOWN - left - 1;
    // No character is cut in two.
    left -= text[left - 1].isHighSurrogate() ? 1 : 0;
    right -= text[text.size() - right].isLowSurrogate() ? 1 : 0;
    return text.first(left) + u'\u2026' + text.last(right);
}

QString withText(const char *format, const QString &text)
{
    return formatted(localizedString(format), {withVisibleNewlines(shortened(text))});
}

QString changedOption(const char *title)
{
    return withText("‘%@’ was changed since the search.", localizedString(title).remove(u'&'));
}

QString linesOf(const TDSelectedMatchReplacement::FileFailure &failure)
{
    QString lines = withVisibleNewlines(failure.path.displayText()) + u'\n';
    if (failure.backup.isEmpty())
        return lines;
    const QString backup = withVisibleNewlines(failure.backup.displayText());
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
                           {textOfProblem(problem), grouped(quint64(group.count))}) +
                     u'\n' + group.lines;
    return texts.join(u'\n').trimmed();
}

QString findAndReplaceTexts(const QString &findText, const QString &replaceText)
{
    return withText("Find text: ‘%@’", findText) + u'\n' + withText("Replace text: ‘%@’", replaceText);
}

QString staleResultsText(const SearchTerms &searched, const SearchTerms &now, std::optional<quint64> staying)
{
    QStringList sentences;
    if (searched.findText != now.findText)
        sentences << withText("These results were found with ‘%@’.", searched.findText);
    if (searched.isExpression() != now.isExpression())
        sentences << changedOption("Regular e&xpression");
    else if (searched.options.mode != now.options.mode)
        sentences << changedOption("&Unicode");
    if (searched.options.caseRule != now.options.caseRule)
        sentences << changedOption("Ignore &case");
    if (searched.options.wholeWords != now.options.wholeWords)
        sentences << changedOption("Wh&ole words");
    // Without an expression a match is replaced whatever the find text.
    if (staying && *staying > 0)
        sentences << formatted(localizedString(*staying == 1 ? "%@ match will stay as it is."
                                                             : "%@ matches will stay as they are."),
                               {grouped(*staying)});
    else if (!staying && now.isExpression() && !sentences.isEmpty())
        sentences << localizedString("Matches that the find text doesn’t fit will stay as they are.");
    return sentences.join(u' ');
}

} // namespace tidemark
