#include "foundation/LocalizedText.h"

#include <QCoreApplication>
#include <QLocale>
#include <QTranslator>

#include <algorithm>
#include <array>

static void initializeTextResources()
{
    Q_INIT_RESOURCE(texts);
}

namespace tidemark {

namespace {

constexpr const char *TEXT_TABLE = "Localizable";
constexpr std::array<QStringView, 3> PLACEHOLDERS = {u"%@", u"%lu", u"%d"};

void installTable(const QString &language)
{
    auto *translator = new QTranslator(QCoreApplication::instance());
    if (translator->load(QStringLiteral(":/texts/tidemark_%1.qm").arg(language)))
        QCoreApplication::installTranslator(translator);
    else
        delete translator;
}

} // namespace

QString localizedString(const char *key)
{
    return QCoreApplication::translate(TEXT_TABLE, key);
}

void installLocalizedTexts(const QString &localeName)
{
    initializeTextResources();
    installTable(QStringLiteral("en"));
    const QString language = localeName.section(u'_', 0, 0);
    if (language != QLatin1String("en"))
        installTable(language);
}

QString formatted(const QString &format, const QList<FormatArgument> &arguments)
{
    QString result;
    qsizetype position = 0;
    for (const FormatArgument &argument : arguments) {
        qsizetype next = format.size();
        qsizetype length = 0;
        for (const QStringView placeholder : PLACEHOLDERS) {
            const qsizetype found = format.indexOf(placeholder, position);
            if (found >= 0 && found < next) {
                next = found;
                length = placeholder.size();
            }
        }
        if (length == 0)
            break;
        result += QStringView(format).mid(position, next - position);
        result += argument.text();
        position = next + length;
    }
    result += QStringView(format).mid(position);
    return result;
}

QString grouped(quint64 number)
{
    return QLocale().toString(number);
}

} // namespace tidemark
