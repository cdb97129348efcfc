#pragma once

#include <QObject>
#include <QString>

class QSessionManager;

namespace tidemark {

class TDApplicationController;

/// Takes part in the sessions of the desktop: settings are saved when one ends, and the windows are opened
/// again when it is taken up. Main thread only.
class DesktopSession : public QObject
{
    Q_OBJECT

public:
    /// The controller must outlive the object.
    explicit DesktopSession(TDApplicationController &controller, QObject *parent = nullptr);

    /// What a session is called, by what the desktop says of it.
    static QString nameOf(const QString &id, const QString &key) { return id + u'_' + key; }
    /// Keeps in the settings which windows there are, with what is in their fields.
    void save(const QString &session) const;
    /// Opens them again; false for a session that isn't the one kept, or that had no window.
    bool restore(const QString &session);

private:
    void _commitData(QSessionManager &manager);

    TDApplicationController &_controller;
};

} // namespace tidemark
