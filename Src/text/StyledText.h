#pragma once

#include "text/TextRange.h"

#include <QList>
#include <QString>
#include <QUrl>

#include <optional>

namespace tidemark {

/// Device RGB components and opacity from 0 to 1.
struct StyledColor
{
    double red = 0;
    double green = 0;
    double blue = 0;
    double alpha = 1;

    friend constexpr bool operator==(const StyledColor &, const StyledColor &) = default;
};

inline constexpr StyledColor TD_COLOR_BLACK = {0, 0, 0};
inline constexpr StyledColor TD_COLOR_WHITE = {1, 1, 1};
inline constexpr StyledColor TD_COLOR_RED = {1, 0, 0};
inline constexpr StyledColor TD_COLOR_BLUE = {0, 0, 1};

struct StyledFont
{
    QString family; ///< empty: the system font
    double pointSize = 10;
    friend bool operator==(const StyledFont &, const StyledFont &) = default;
};

enum class LineBreakMode { WrapByWord, WrapByCharacter, TruncateInMiddle };

/// Attributes of a stretch of text; what isn't given stays as it was.
struct StyledRun
{
    TextRange range;
    std::optional<StyledColor> foreground;
    std::optional<StyledColor> background;
    bool underline = false;
    QUrl link;
    bool strikeOut = false;

    friend bool operator==(const StyledRun &, const StyledRun &) = default;
};

/// A text with its looks, free of any GUI library; whoever draws it applies the runs in order, later ones
/// over earlier ones. Runs may reach beyond the text and are cut to it then.
struct StyledText
{
    QString text;
    StyledFont font;
    LineBreakMode lineBreakMode = LineBreakMode::WrapByWord;
    QList<StyledRun> runs;

    TextRange wholeRange() const { return {0, text.size()}; }
    /// The colours a UTF-16 unit ends up with.
    std::optional<StyledColor> foregroundAt(qint64 index) const;
    std::optional<StyledColor> backgroundAt(qint64 index) const;
};

/// The whole text as a link to the URL: blue and underlined once.
StyledText hyperlinkFromString(const QString &text, const QUrl &url);

} // namespace tidemark
