#include "window/results/ResultsFont.h"

#include "foundation/UserDefaults.h"

#include <QFontDatabase>
#include <QFontInfo>

#include <algorithm>

namespace tidemark {

QFont fixedPitchFont(const QFont &around)
{
    QFont font = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    if (around.pointSizeF() > 0)
        font.setPointSizeF(around.pointSizeF());
    else
        font.setPixelSize(around.pixelSize());
    return font;
}

QFont resultsFont(const QFont &around)
{
    const UserDefaults &settings = UserDefaults::standard();
    QFont font = fixedPitchFont(around);
    const QString family = settings.stringForKey(TD_USER_DEFAULTS_NAME_RESULTS_FONT);
    if (!family.isEmpty())
        font.setFamily(family);
    const qint64 size = settings.integerForKey(TD_USER_DEFAULTS_NAME_RESULTS_FONT_SIZE);
    if (size > 0)
        font.setPointSize(int(std::clamp<qint64>(size, SMALLEST_RESULTS_FONT, LARGEST_RESULTS_FONT)));
    return font;
}

void changeResultsFontSize(int points, const QFont &around)
{
    const int now = qRound(QFontInfo(resultsFont(around)).pointSizeF());
    UserDefaults::standard().setObject(
        TD_USER_DEFAULTS_NAME_RESULTS_FONT_SIZE,
        points == 0 ? 0 : std::clamp(now + points, SMALLEST_RESULTS_FONT, LARGEST_RESULTS_FONT));
}

} // namespace tidemark
