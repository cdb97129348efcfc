#include "window/context/ContextColors.h"

namespace tidemark {

namespace {

/// How much is left of a colour over the base.
constexpr float DIMMED_TEXT = 0.66F;
constexpr float SHOWN_LINE = 0.14F;
constexpr float SELECTION_WITHOUT_FOCUS = 0.3F;

constexpr QColor MATCH = QColor(241, 224, 169);
constexpr QColor HIGHLIGHTED_MATCH = QColor(255, 147, 32);

struct Pair
{
    QColor text;
    QColor background;
};
constexpr Pair STRUCK[] = {{{0xA4, 0x26, 0x2C}, {0xFB, 0xE3, 0xE4}},
                           {{0xFF, 0x9A, 0x96}, {0x4D, 0x24, 0x26}}};
constexpr Pair INSERTED[] = {{{0x14, 0x63, 0x2A}, {0xD9, 0xF2, 0xDF}},
                             {{0x9B, 0xE3, 0xAE}, {0x1F, 0x4A, 0x2B}}};

} // namespace

ContextColors::ContextColors(const QPalette &palette)
    : _palette(palette), _isDark(palette.color(QPalette::Base).lightnessF() < 0.5F)
{}

QColor ContextColors::_between(QPalette::ColorRole role, float part) const
{
    const QColor color = _palette.color(role);
    const QColor base = _palette.color(QPalette::Base);
    const auto mixed = [part](float strong, float weak) { return part * strong + (1 - part) * weak; };
    return QColor::fromRgbF(mixed(color.redF(), base.redF()), mixed(color.greenF(), base.greenF()),
                            mixed(color.blueF(), base.blueF()));
}

QColor ContextColors::dimmed() const
{
    return _between(QPalette::Text, DIMMED_TEXT);
}

QColor ContextColors::shownLine() const
{
    return _between(QPalette::Highlight, SHOWN_LINE);
}

QTextCharFormat ContextColors::formatOf(const ContextLine::Marked &marked) const
{
    QTextCharFormat format;
    Pair pair = {Qt::black, MATCH};
    // The current match stays the current one.
    if (marked.isHighlighted)
        pair.background = HIGHLIGHTED_MATCH;
    else if (marked.isNew)
        pair = INSERTED[_isDark];
    else if (marked.isStruck)
        pair = STRUCK[_isDark];
    format.setForeground(pair.text);
    format.setBackground(pair.background);
    format.setFontStrikeOut(marked.isStruck);
    format.setFontUnderline(marked.isNew);
    return format;
}

QTextCharFormat ContextColors::selection(bool hasFocus) const
{
    QTextCharFormat format;
    format.setBackground(hasFocus ? _palette.color(QPalette::Active, QPalette::Highlight)
                                  : _between(QPalette::Highlight, SELECTION_WITHOUT_FOCUS));
    format.setForeground(_palette.color(hasFocus ? QPalette::HighlightedText : QPalette::Text));
    return format;
}

} // namespace tidemark
