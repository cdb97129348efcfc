#pragma once

#include <QByteArray>
#include <QByteArrayView>

namespace tidemark {

/// Looks for an ASCII text in bytes, ASCII letters of either case being the same. Made for very many short
/// texts. Immutable.
class AsciiFinder
{
public:
    /// `text` is ASCII and not empty.
    explicit AsciiFinder(const QByteArray &text);

    bool isIn(QByteArrayView bytes) const;

private:
    bool _isAt(const char *place) const;
    bool _isAtOneOfLanes(const char *start) const;

    QByteArray _text; ///< in lower case
    /// What is looked at first: the rarest character, and the last one.
    qsizetype _rare = 0;
    qsizetype _last = 0;
};

} // namespace tidemark
