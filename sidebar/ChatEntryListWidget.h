#pragma once

#include <QListWidget>

/// A list whose rows are item widgets. A plain QListWidget does not shrink them when its viewport becomes
/// narrower, for example when a scroll bar appears, and their right end is clipped.
class ChatEntryListWidget : public QListWidget {
    Q_OBJECT

public:
    explicit ChatEntryListWidget(QWidget* parent = nullptr);

protected:
    void updateGeometries() override;
};
