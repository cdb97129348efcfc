#include "session/IncludedKinds.h"

#include "foundation/LocalizedText.h"
#include "search/Kind.h"

#include <QStringList>

namespace tidemark {

QString includedKindTitles()
{
    QStringList titles;
    const QList<Kind> kinds = kindsInForce();
    for (const Kind &kind : kinds) {
        if (kind.include)
            titles << kind.title;
    }
    return titles.join(localizedString(", "));
}

} // namespace tidemark
