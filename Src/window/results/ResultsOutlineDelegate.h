#pragma once

#include <QPoint>

namespace tidemark {

/// What the outline view asks of the window's controller when keys are pressed or the context menu is wanted.
class ResultsOutlineDelegate
{
public:
    virtual ~ResultsOutlineDelegate() = default;

    virtual bool hasSearchResults() const { return false; }

    virtual void replaceSelection() {}
    virtual void replaceAndFind() {}
    virtual void replace() {}
    virtual void replaceAll() {}
    virtual void removeSelected() {}

    virtual void moveToNextMatch() {}
    virtual void moveToPreviousMatch() {}
    virtual void moveToNextMatchByExtendingSelection() {}
    virtual void moveToPreviousMatchByExtendingSelection() {}
    virtual void moveToFirstMatchInNextFile() {}
    virtual void moveToFirstMatchInFile() {}

    /// The row is selected by now; the position is global.
    virtual void rightMouseDownInColumn([[maybe_unused]] int column, [[maybe_unused]] int row,
                                        [[maybe_unused]] QPoint position)
    {}
};

} // namespace tidemark
