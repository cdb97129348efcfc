#pragma once

#include "text/PlainTextPattern.h"

#include <QByteArray>
#include <QByteArrayView>

#include <optional>

namespace tidemark {

/// An expression in the block matcher's syntax that matches within every line in which the given one, as
/// compiledExpression() reads it, matches within some first part of the line. It may match within other
/// lines, too. Positions and what precedes or follows a match are not looked at: assertions are left out,
/// back references stand for anything. Nothing when the expression is malformed, may match an empty text, or
/// uses something that isn't known to be translated faithfully.
std::optional<QByteArray> translatedExpression(QByteArrayView expression, CaseRule caseRule);

} // namespace tidemark
