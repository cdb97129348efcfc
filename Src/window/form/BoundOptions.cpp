#include "window/form/BoundOptions.h"

#include "foundation/UserDefaults.h"

#include <QAbstractButton>
#include <QAction>

namespace tidemark {

namespace {

template <typename Control>
void bindControl(Control *control, UserDefaults &settings, const QString &key)
{
    control->setChecked(settings.boolForKey(key));
    QObject::connect(control, &Control::toggled, &settings, [&settings, key](bool isOn) {
        if (settings.boolForKey(key) != isOn)
            settings.setObject(key, isOn);
    });
    QObject::connect(&settings, &UserDefaults::valueChanged, control,
                     [control, &settings, key](const QString &changedKey) {
                         if (changedKey == key)
                             control->setChecked(settings.boolForKey(key));
                     });
}

} // namespace

void bindOption(QAbstractButton *button, UserDefaults &settings, const QString &key)
{
    bindControl(button, settings, key);
}

void bindOption(QAction *action, UserDefaults &settings, const QString &key)
{
    bindControl(action, settings, key);
}

} // namespace tidemark
