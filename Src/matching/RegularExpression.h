#pragma once

#include "foundation/TDError.h"
#include "text/PlainTextPattern.h"

#include <QByteArrayView>
#include <QString>

#include <boost/regex.hpp>

#include <chrono>
#include <new>
#include <stdexcept>

namespace tidemark {

/// A Perl expression over bytes, independent of the user's locale: letters and classes are those of ASCII.
/// Throws boost::regex_error when it is malformed, other std::runtime_error when it can't be compiled; among
/// them ExpressionLimitReached when it would take too long.
boost::regex compiledExpression(QByteArrayView pattern, CaseRule caseRule);

/// What takes longer to compile is given up.
inline constexpr std::chrono::milliseconds LONGEST_COMPILATION = std::chrono::seconds(5);
/// The same, and a stop doesn't wait for the compiler.
boost::regex compiledExpressionAbandonably(const QByteArray &pattern, CaseRule caseRule);

/// What the library says of an expression, by the exception it throws.
enum class ExpressionFault { None, Malformed, Internal };

/// Runs what compiles or applies an expression, and tells what went wrong.
template <typename Action>
ExpressionFault expressionFaultOf(Action action)
{
    try {
        action();
        return ExpressionFault::None;
    } catch (const boost::regex_error &) {
        return ExpressionFault::Malformed;
    } catch (const std::runtime_error &) {
        return ExpressionFault::Internal;
    } catch (const std::bad_alloc &) {
        return ExpressionFault::Internal;
    }
}

/// Error code 36 for a search.
TDError searchError(ExpressionFault fault, const QString &findText);

/// What the user is advised to do about a faulty expression.
QString recoverySuggestionForExpression(ExpressionFault fault);
/// The same about a faulty expression or format string.
QString recoverySuggestionForFormat(ExpressionFault fault);

} // namespace tidemark
