#include "search/FileNameTypes.h"

#include <QFile>
#include <QMimeDatabase>
#include <QStandardPaths>

#include <algorithm>
#include <iterator>

using namespace Qt::Literals::StringLiterals;

namespace tidemark {

namespace {

enum class Trust { Suffix, Content };

struct SuffixRule
{
    UniformTypes types;
    /// With Trust::Content a file under such a suffix has the types only if it looks like text.
    Trust trust;
    /// In lower case, separated by spaces.
    const char *suffixes;
};

/// Where the shared database knows nothing, or something else that is found less often: TypeScript against
/// films and translations, modules of Go against music, Visual Basic against games.
constexpr SuffixRule SUFFIX_RULES[] = {
    {PLAIN_TEXT_FILE, Trust::Suffix, "ini cfg conf env properties strings"},
    {PLAIN_TEXT_FILE, Trust::Content, "plist mod"},
    {SOURCE_CODE_FILE, Trust::Suffix, "jsx tsx swift r"},
    {SCRIPT_FILE, Trust::Suffix, "bat ps1"},
    {SOURCE_CODE_FILE, Trust::Content,
     "ts mts vb ii inl ipp tcc tpp ixx cppm hxx h++ l ll lm s y yy ym defs mig jav"},
    {SCRIPT_FILE, Trust::Content, "bash ksh zsh fish rbw jscript"},
};

const StringMap<const SuffixRule *> &suffixRules()
{
    static const StringMap<const SuffixRule *> rules = [] {
        StringMap<const SuffixRule *> result;
        for (const SuffixRule &rule : SUFFIX_RULES) {
            for (const QByteArray &suffix : QByteArray(rule.suffixes).split(' '))
                result.emplace(('.' + suffix).toStdString(), &rule);
        }
        return result;
    }();
    return rules;
}

/// The database folds more than ASCII, but has no patterns where that counts.
char lowerAscii(char byte)
{
    return byte >= 'A' && byte <= 'Z' ? char(byte - 'A' + 'a') : byte;
}

class LowerName
{
public:
    explicit LowerName(std::string_view name)
    {
        _bytes.resize(qsizetype(name.size()) + 1);
        *std::transform(name.begin(), name.end(), _bytes.begin(), lowerAscii) = '\0';
    }
    const char *cString() const { return _bytes.constData(); }
    std::string_view view() const { return {_bytes.constData(), size_t(_bytes.size()) - 1}; }

private:
    QVarLengthArray<char, 256> _bytes;
};

bool hasWildcard(QStringView text)
{
    return std::any_of(text.begin(), text.end(), [](QChar unit) { return u"*?["_s.contains(unit); });
}

/// True when a name's suffix, or a dotless name, says all about whether the name matches.
bool isSettledBySuffix(const QString &pattern)
{
    const QStringView rest = QStringView(pattern).mid(pattern.startsWith(u"*.") ? 2 : 1);
    return pattern.startsWith(u'*') && !rest.contains(u'*') && !rest.contains(u'.') && !rest.contains(u'?');
}

} // namespace

FileNameTypes &FileNameTypes::shared()
{
    static FileNameTypes instance;
    return instance;
}

FileNameTypes::FileNameTypes()
{
    for (const auto &[suffix, rule] : suffixRules())
        _addSuffix(suffix);
    _readDatabasePatterns();
}

void FileNameTypes::_readDatabasePatterns()
{
    const QStringList lists =
        QStandardPaths::locateAll(QStandardPaths::GenericDataLocation, u"mime/globs2"_s);
    for (const QString &list : lists) {
        QFile file(list);
        if (!file.open(QIODevice::ReadOnly))
            continue;
        for (const QByteArray &line : file.readAll().split('\n')) {
            const QList<QByteArray> fields = line.split(':');
            if (fields.size() >= 3 && !line.startsWith('#'))
                _addPattern(QString::fromUtf8(fields[2]).toLower());
        }
    }
    if (!lists.isEmpty())
        return;
    // A system without a database of its own: the library's. Asking that for everything takes a tenth of a
    // second, which is why it comes last.
    for (const QMimeType &type : QMimeDatabase().allMimeTypes()) {
        for (const QString &pattern : type.globPatterns())
            _addPattern(pattern.toLower());
    }
}

void FileNameTypes::_addPattern(const QString &pattern)
{
    if (!hasWildcard(pattern))
        _literals.insert(pattern.toStdString());
    else if (pattern.startsWith(u"*.") && !hasWildcard(QStringView(pattern).mid(2)))
        _addSuffix(pattern.mid(1).toStdString());
    else if (isSettledBySuffix(pattern))
        _suffixPatterns.emplace_back(pattern);
    else
        _addFreePattern(pattern);
}

void FileNameTypes::_addSuffix(const std::string &suffix)
{
    _suffixes.insert(suffix);
    const size_t lastDot = suffix.rfind('.');
    if (lastDot > 0)
        _tails.insert(suffix.substr(lastDot));
}

void FileNameTypes::_addFreePattern(const QString &pattern)
{
    FreePattern added{WildcardPattern(pattern), {}, !hasWildcard(QStringView(pattern).left(1))};
    const auto isWildcard = [](QChar unit) { return u"*?[]"_s.contains(unit); };
    auto begin = std::find_if_not(pattern.begin(), pattern.end(), isWildcard);
    // The inside of a set isn't literal; what is behind the last one is.
    if (pattern.startsWith(u'['))
        begin = std::find_if(pattern.rbegin(), pattern.rend(), isWildcard).base();
    const auto end = std::find_if(begin, pattern.end(), isWildcard);
    added.literalPart = QString(begin, end - begin).toStdString();
    _freePatterns.push_back(std::move(added));
}

bool FileNameTypes::FreePattern::matches(const char *lowerName) const
{
    const std::string_view name = lowerName;
    const bool isCandidate =
        isPrefix ? name.starts_with(literalPart) : name.find(literalPart) != std::string_view::npos;
    return isCandidate && pattern.matches(WildcardSubject(name));
}

bool FileNameTypes::_isKnownAsWhole(const char *lowerName) const
{
    return _literals.contains(std::string_view(lowerName)) ||
           std::any_of(_freePatterns.begin(), _freePatterns.end(),
                       [lowerName](const FreePattern &free) { return free.matches(lowerName); });
}

/// 0 when the database knows no such suffix. A dot in front of everything begins none.
size_t FileNameTypes::_suffixLength(std::string_view lowerName) const
{
    const size_t lastDot = lowerName.rfind('.');
    const bool hasSuffix = lastDot != std::string_view::npos && lastDot > 0;
    const std::string_view tail = lowerName.substr(hasSuffix ? lastDot : 0);
    if (hasSuffix && _tails.contains(tail)) {
        for (size_t dot = lowerName.find('.', 1); dot < lastDot; dot = lowerName.find('.', dot + 1)) {
            if (_suffixes.contains(lowerName.substr(dot)))
                return lowerName.size() - dot;
        }
    }
    if (hasSuffix && _suffixes.contains(tail))
        return tail.size();
    // The stem doesn't count, so the suffix stands for the name.
    const WildcardSubject subject(tail);
    const bool isKnown =
        std::any_of(_suffixPatterns.begin(), _suffixPatterns.end(),
                    [&](const WildcardPattern &pattern) { return pattern.matches(subject); });
    return isKnown ? tail.size() : 0;
}

std::string_view FileNameTypes::keyOf(std::string_view fileName) const
{
    const LowerName lowerName(fileName);
    if (_isKnownAsWhole(lowerName.cString()))
        return fileName;
    return fileName.substr(fileName.size() - _suffixLength(lowerName.view()));
}

NameVerdict FileNameTypes::verdictForKey(std::string_view key)
{
    if (key.empty())
        return {};
    const std::lock_guard lock(_mutex);
    if (const auto known = _verdicts.find(key); known != _verdicts.end())
        return known->second;

    NameVerdict verdict = _askDatabase(key);
    const auto rule = suffixRules().find(LowerName(key).view());
    if (rule != suffixRules().end()) {
        verdict.ifText = rule->second->types;
        if (rule->second->trust == Trust::Suffix)
            verdict.ifData = rule->second->types;
    }
    _verdicts.emplace(key, verdict);
    return verdict;
}

/// Where several types share a name, the content decides between those that are text and those that aren't.
NameVerdict FileNameTypes::_askDatabase(std::string_view key) const
{
    QString name = QString::fromUtf8(key.data(), qsizetype(key.size()));
    if (key.front() == '.' && !_literals.contains(LowerName(key).view()))
        name.prepend(u'x');

    UniformTypes text;
    UniformTypes data;
    for (const QMimeType &candidate : QMimeDatabase().mimeTypesForFileName(name)) {
        const UniformTypes types = uniformTypesOfMimeType(candidate);
        (types.testFlag(UniformType::Text) ? text : data) |= types;
    }
    if (!text && !data)
        return {};
    return {text ? text : data, data ? data : text};
}

} // namespace tidemark
