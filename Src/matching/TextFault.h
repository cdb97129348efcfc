#pragma once

#include <QString>

namespace tidemark {

/// What is wrong with an expression or a format, for people.
struct TextFault
{
    QString message;
    qsizetype position = 0; ///< in the text, in UTF-16 units

    friend bool operator==(const TextFault &, const TextFault &) = default;
};

} // namespace tidemark
