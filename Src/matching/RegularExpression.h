#pragma once

#include "foundation/PlainTextPattern.h"

#include <QByteArrayView>

#include <boost/regex.hpp>

namespace tidemark {

/// A Perl expression over bytes, independent of the user's locale: letters and classes are those of ASCII.
/// Throws boost::regex_error when it is malformed, other std::runtime_error when it can't be compiled.
boost::regex compiledExpression(QByteArrayView pattern, CaseRule caseRule);

} // namespace tidemark
