#pragma once

#include <QByteArrayView>

namespace tidemark {

/// Whether the library could take long to compile the expression, or more stack than there is. It looks for
/// the first characters of matches along every way through alternatives that match nothing themselves, and
/// for the length of what is looked behind along every way through all alternatives: twice as many with each
/// group. Nothing is said about how long it takes to match.
bool isTooComplexToCompile(QByteArrayView expression);

} // namespace tidemark
