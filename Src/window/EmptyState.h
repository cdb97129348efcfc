#pragma once

#include "window/Symbols.h"

#include <QWidget>

class QLabel;
class QPushButton;

namespace tidemark {

/// What an empty list shows in place of rows: an icon, a sentence, and a button if it has a text. It lies
/// over its parent and is as large; where there is little room the icon goes first, then the button.
class EmptyState : public QWidget
{
    Q_OBJECT

public:
    EmptyState(Symbol symbol, QWidget *parent);

    void setSentence(const QString &sentence);
    QString sentence() const;
    void setButton(const QString &text, const QString &toolTip);
    bool eventFilter(QObject *watched, QEvent *event) override;

Q_SIGNALS:
    void buttonClicked();

protected:
    void showEvent(QShowEvent *event) override;
    void changeEvent(QEvent *event) override;

private:
    void _arrange();
    void _useColors();

    const Symbol _symbol;
    QLabel *_picture;
    QLabel *_sentence;
    QPushButton *_button;
};

} // namespace tidemark
