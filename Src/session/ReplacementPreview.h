#pragma once

#include "matching/FindOptions.h"
#include "matching/TDMatchLine.h"
#include "text/TextEncoding.h"

#include <QList>
#include <QString>

#include <chrono>
#include <memory>
#include <optional>

namespace tidemark {

class TDReplacement;

/// What the matches of a line would become, to be shown beside them.
struct LinePreview
{
    /// By match; nothing where it stays as it is, was replaced before, or can't be replaced.
    QList<std::optional<QString>> replacements;
    /// Why some of it can't be written or told, for people; empty when all can.
    QString problem;
};

/// Computes what is shown by what writes it, but never keeps a person waiting: an expression that takes long
/// is left behind, and then nothing more is tried. Made anew for each change of the texts or options. Main
/// thread only.
class ReplacementPreview
{
public:
    ReplacementPreview(const QString &findText, const QString &replaceText, const FindOptions &options);

    /// `encoding` is that of the line's file; one that isn't known is taken to hold everything.
    LinePreview ofLine(const TDMatchLine &line, StringEncoding encoding) const;

    /// How many open matches of each line would stay as they are. Nothing when that can't be told, or not in
    /// this time.
    std::optional<QList<quint64>> staying(const QList<const TDMatchLine *> &lines,
                                          std::chrono::milliseconds allowed) const;

    /// Whether the expression took too long, so that nothing is told any more.
    bool hasGivenUp() const { return _timeLeft.count() <= 0; }

private:
    std::shared_ptr<const TDReplacement> _replacement;
    bool _isPlain;
    mutable std::chrono::milliseconds _timeLeft; ///< for lines that take long
};

} // namespace tidemark
