#include "session/OutlineRows.h"

#include <bit>

namespace tidemark {

namespace {

constexpr size_t lowestBit(size_t number)
{
    return number & (~number + 1);
}

} // namespace

void OutlineRows::clear()
{
    _shownLines.clear();
    _sums.clear();
    _rowCount = 0;
}

void OutlineRows::reserve(int fileCount)
{
    _shownLines.reserve(size_t(fileCount));
    _sums.reserve(size_t(fileCount));
}

void OutlineRows::appendFile(int shownLines)
{
    _shownLines.push_back(shownLines);
    const size_t number = _shownLines.size();
    int sum = 1 + shownLines;
    for (size_t below = number - 1; below > number - lowestBit(number); below -= lowestBit(below))
        sum += _sums[below - 1];
    _sums.push_back(sum);
    _rowCount += 1 + shownLines;
}

void OutlineRows::setShownLines(int file, int shownLines)
{
    const int difference = shownLines - _shownLines[size_t(file)];
    _shownLines[size_t(file)] = shownLines;
    for (size_t number = size_t(file) + 1; number <= _sums.size(); number += lowestBit(number))
        _sums[number - 1] += difference;
    _rowCount += difference;
}

int OutlineRows::rowOfFile(int file) const
{
    int row = 0;
    for (size_t number = size_t(file); number > 0; number -= lowestBit(number))
        row += _sums[number - 1];
    return row;
}

OutlineRows::Place OutlineRows::place(int row) const
{
    size_t file = 0;
    for (size_t step = std::bit_floor(_sums.size()); step > 0; step >>= 1) {
        if (file + step <= _sums.size() && _sums[file + step - 1] <= row) {
            file += step;
            row -= _sums[file - 1];
        }
    }
    return {int(file), row - 1};
}

} // namespace tidemark
