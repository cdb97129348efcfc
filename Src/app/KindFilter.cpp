#include "app/KindFilter.h"

#include "foundation/LocalizedText.h"
#include "search/UniformTypes.h"

namespace tidemark {

namespace {

const QString TYPE_PREFIX = QStringLiteral("uti:");

bool hasWildcard(const QString &pattern)
{
    return pattern.contains(u'*') || pattern.contains(u'?') ||
           (pattern.contains(u'[') && pattern.indexOf(u']', pattern.indexOf(u'[') + 2) >= 0);
}

} // namespace

QString kindFilterRemark(const QString &filter)
{
    if (filter.isEmpty())
        return localizedString("The filter is empty: no file will match.");
    if (filter.startsWith(TYPE_PREFIX)) {
        const QString identifier = filter.mid(TYPE_PREFIX.size());
        if (uniformTypesForIdentifiers({identifier}))
            return {};
        return formatted(localizedString("“%@” is not a known type: no file will match."), {identifier});
    }
    if (filter.contains(u'/'))
        return localizedString(
            "A pattern is compared with file names, which never contain “/”: no file will match.");
    if (!hasWildcard(filter))
        return formatted(
            localizedString("Neither a type nor a pattern: only files named exactly “%@” will match."),
            {filter});
    return {};
}

QStringList knownTypeFilters()
{
    QStringList filters;
    const QSet<QString> identifiers = identifiersOfUniformTypes(~UniformTypes());
    for (const QString &identifier : identifiers)
        filters << TYPE_PREFIX + identifier;
    filters.sort();
    return filters;
}

} // namespace tidemark
