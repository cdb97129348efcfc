#pragma once

#include <QLabel>

namespace tidemark {

/// A plain text in one line that never asks for more room than there is: its middle is left out instead, and
/// the whole text is then its tool tip. Its accessible name is the text.
class ElidedLabel : public QLabel
{
    Q_OBJECT

public:
    explicit ElidedLabel(QWidget *parent = nullptr);

    void setWholeText(const QString &text);
    const QString &wholeText() const { return _wholeText; }

    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void _elide();

    QString _wholeText;
};

} // namespace tidemark
