// The list of kinds from the settings, and names of files that it admits.
// An input is a file name up to a line feed, and the archive.

#include "Fuzzing.h"

#include "search/FileTypes.h"
#include "search/Kind.h"

namespace tidemark::fuzz {

void run(Input &input)
{
    const QByteArray fileName = input.line().replace('\0', 'x');
    bool ok = false;
    const QList<Kind> kinds = unarchivedKinds(input.rest(), &ok);
    require(ok || kinds.isEmpty(), "what is no archive gives nothing");
    require(unarchivedKinds(archivedKinds(kinds), &ok) == kinds && ok, "kinds survive being archived");

    QStringList types;
    QStringList patterns;
    for (const Kind &kind : kinds) {
        if (kind.uti.startsWith(QLatin1String("uti:")))
            types << kind.uti.mid(4);
        else
            patterns << kind.uti;
    }
    const TimeLimit limit;
    FileTypeFilter filter(types, patterns);
    const bool admitted = filter.admits(fileName.constData(), [] { return QByteArray("text"); });
    limit.check("a name is judged soon", 0.1);
    require(filter.admits(fileName.constData(), [] { return QByteArray("text"); }) == admitted,
            "a name is judged the same again");
}

} // namespace tidemark::fuzz
