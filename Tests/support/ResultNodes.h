#pragma once

#include "matching/TDFindResultItem.h"

#include <QStringList>

namespace tidemark::test {

/// A file node with these lines, in which every "foo" is a match.
std::shared_ptr<TDFindResultItem> fileNode(const QByteArray &path, const QStringList &lines);
std::shared_ptr<TDFindResultItem> failedFileNode(const QByteArray &path, const QString &reason);

} // namespace tidemark::test
