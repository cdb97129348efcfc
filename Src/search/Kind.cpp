#include "search/Kind.h"

#include "foundation/LocalizedText.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <mutex>
#include <optional>

using namespace Qt::Literals::StringLiterals;

namespace tidemark {

namespace {

std::mutex kindsMutex;
std::optional<QList<Kind>> sharedKinds;

} // namespace

Kind Kind::newKind()
{
    return {localizedString("IDS_Any"), u"public.item"_s, false};
}

QString Kind::description() const
{
    return formatted(u"<%@: title = %@ uti = %@ include = %d"_s, {u"Kind"_s, title, uti, include ? 1 : 0});
}

QList<Kind> Kind::defaultKinds()
{
    return wildcardKinds() +
           QList<Kind>{
               {localizedString("IDS_Any"), u"uti:public.item"_s, false},
               {localizedString("IDS_Text"), u"uti:public.text"_s, true},
               {localizedString("IDS_Documents"), u"uti:public.content"_s, false},
               {localizedString("IDS_SourceCode"), u"uti:public.source-code"_s, false},
           } +
           newKinds();
}

QList<Kind> Kind::wildcardKinds()
{
    return {
        {localizedString("IDS_WildcardSample1"), localizedString("IDS_WildcardSample1Uti"), false},
        {localizedString("IDS_WildcardSample2"), localizedString("IDS_WildcardSample2Uti"), false},
    };
}

QList<Kind> Kind::newKinds()
{
    return {};
}

QByteArray archivedKinds(const QList<Kind> &kinds)
{
    QJsonArray array;
    for (const Kind &kind : kinds) {
        array.append(QJsonObject{
            {kmKindTitleKey, kind.title}, {kmKindUtiKey, kind.uti}, {kmKindIncludeKey, kind.include}});
    }
    return QJsonDocument(array).toJson(QJsonDocument::Compact);
}

QList<Kind> unarchivedKinds(const QByteArray &archive, bool *ok)
{
    const QJsonDocument document = QJsonDocument::fromJson(archive);
    if (ok)
        *ok = document.isArray();
    QList<Kind> kinds;
    for (const QJsonValue entry : document.array()) {
        if (entry.isObject())
            kinds.append({entry[kmKindTitleKey].toString(), entry[kmKindUtiKey].toString(),
                          entry[kmKindIncludeKey].toBool()});
    }
    return kinds;
}

QList<Kind> kindsInForce()
{
    const std::lock_guard lock(kindsMutex);
    return sharedKinds ? *sharedKinds : Kind::defaultKinds();
}

void setKindsInForce(const QList<Kind> &kinds)
{
    const std::lock_guard lock(kindsMutex);
    sharedKinds = kinds;
}

} // namespace tidemark
