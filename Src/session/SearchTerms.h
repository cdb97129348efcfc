#pragma once

#include "matching/FindOptions.h"

#include <QString>

namespace tidemark {

/// What is searched for and how it is read, to tell whether results still fit what stands in the window.
struct SearchTerms
{
    QString findText;
    FindOptions options;

    bool isExpression() const { return options.mode != SearchMode::PlainText; }

    /// The text with the settings as they are now.
    static SearchTerms withUserDefaults(const QString &findText);

    friend bool operator==(const SearchTerms &, const SearchTerms &) = default;
};

} // namespace tidemark
