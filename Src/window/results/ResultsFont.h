#pragma once

#include <QFont>

namespace tidemark {

/// What lines of files are shown in: the family and size of the settings, else the platform's own font with
/// letters of one width, as large as `around`, the font of the texts around it.
QFont resultsFont(const QFont &around);
/// The same for fields, whose size is not the results'.
QFont fixedPitchFont(const QFont &around);

inline constexpr int SMALLEST_RESULTS_FONT = 6;
inline constexpr int LARGEST_RESULTS_FONT = 48;

/// Larger or smaller by so many points, within the limits; 0: as large as the texts around again. Stored for
/// every window.
void changeResultsFontSize(int points, const QFont &around);

} // namespace tidemark
