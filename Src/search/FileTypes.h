#pragma once

#include <QByteArray>
#include <QSet>
#include <QStringList>

#include <functional>
#include <memory>

namespace tidemark {

/// Uniform type identifiers of regular files, decided by name through the shared MIME database; when the name
/// tells nothing, by whether the first bytes look like text.

/// Reads the first bytes of the file in question (up to 4096); called only when the name doesn't settle it. A
/// null array says that the file can't be read: it then counts as text, so that it isn't passed over in
/// silence.
using ContentProbe = std::function<QByteArray()>;

/// All identifiers a file conforms to, "public.item" and "public.data" included.
QSet<QString> typeIdentifiersForFile(const QByteArray &fileName, const ContentProbe &firstBytes);

/// Decides for many files whether a folder scope admits them: by type, or by wildcard pattern over the whole
/// file name without regard to case. Answers by suffix are kept, so that most files cost one look-up. Not to
/// be shared between threads.
class FileTypeFilter
{
public:
    FileTypeFilter(const QStringList &typeIdentifiers, const QStringList &filenamePatterns);
    ~FileTypeFilter();

    bool admits(const char *fileName, const ContentProbe &firstBytes);

private:
    class Implementation;
    std::unique_ptr<Implementation> _implementation;
};

/// A WildcardPattern made for one use.
bool matchesWildcardPattern(const QString &name, const QString &pattern);

} // namespace tidemark
