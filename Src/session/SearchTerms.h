#pragma once

#include <QString>

namespace tidemark {

/// What is searched for and how it is read, to tell whether results still fit what stands in the window.
struct SearchTerms
{
    QString findText;
    bool isExpression = false;
    bool ignoresCase = false;

    /// The text with the settings as they are now.
    static SearchTerms withUserDefaults(const QString &findText);

    friend bool operator==(const SearchTerms &, const SearchTerms &) = default;
};

} // namespace tidemark
