#pragma once

#include <QChar>

namespace tidemark {

/// Stands for a character that can't be seen.
inline constexpr QChar BULLET = u'\x2022';
/// Stands for a line end.
inline constexpr QChar RETURN_ARROW = u'\x21B5';
/// Stands for text that is left out.
inline constexpr QChar ELLIPSIS = u'\x2026';

} // namespace tidemark
