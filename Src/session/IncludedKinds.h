#pragma once

#include <QString>

namespace tidemark {

/// The titles of the kinds that are included, for people.
QString includedKindTitles();

} // namespace tidemark
