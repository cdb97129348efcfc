#pragma once

#include <QString>
#include <QStringList>

namespace tidemark {

/// What a person should know about the filter of a kind that is neither a known type nor a wildcard pattern;
/// empty when there is nothing to say.
QString kindFilterRemark(const QString &filter);

/// Every known type, written as a filter; sorted.
QStringList knownTypeFilters();

} // namespace tidemark
