#pragma once

#include <QBasicTimer>
#include <QWidget>

namespace tidemark {

/// Turns while it is shown. Hidden it keeps its place in the layout, so that nothing moves.
class ProgressIndicator : public QWidget
{
    Q_OBJECT

public:
    explicit ProgressIndicator(QWidget *parent = nullptr);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QBasicTimer _timer;
    int _step = 0;
};

} // namespace tidemark
