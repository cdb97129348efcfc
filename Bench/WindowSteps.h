#pragma once

#include "BenchWindow.h"

#include <QString>

namespace tidemark {

/// Prints one line of a table in Markdown; a goal that is missed is marked.
void printRow(const QString &what, const QString &measured, const QString &goal, bool isMet);

/// The same for a duration in milliseconds.
void printDuration(const QString &what, Duration duration, double goal);

/// Walks, scrolls, selects, opens, closes, asks and removes in the window's results, which are there and very
/// many, and prints the longest step of each kind. Nothing is left of the results afterwards.
void measureSteps(BenchWindow &window);

} // namespace tidemark
