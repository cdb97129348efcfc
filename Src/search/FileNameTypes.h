#pragma once

#include "search/UniformTypes.h"
#include "search/WildcardPattern.h"

#include <QByteArray>

#include <functional>
#include <mutex>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

namespace tidemark {

/// What a file name says about the file's types, which may leave a choice to its content.
struct NameVerdict
{
    UniformTypes ifText = PLAIN_TEXT_FILE;
    UniformTypes ifData = ANY_FILE;
};

/// Lets hash tables be asked with views.
struct StringHash
{
    using is_transparent = void;
    size_t operator()(std::string_view text) const { return std::hash<std::string_view>()(text); }
};
template <typename Value>
using StringMap = std::unordered_map<std::string, Value, StringHash, std::equal_to<>>;
using StringSet = std::unordered_set<std::string, StringHash, std::equal_to<>>;

/// The shared MIME database by file name, without its price of a lock and many microseconds a look-up: the
/// part of a name that decides, a few hundred of which occur on any disk, is cut out without asking it.
class FileNameTypes
{
public:
    /// The one of this process; usable from any thread.
    static FileNameTypes &shared();

    /// The part of the name on which the database's answer depends: a suffix with its dots (the spelling
    /// kept, as *.C and *.c differ), or the whole name where it is one of those that the database knows as
    /// such. Empty when the name tells nothing. A view of the argument.
    std::string_view keyOf(std::string_view fileName) const;
    /// The answer for a key; cheap enough for once a key, so callers keep answers.
    NameVerdict verdictForKey(std::string_view key);

private:
    struct FreePattern
    {
        bool matches(const char *lowerName) const;

        WildcardPattern pattern;
        /// Text that every matching name contains, asked first because it is quick; at the beginning or
        /// anywhere.
        std::string literalPart;
        bool isPrefix;
    };

    FileNameTypes();
    void _readDatabasePatterns();
    void _addPattern(const QString &pattern);
    void _addSuffix(const std::string &suffix);
    void _addFreePattern(const QString &pattern);
    bool _isKnownAsWhole(const char *lowerName) const;
    size_t _suffixLength(std::string_view lowerName) const;
    NameVerdict _askDatabase(std::string_view key) const;

    /// All in lower case; suffixes with their leading dot.
    StringSet _literals;
    StringSet _suffixes;
    /// The last parts of suffixes that have several, such as .gz because of .tar.gz.
    StringSet _tails;
    /// Patterns whose outcome the suffix settles, such as *.[1-9] and *~, and the few others.
    std::vector<WildcardPattern> _suffixPatterns;
    std::vector<FreePattern> _freePatterns;

    std::mutex _mutex;
    StringMap<NameVerdict> _verdicts;
};

} // namespace tidemark
