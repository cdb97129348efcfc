#pragma once

// What nearly every test needs.

#include "support/Table.h"
#include "support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace tidemark::test {

using namespace Qt::Literals::StringLiterals;

} // namespace tidemark::test
