#pragma once

#include "window/context/ContextLine.h"

#include <QPalette>
#include <QTextCharFormat>

namespace tidemark {

/// The colours of the context, in light and dark. Every text has a contrast of 4.5 : 1 at least.
class ContextColors
{
public:
    explicit ContextColors(const QPalette &palette);

    QColor text() const { return _palette.color(QPalette::Text); }
    QColor dimmed() const;
    /// Behind the line that stands out.
    QColor shownLine() const;
    QTextCharFormat formatOf(const ContextLine::Marked &marked) const;
    QTextCharFormat selection(bool hasFocus) const;

private:
    QColor _between(QPalette::ColorRole role, float part) const;

    const QPalette &_palette;
    bool _isDark;
};

} // namespace tidemark
