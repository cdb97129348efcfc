#include "window/results/ShiftedMatchesNotice.h"

#include "foundation/LocalizedText.h"
#include "foundation/UserDefaults.h"
#include "session/SearchControl.h"

#include <QLabel>

namespace tidemark {

ShiftedMatchesNotice::ShiftedMatchesNotice(QLabel &label, SearchControl &search, QObject *parent)
    : QObject(parent), _label(label)
{
    const QString text =
        localizedString("Some lines hold characters beyond ASCII; their matches may be shifted.");
    label.setText(text.toHtmlEscaped() + QStringLiteral(" <a href=\"unicode\">") +
                  localizedString("Search Again with Unicode").toHtmlEscaped() + QStringLiteral("</a>"));
    label.setAccessibleName(text);
    label.hide();
    connect(&search, &SearchControl::searchWillStart, &label, &QWidget::hide);
    connect(&search, &SearchControl::searchFinished, this,
            [this, &search] { _label.setVisible(search.matchesMayBeShifted()); });
    connect(&label, &QLabel::linkActivated, this, [this] {
        UserDefaults::standard().setObject(TD_USER_DEFAULTS_NAME_UNICODE_REGULAR_EXPRESSION, true);
        Q_EMIT searchRequested();
    });
}

} // namespace tidemark
