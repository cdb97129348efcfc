#pragma once

#include "search/IgnorePattern.h"
#include "search/TDSearchLocation.h"

#include <QList>
#include <QString>

#include <optional>

namespace tidemark {

/// A pattern for the settings that leaves out the folder that the file lies in. Empty where that is a
/// location itself, or no location holds it.
QString patternForFolderOf(const FilePath &file, const QList<TDSearchLocation> &locations);
/// One that leaves out files with the same ending, or else of the same name.
QString patternForFilesLike(const FilePath &file);
/// The patterns with another at the end; as they are when it is among them.
QString withPattern(const QString &patterns, const QString &pattern);

struct PatternFault
{
    QString pattern;
    IgnorePattern::Fault fault;
};
/// Of the first that matches nothing.
std::optional<PatternFault> faultOfPatterns(const QString &patterns);

} // namespace tidemark
