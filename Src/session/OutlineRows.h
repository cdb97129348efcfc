#pragma once

#include <QtGlobal>

#include <vector>

namespace tidemark {

/// Which rows an outline of files and lines has: each file a row, followed by its lines while it is expanded.
/// Finding a row, or the row of a line, takes a logarithmic number of steps, however many there are.
class OutlineRows
{
public:
    struct Place
    {
        int file = -1;
        int line = -1; ///< -1: the file's own row
        friend bool operator==(const Place &, const Place &) = default;
    };

    void clear();
    void reserve(int fileCount);
    /// A file behind the last one, which shows so many lines.
    void appendFile(int shownLines);
    void setShownLines(int file, int shownLines);

    int fileCount() const { return int(_shownLines.size()); }
    int shownLines(int file) const { return _shownLines[size_t(file)]; }
    int rowCount() const { return _rowCount; }
    /// The row of the file itself.
    int rowOfFile(int file) const;
    /// The row must exist.
    Place place(int row) const;

private:
    std::vector<int> _shownLines;
    std::vector<int> _sums; ///< binary indexed tree over the rows of each file
    int _rowCount = 0;
};

} // namespace tidemark
