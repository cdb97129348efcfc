#include "search/IgnorePatterns.h"

#include <algorithm>

namespace tidemark {

namespace {

/// An escaped blank belongs to the pattern.
QByteArrayView withoutBlanksAtEnd(QByteArrayView line)
{
    qsizetype end = 0;
    for (qsizetype position = 0; position < line.size(); ++position) {
        if (line[position] == '\\')
            end = qMin(++position + 1, line.size());
        else if (line[position] != ' ')
            end = position + 1;
    }
    return line.first(end);
}

bool separatesPatterns(char character)
{
    return character == ',' || character == ' ' || (character >= '\t' && character <= '\r');
}

std::string_view viewOf(QByteArrayView bytes)
{
    return {bytes.data(), size_t(bytes.size())};
}

} // namespace

IgnorePatterns IgnorePatterns::ofField(const QString &text, CaseRule caseRule)
{
    IgnorePatterns patterns(caseRule);
    const QByteArray bytes = text.toUtf8();
    qsizetype start = 0;
    for (qsizetype position = 0; position <= bytes.size(); ++position) {
        if (position < bytes.size() && bytes[position] == '\\' && position + 1 < bytes.size()) {
            ++position;
        } else if (position == bytes.size() || separatesPatterns(bytes[position])) {
            if (position > start)
                patterns._add(QByteArrayView(bytes).sliced(start, position - start));
            start = position + 1;
        }
    }
    return patterns;
}

IgnorePatterns IgnorePatterns::ofFile(QByteArrayView content, CaseRule caseRule)
{
    IgnorePatterns patterns(caseRule);
    if (content.startsWith("\xEF\xBB\xBF"))
        content = content.sliced(3);
    while (!content.isEmpty()) {
        const qsizetype end = content.indexOf('\n');
        QByteArrayView line = end < 0 ? content : content.first(end);
        content = end < 0 ? QByteArrayView() : content.sliced(end + 1);
        if (line.startsWith('#'))
            continue;
        if (line.endsWith('\r'))
            line.chop(1);
        line = withoutBlanksAtEnd(line);
        // What ends a text for a program in C ends a line here.
        if (const qsizetype zero = line.indexOf('\0'); zero >= 0)
            line.truncate(zero);
        if (!line.isEmpty())
            patterns._add(line);
    }
    return patterns;
}

void IgnorePatterns::_add(QByteArrayView text)
{
    const int index = int(_patterns.size());
    const IgnorePattern &pattern = _patterns.emplace_back(text, _caseRule);
    if (pattern.fault() != IgnorePattern::Fault::None)
        return;
    _haveOnesForPaths = _haveOnesForPaths || pattern.isForPaths();
    const QByteArray &end = pattern.literalEnd();
    if (!pattern.isForPaths() && !pattern.literal().isNull())
        _names[pattern.literal().toStdString()].push_back(index);
    else if (end.lastIndexOf('.') == 0)
        _suffixes[end.toStdString()].push_back(index);
    else
        _others.push_back(index);
}

int IgnorePatterns::_lastFitting(const Indices &indices, EntryKind kind) const
{
    const auto found = std::find_if(indices.rbegin(), indices.rend(), [&](int index) {
        return kind == EntryKind::Folder || !_patterns[size_t(index)].isForFoldersOnly();
    });
    return found == indices.rend() ? -1 : *found;
}

int IgnorePatterns::_lastInTables(QByteArrayView name, EntryKind kind) const
{
    int last = -1;
    const auto lookUp = [&](const Table &table, QByteArrayView key) {
        const auto found = table.find(viewOf(key));
        if (found != table.end())
            last = std::max(last, _lastFitting(found->second, kind));
    };
    if (!_names.empty())
        lookUp(_names, name);
    const qsizetype dot = _suffixes.empty() ? -1 : name.lastIndexOf('.');
    if (dot >= 0)
        lookUp(_suffixes, name.sliced(dot));
    return last;
}

int IgnorePatterns::lastMatch(QByteArrayView name, QByteArrayView path, EntryKind kind) const
{
    const bool mustFold = _caseRule == CaseRule::Ignore && (!_names.empty() || !_suffixes.empty());
    const int last = mustFold ? _lastInTables(foldedBytes(name), kind) : _lastInTables(name, kind);
    for (auto index = _others.rbegin(); index != _others.rend() && *index > last; ++index) {
        const IgnorePattern &pattern = _patterns[size_t(*index)];
        if (pattern.isForFoldersOnly() && kind != EntryKind::Folder)
            continue;
        if (pattern.matches(pattern.isForPaths() ? path : name))
            return *index;
    }
    return last;
}

} // namespace tidemark
