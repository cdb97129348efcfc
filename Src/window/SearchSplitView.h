#pragma once

#include <QSplitter>

namespace tidemark {

/// Form above, results below. Keeps to SplitViewLayout while the divider is dragged and when its size
/// changes; what the panes need at least, with large fonts, comes first.
class SearchSplitView : public QSplitter
{
    Q_OBJECT

public:
    explicit SearchSplitView(QWidget *parent = nullptr);

    /// Where the divider ends up when it is dragged there.
    int constrainedPosition(int proposedPosition) const;
    /// How high the form is when the window is shown for the first time.
    void setOpeningTop(int height) { _openingTop = height; }

protected:
    QSplitterHandle *createHandle() override;
    void resizeEvent(QResizeEvent *event) override;
    void showEvent(QShowEvent *event) override;

private:
    double _exactTopHeight() const;

    /// The layout's heights have fractions, the screen's don't; kept so that they don't add up.
    double _topHeight = 0;
    int _openingTop = 0; ///< 0: as it is
};

} // namespace tidemark
