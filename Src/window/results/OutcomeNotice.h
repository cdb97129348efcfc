#pragma once

#include <QByteArray>
#include <QObject>

class QLabel;

namespace Ui {
class MyDocument;
}

namespace tidemark {

/// The links behind the status line: after a search to the files that couldn't be read, after a run of
/// replacements to those that failed, and to undo the run, or redo it. Main thread only.
class OutcomeNotice : public QObject
{
    Q_OBJECT

public:
    /// The form must outlive the object.
    explicit OutcomeNotice(Ui::MyDocument &ui, QObject *parent = nullptr);

    /// `step` of the journal takes the run back; empty when nothing does.
    void show(quint64 filesFailed, const QByteArray &step);
    /// 0: there is no link to them.
    void setUnreadableFiles(quint64 count);
    /// Undoing wouldn't be about what is shown any more.
    void forgetStep();
    /// The status line tells something else than of a run by now.
    void hide();

Q_SIGNALS:
    void unreadableFilesRequested();
    void failuresRequested();
    void takeBackRequested(const QByteArray &stepId);

private:
    bool eventFilter(QObject *watched, QEvent *event) override;
    void _update();

    Ui::MyDocument &_ui;
    QLabel *_links;
    quint64 _unreadableFiles = 0;
    quint64 _filesFailed = 0;
    QByteArray _step;
};

} // namespace tidemark
