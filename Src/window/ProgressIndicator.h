#pragma once

#include <QBasicTimer>
#include <QElapsedTimer>
#include <QWidget>

#include <functional>
#include <optional>

namespace tidemark {

/// A thin bar that moves while it is shown: how much is done where that is known, else to and fro. Hidden it
/// keeps its place in the layout, so that nothing moves.
class ProgressIndicator : public QWidget
{
    Q_OBJECT

public:
    explicit ProgressIndicator(QWidget *parent = nullptr);

    /// Asked again and again while it is shown; from 0 to 1, or nothing when nobody knows.
    void setShareDone(std::function<std::optional<double>()> shareDone);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void showEvent(QShowEvent *event) override;
    void hideEvent(QHideEvent *event) override;

private:
    QRectF _bar() const;

    std::function<std::optional<double>()> _shareDone;
    QBasicTimer _timer;
    QElapsedTimer _sinceShown;
};

} // namespace tidemark
