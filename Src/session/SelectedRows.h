#pragma once

#include <QHash>
#include <QSet>

#include <map>

namespace tidemark {

class TDFindResultItem;

/// A set of rows of the results: files, and lines by the files they belong to. Sorting the files changes
/// nothing in it. Every operation takes at most linear time in the files that are touched, however many lines
/// they have.
class SelectedRows
{
public:
    using Runs = std::map<int, int>; ///< first to last line
    using Files = QSet<const TDFindResultItem *>;
    using Lines = QHash<const TDFindResultItem *, Runs>;

    bool isEmpty() const { return _files.isEmpty() && _lines.isEmpty(); }
    const Files &files() const { return _files; }
    /// No entry without a line.
    const Lines &lines() const { return _lines; }
    bool contains(const TDFindResultItem &item) const;
    /// Whether the file is selected, or one of its lines.
    bool touches(const TDFindResultItem &file) const
    {
        return _files.contains(&file) || _lines.contains(&file);
    }

    void addFile(const TDFindResultItem *file) { _files.insert(file); }
    /// From the first to the last one, which is part of it.
    void addLines(const TDFindResultItem *file, int first, int last);
    void removeLines(const TDFindResultItem *file) { _lines.remove(file); }

    void add(const SelectedRows &others);
    void remove(const SelectedRows &others);
    friend bool operator==(const SelectedRows &, const SelectedRows &) = default;

private:
    Files _files;
    Lines _lines;
};

} // namespace tidemark
