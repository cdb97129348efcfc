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

    /// Whether it is as wide as its text where there is room, so that what stands behind it follows the text.
    void setHuggingText(bool hugs);

    QSize minimumSizeHint() const override;

protected:
    void resizeEvent(QResizeEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void _hug();
    void _elide();

    QString _wholeText;
    bool _hugsText = false;
};

} // namespace tidemark
