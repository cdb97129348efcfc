#pragma once

#include <QFlags>
#include <QMimeType>
#include <QSet>
#include <QStringList>

namespace tidemark {

/// The uniform type identifiers that the application tells apart.
enum class UniformType : quint32 {
    Item = 1U << 0,
    Data = 1U << 1,
    Content = 1U << 2,
    Text = 1U << 3,
    PlainText = 1U << 4,
    SourceCode = 1U << 5,
    Script = 1U << 6,
    Html = 1U << 7,
    Rtf = 1U << 8,
    Xml = 1U << 9,
    Image = 1U << 10,
    Audio = 1U << 11,
    Movie = 1U << 12,
    Pdf = 1U << 13,
    Archive = 1U << 14,
};
Q_DECLARE_FLAGS(UniformTypes, UniformType)

/// What every regular file is.
inline constexpr UniformTypes ANY_FILE = UniformTypes(UniformType::Item) | UniformType::Data;
inline constexpr UniformTypes PLAIN_TEXT_FILE =
    ANY_FILE | UniformType::Content | UniformType::Text | UniformType::PlainText;
inline constexpr UniformTypes SOURCE_CODE_FILE = PLAIN_TEXT_FILE | UniformType::SourceCode;
inline constexpr UniformTypes SCRIPT_FILE = SOURCE_CODE_FILE | UniformType::Script;

/// Identifiers that aren't known stand for no type; upper and lower case are the same.
UniformTypes uniformTypesForIdentifiers(const QStringList &identifiers);
QSet<QString> identifiersOfUniformTypes(UniformTypes types);

/// All types that a regular file of the given MIME type conforms to. Callable from any thread.
UniformTypes uniformTypesOfMimeType(const QMimeType &mimeType);

} // namespace tidemark

// In the namespace they would hide the toolkit's, which put keys together.
Q_DECLARE_OPERATORS_FOR_FLAGS(tidemark::UniformTypes)
