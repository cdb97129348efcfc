#pragma once

#include "text/PlainTextPattern.h"

#include <QByteArray>
#include <QByteArrayView>

#include <bitset>
#include <vector>

namespace tidemark {

enum class EntryKind { File, Folder };

/// One pattern as in Git's ignore files, over bytes. Without a slash it is matched with the name of an entry,
/// else with its path relative to where the pattern holds; one at the end asks for a folder.
class IgnorePattern
{
public:
    /// Why a pattern matches nothing at all.
    enum class Fault {
        None,
        Empty,         ///< it names no entry
        OpenClass,     ///< a bracket that nothing closes
        UnknownClass,  ///< [[:such:]] a class doesn't exist
        LoneBackslash, ///< with nothing behind it
    };

    /// One line without its end. Of letters only those of ASCII are folded.
    IgnorePattern(QByteArrayView text, CaseRule caseRule);

    /// As it was given.
    const QByteArray &text() const { return _text; }
    Fault fault() const { return _fault; }
    /// It begins with an exclamation mark: what it matches is wanted after all.
    bool takesBack() const { return _takesBack; }
    bool isForFoldersOnly() const { return _isForFoldersOnly; }
    /// Whether it is matched with paths instead of names.
    bool isForPaths() const { return _isForPaths; }
    /// Without wildcards: what is matched, folded where case doesn't count. Null where there are some.
    const QByteArray &literal() const { return _literal; }
    /// What is behind a star at the beginning and holds no wildcard, folded the same way; else null.
    const QByteArray &literalEnd() const { return _literalEnd; }

    /// Of a name, or of a path; `isForFoldersOnly()` is for the caller to ask.
    bool matches(QByteArrayView subject) const;

private:
    struct Element
    {
        enum class Kind : quint8 {
            Byte,
            NoSlash,      ///< any byte but a slash
            Class,        ///< one byte of a set
            Star,         ///< any bytes but slashes
            Anything,     ///< any bytes
            FoldersBelow, ///< nothing, or any bytes and a slash
        };
        Kind kind = Kind::Byte;
        uchar byte = 0;
        quint32 classIndex = 0;
    };
    using ByteSet = std::bitset<256>;
    class Parser;

    bool _accepts(const Element &element, uchar byte) const;
    void _findLiterals();

    QByteArray _text;
    std::vector<Element> _elements;
    std::vector<ByteSet> _classes;
    QByteArray _literal;
    QByteArray _literalEnd;
    Fault _fault = Fault::None;
    bool _ignoresCase;
    bool _takesBack = false;
    bool _isForFoldersOnly = false;
    bool _isForPaths = false;
};

/// A letter of ASCII in lower case, anything else as it is.
inline uchar foldedByte(uchar byte)
{
    return byte >= 'A' && byte <= 'Z' ? uchar(byte | 0x20) : byte;
}

QByteArray foldedBytes(QByteArrayView bytes);

} // namespace tidemark
