#pragma once

#include <QStringView>

namespace tidemark {

/// The platform's default string comparison: canonically equivalent texts are equal, otherwise the first
/// differing code point of the decomposed forms decides; no locale, nothing ignored, case counts.
/// Negative, zero or positive.
int compare(QStringView left, QStringView right);

} // namespace tidemark
