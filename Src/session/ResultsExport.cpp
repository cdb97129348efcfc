#include "session/ResultsExport.h"

#include "text/CharacterSets.h"

#include <QByteArrayList>
#include <QJsonDocument>
#include <QJsonObject>

namespace tidemark {

namespace {

constexpr qsizetype OUTPUT_BLOCK = 1 << 16;

/// RFC 4180: quoted where it must be, quotes doubled.
QByteArray csvField(const QByteArray &field)
{
    const bool isPlain = !field.contains('"') && !field.contains(',') && !field.contains('\n') &&
                         !field.contains('\r') && field.trimmed() == field;
    if (isPlain)
        return field;
    QByteArray quoted = field;
    quoted.replace('"', "\"\"");
    return '"' + quoted + '"';
}

QByteArray csvRow(QByteArrayList fields)
{
    for (QByteArray &field : fields)
        field = csvField(field);
    return fields.join(',') + "\r\n";
}

/// A code span that holds whatever the text holds.
QByteArray markdownCode(const QByteArray &text)
{
    if (text.isEmpty())
        return {};
    QByteArray fence("`");
    while (text.contains(fence))
        fence += '`';
    const QByteArray margin = text.startsWith('`') || text.endsWith('`') ? " " : "";
    return fence + margin + text + margin + fence;
}

/// Positions in the line stay what they are.
QString withoutLineEnd(const QString &line)
{
    const TextRange body = rangeWithoutNewlinesAtEnds(line);
    return body.length > 0 ? line.first(body.end()) : QString();
}

/// For formats of lines: a replacement may have brought line ends into a match line.
QString onOneLine(QString line)
{
    return line.replace(QStringLiteral("\r\n"), QStringLiteral("↵"))
        .replace(u'\n', u'↵')
        .replace(u'\r', u'↵');
}

} // namespace

ResultsExport::ResultsExport(ResultsFormat format, const TDReplacement *replacement, QIODevice &device)
    : _format(format), _replacement(replacement), _device(device)
{
    if (_format == ResultsFormat::Csv)
        _pending = "\xEF\xBB\xBF" + csvRow({"path", "line", "column", "offset", "length", "match", "text",
                                            "encoding", "replacement"});
}

bool ResultsExport::write(const FindResultItems &nodes, const IsStopped &isStopped)
{
    _isStopped = isStopped;
    const TDFindResultItem *file = nullptr;
    for (qsizetype index = 0; index < nodes.size() && !_hasEnded; ++index) {
        const TDFindResultItem &node = *nodes[index];
        const TDFindResultItem *owner = node.isMatchLine() ? node.parent() : &node;
        if (owner != file) {
            file = owner;
            _beginFile(*file);
        }
        if (node.matchLine() != nullptr)
            _writeLine(*file, *node.matchLine());
        const bool standsForAll =
            !node.isMatchLine() && (index + 1 == nodes.size() || nodes[index + 1]->parent() != &node);
        for (const auto &child : standsForAll ? node.children() : FindResultItems()) {
            if (child->matchLine() != nullptr && !_hasEnded)
                _writeLine(*file, *child->matchLine());
        }
    }
    return _flush();
}

void ResultsExport::_beginFile(const TDFindResultItem &file)
{
    if (_isStopped && _isStopped(_filesBegun)) {
        _hasEnded = true;
        return;
    }
    ++_filesBegun;
    if (_format == ResultsFormat::Paths)
        _pending += file.path().bytes() + '\n';
    else if (_format == ResultsFormat::Markdown)
        _pending += "- " + markdownCode(file.path().displayText().toUtf8()) + '\n';
    else if (_format != ResultsFormat::Text)
        _encoding =
            convertEncodingToIANACharSetName(convertStringEncodingToCoreFoundation(file.encoding().encoding));
}

void ResultsExport::_writeLine(const TDFindResultItem &file, const TDMatchLine &line)
{
    if (_format == ResultsFormat::Paths || _hasEnded)
        return;
    ListedMatch match{file.path(), line.lineNumber(), {}, withoutLineEnd(line.matchLineString()), {}, {}};
    if (_format == ResultsFormat::Markdown) {
        _pending += "  - " + QByteArray::number(match.lineNumber) + ": " +
                    markdownCode(onOneLine(match.line).toUtf8()) + '\n';
        return;
    }
    const QList<TextRange> ranges = line.matchRanges();
    const QList<TextRange> found = line.foundRanges();
    const QString foundLine = line.foundLineString();
    std::optional<TDReplacement::InLine> inLine;
    if (_replacement != nullptr)
        inLine.emplace(*_replacement, foundLine);
    for (qsizetype index = 0; index < ranges.size(); ++index) {
        match.range = ranges[index];
        TDError error;
        if (inLine && index < found.size())
            match.replacement = inLine->replacementFor(
                found[index], QStringView(match.line).mid(match.range.location, match.range.length), error);
        match.replacementProblem = error ? error.localizedFailureReason() : QString();
        _writeMatch(match);
    }
    if (_pending.size() >= OUTPUT_BLOCK)
        _hasEnded = !_flush() || (_isStopped && _isStopped(_filesBegun - 1));
}

void ResultsExport::_writeMatch(const ListedMatch &match)
{
    const QByteArray line = QByteArray::number(match.lineNumber);
    const QByteArray column = QByteArray::number(match.range.location + 1);
    if (_format == ResultsFormat::Text) {
        _pending +=
            match.path.bytes() + ':' + line + ':' + column + ':' + onOneLine(match.line).toUtf8() + '\n';
        return;
    }
    const QString text = match.line.mid(match.range.location, match.range.length);
    if (_format == ResultsFormat::Csv) {
        _pending +=
            csvRow({match.path.displayText().toUtf8(), line, column, QByteArray::number(match.range.location),
                    QByteArray::number(match.range.length), text.toUtf8(), match.line.toUtf8(),
                    _encoding.toUtf8(), match.replacement.value_or(QString()).toUtf8()});
        return;
    }
    QJsonObject object = {{QStringLiteral("path"), match.path.displayText()},
                          {QStringLiteral("line"), match.lineNumber},
                          {QStringLiteral("column"), match.range.location + 1},
                          {QStringLiteral("offset"), match.range.location},
                          {QStringLiteral("length"), match.range.length},
                          {QStringLiteral("match"), text},
                          {QStringLiteral("text"), match.line},
                          {QStringLiteral("encoding"), _encoding}};
    if (match.path.displayText().toUtf8() != match.path.bytes())
        object[QStringLiteral("pathBytes")] = QString::fromLatin1(match.path.bytes().toPercentEncoding("/"));
    if (!match.replacementProblem.isEmpty())
        object[QStringLiteral("replacementProblem")] = match.replacementProblem;
    else if (match.replacement)
        object[QStringLiteral("replacement")] = *match.replacement;
    _pending += QJsonDocument(object).toJson(QJsonDocument::Compact) + '\n';
}

bool ResultsExport::_flush()
{
    _hasEnded = _hasEnded || _device.write(_pending) != _pending.size();
    _pending.clear();
    return !_hasEnded;
}

} // namespace tidemark
