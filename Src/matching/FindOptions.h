#pragma once

#include "text/PlainTextPattern.h"

namespace tidemark {

/// How a find text is read.
enum class SearchMode {
    PlainText,
    RegularExpression, ///< over the bytes of the line's UTF-8
    UnicodeExpression  ///< over its characters
};

/// How a find text is read and what counts as a match of it. A value: whoever starts a search or a replace
/// command makes it once from the settings, and nothing that it starts looks at them again.
struct FindOptions
{
    SearchMode mode = SearchMode::PlainText;
    CaseRule caseRule = CaseRule::Exact;
    bool wholeWords = false;

    /// As the settings are now.
    static FindOptions withUserDefaults();
    /// The same with this case rule instead of the one of the settings.
    static FindOptions withUserDefaults(CaseRule caseRule);

    friend bool operator==(const FindOptions &, const FindOptions &) = default;
};

} // namespace tidemark
