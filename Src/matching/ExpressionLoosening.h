#pragma once

#include "text/PlainTextPattern.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace tidemark {

/// An expression for the block matcher, over characters, that matches within every line in which the given
/// one, an expression over characters, matches. It may match within other lines, too: assertions are left
/// out, and of what lies beyond ASCII only characters that stand for themselves are kept, as the matcher
/// knows another version of Unicode. Nothing where that isn't certain.
std::optional<QByteArray> loosenedExpression(QByteArrayView expression, CaseRule caseRule);

} // namespace tidemark
