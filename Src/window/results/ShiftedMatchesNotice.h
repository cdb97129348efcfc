#pragma once

#include <QObject>

class QLabel;

namespace tidemark {

class SearchControl;

/// One line under the status when a search by bytes listed lines on which matches may be shifted, with a link
/// that ticks Unicode and asks for the search again.
class ShiftedMatchesNotice : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive the object.
    ShiftedMatchesNotice(QLabel &label, SearchControl &search, QObject *parent = nullptr);

Q_SIGNALS:
    void searchRequested();

private:
    QLabel &_label;
};

} // namespace tidemark
