#pragma once

#include <QByteArray>
#include <QList>
#include <QString>

namespace tidemark {

inline const QString kmKindTitleKey = QStringLiteral("title");
inline const QString kmKindUtiKey = QStringLiteral("uti");
inline const QString kmKindIncludeKey = QStringLiteral("include");

/// One entry of the application-wide list of kinds of files that searches of folders include.
struct Kind
{
    /// The entry that a person starts from when adding one: any file, as a pattern, not included.
    static Kind newKind();

    QString title;
    /// "uti:" and a type identifier, or else a wildcard pattern for file names.
    QString uti;
    bool include = false;

    /// For logs.
    QString description() const;

    static QList<Kind> defaultKinds();
    static QList<Kind> wildcardKinds();
    static QList<Kind> newKinds();

    friend bool operator==(const Kind &, const Kind &) = default;
};

/// The list as one value for the settings store, and back. An archive that isn't one gives nothing; an entry
/// that lacks a field gets the empty value for it.
QByteArray archivedKinds(const QList<Kind> &kinds);
QList<Kind> unarchivedKinds(const QByteArray &archive, bool *ok = nullptr);

/// The list in force for the whole application; replaced as a whole and readable from any thread.
QList<Kind> kindsInForce();
void setKindsInForce(const QList<Kind> &kinds);

} // namespace tidemark
