#include "window/PlainToolTip.h"

#include <QTextDocument>

namespace tidemark {

QString plainToolTip(const QString &text)
{
    if (!Qt::mightBeRichText(text))
        return text;
    return QStringLiteral("<div style=\"white-space: pre-wrap\">") + text.toHtmlEscaped() +
           QStringLiteral("</div>");
}

} // namespace tidemark
