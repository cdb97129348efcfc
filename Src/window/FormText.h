#pragma once

#include "foundation/LocalizedText.h"

namespace tidemark {

/// What window layouts get their texts from.
inline QString formText(const char *text, const char *)
{
    return localizedString(text);
}

} // namespace tidemark
