#pragma once

#include "foundation/FilePath.h"

#include <QByteArrayView>

namespace tidemark {

/// The ignore file that holds in all of the user's repositories: what core.excludesFile names in the user's
/// configuration of Git, or else the file "git/ignore" among the user's settings. Empty when there is no home
/// to look in. It need not exist.
FilePath userIgnoreFile();

/// The last value of core.excludesFile in such a configuration, without quotes; null where it has none. What
/// it includes isn't followed.
QByteArray excludesFileIn(QByteArrayView configuration);

} // namespace tidemark
