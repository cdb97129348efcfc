#pragma once

#include <QList>
#include <QString>

namespace tidemark {

/// The text shown for `key`, which is the English text itself (or an IDS_ name), from the default table of
/// the installed translations; the key where there is none. Callable from any thread.
QString localizedString(const char *key);

/// Installs the tables for the user's language on the application object: English first, which gives the
/// texts behind the IDS_ names and the platform's own words, then the user's language where there is one.
void installLocalizedTexts(const QString &localeName);

/// One argument of a format: a text, or a number in decimal.
class FormatArgument
{
public:
    FormatArgument(const QString &text) : _text(text) {}
    FormatArgument(int number) : _text(QString::number(number)) {}
    FormatArgument(qint64 number) : _text(QString::number(number)) {}
    FormatArgument(quint64 number) : _text(QString::number(number)) {}
    const QString &text() const { return _text; }

private:
    QString _text;
};

/// Fills the placeholders %@, %d and %lu of an already localised format from left to right. Placeholders in
/// the arguments are plain text; an argument too few leaves its placeholder standing.
QString formatted(const QString &format, const QList<FormatArgument> &arguments);

/// The number with the separators of the person's language.
QString grouped(quint64 number);

} // namespace tidemark
