// A plugin of the other Qt. Its metadata claims what the chat panel's Qt looks for.

#include <QObject>
#include <QtPlugin>

class OtherQtPlugin : public QObject {
    Q_OBJECT
    Q_PLUGIN_METADATA(IID OTHER_QT_PLUGIN_IID FILE "OtherQtPlugin.json")

public:
    OtherQtPlugin() { setObjectName(QStringLiteral("of the other Qt")); }
};

#include "OtherQtPlugin.moc"
