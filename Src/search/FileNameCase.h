#pragma once

#include "text/PlainTextPattern.h"

namespace tidemark {

/// Whether the file system takes names in an open folder for the same that differ in case only.
CaseRule caseRuleOfNamesIn(int folderDescriptor);

} // namespace tidemark
