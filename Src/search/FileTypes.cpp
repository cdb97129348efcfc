#include "search/FileTypes.h"

#include "search/FileNameTypes.h"
#include "search/UniformTypes.h"
#include "search/WildcardPattern.h"

#include <algorithm>

namespace tidemark {

namespace {

/// In blocks and without branches, so that the compiler makes vector code of it: this is run on every file
/// whose name doesn't settle its type.
bool hasControlBytes(const QByteArray &bytes)
{
    constexpr qsizetype BLOCK = 64;
    constexpr unsigned char ESCAPE = 0x1B;
    const auto isControl = [](unsigned char byte) {
        const bool isTextControl = (byte >= '\b') & (byte <= '\r');
        return (byte < 0x20) & !isTextControl & (byte != ESCAPE);
    };
    const auto *const begin = reinterpret_cast<const unsigned char *>(bytes.constData());
    const qsizetype tail = bytes.size() - bytes.size() % BLOCK;
    for (qsizetype position = 0; position < tail; position += BLOCK) {
        unsigned char found = 0;
        for (qsizetype i = 0; i < BLOCK; ++i)
            found |= static_cast<unsigned char>(isControl(begin[position + i]));
        if (found)
            return true;
    }
    return std::any_of(begin + tail, begin + bytes.size(), isControl);
}

bool looksLikeText(const QByteArray &firstBytes)
{
    for (const QByteArrayView mark : {QByteArrayView("\xEF\xBB\xBF", 3), QByteArrayView("\xFE\xFF", 2),
                                      QByteArrayView("\xFF\xFE", 2), QByteArrayView("\0\0\xFE\xFF", 4)}) {
        if (firstBytes.startsWith(mark))
            return true;
    }
    return !firstBytes.isEmpty() && !hasControlBytes(firstBytes);
}

/// A file that can't be read counts as text, so that the search comes to it and says so.
bool contentIsText(const ContentProbe &probe)
{
    const QByteArray firstBytes = probe();
    return firstBytes.isNull() || looksLikeText(firstBytes);
}

} // namespace

QSet<QString> typeIdentifiersForFile(const QByteArray &fileName, const ContentProbe &firstBytes)
{
    FileNameTypes &names = FileNameTypes::shared();
    const NameVerdict verdict =
        names.verdictForKey(names.keyOf({fileName.constData(), size_t(fileName.size())}));
    const bool isText = verdict.ifText == verdict.ifData || contentIsText(firstBytes);
    return identifiersOfUniformTypes(isText ? verdict.ifText : verdict.ifData);
}

class FileTypeFilter::Implementation
{
public:
    Implementation(const QStringList &typeIdentifiers, const QStringList &filenamePatterns)
        : _wanted(uniformTypesForIdentifiers(typeIdentifiers)),
          _patterns(filenamePatterns.begin(), filenamePatterns.end())
    {}

    bool admits(const char *fileName, const ContentProbe &firstBytes)
    {
        if (_wanted & ANY_FILE)
            return true;
        const NameVerdict verdict = _wanted ? _verdictFor(fileName) : NameVerdict{{}, {}};
        const bool ifText(verdict.ifText & _wanted);
        const bool ifData(verdict.ifData & _wanted);
        if ((ifText && ifData) || _matchesPattern(fileName))
            return true;
        return ifText != ifData && contentIsText(firstBytes) == ifText;
    }

private:
    NameVerdict _verdictFor(std::string_view fileName)
    {
        // Reading what it knows takes a while, and isn't needed where every file is wanted.
        FileNameTypes &names = FileNameTypes::shared();
        const std::string_view key = names.keyOf(fileName);
        if (key.empty())
            return {};
        const auto known = _verdicts.find(key);
        if (known != _verdicts.end())
            return known->second;
        return _verdicts.emplace(key, names.verdictForKey(key)).first->second;
    }

    bool _matchesPattern(std::string_view fileName) const
    {
        if (_patterns.empty())
            return false;
        const WildcardSubject subject(fileName);
        return std::any_of(_patterns.begin(), _patterns.end(),
                           [&](const WildcardPattern &pattern) { return pattern.matches(subject); });
    }

    UniformTypes _wanted;
    std::vector<WildcardPattern> _patterns;
    StringMap<NameVerdict> _verdicts;
};

FileTypeFilter::FileTypeFilter(const QStringList &typeIdentifiers, const QStringList &filenamePatterns)
    : _implementation(std::make_unique<Implementation>(typeIdentifiers, filenamePatterns))
{}

FileTypeFilter::~FileTypeFilter() = default;

bool FileTypeFilter::admits(const char *fileName, const ContentProbe &firstBytes)
{
    return _implementation->admits(fileName, firstBytes);
}

bool matchesWildcardPattern(const QString &name, const QString &pattern)
{
    return WildcardPattern(pattern).matches(WildcardSubject(name));
}

} // namespace tidemark
