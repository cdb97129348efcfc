#pragma once

#include "foundation/Descriptor.h"

#include <QByteArray>

#include <functional>

namespace tidemark {

/// Makes an empty file for this user only under a name that is free: the Xs at the end of the template become
/// unique letters. `beforeMaking` gets each name before a file is made under it; an errno that it returns
/// ends the attempt. The descriptor, open for reading and writing, with the path in the template; or none and
/// errno.
Descriptor makeUniqueFile(QByteArray &pathTemplate,
                          const std::function<int(const QByteArray &path)> &beforeMaking = {});

} // namespace tidemark
