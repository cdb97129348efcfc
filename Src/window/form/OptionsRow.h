#pragma once

#include <QList>
#include <QWidget>

namespace tidemark {

/// Controls beside each other, in as many rows as it takes; those that stand at the end are at the far edge
/// of the last row.
class OptionsRow : public QWidget
{
    Q_OBJECT

public:
    explicit OptionsRow(QWidget *parent = nullptr);

    /// All must be its children.
    void setControls(const QList<QWidget *> &controls, const QList<QWidget *> &atTheEnd = {});
    /// What it takes in that width.
    int heightAt(int width) const;

    QSize sizeHint() const override;
    /// As high as it takes at its present width.
    QSize minimumSizeHint() const override;

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;

private:
    struct Place
    {
        QWidget *control;
        QRect rect;
    };
    QList<Place> _placesAt(int width) const;
    QList<QWidget *> _visible(const QList<QWidget *> &controls) const;
    void _arrange();

    QList<QWidget *> _controls;
    QList<QWidget *> _atTheEnd;
    bool _isPlaced = false; ///< its width is that of the window
};

} // namespace tidemark
