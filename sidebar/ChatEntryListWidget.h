#pragma once

#include <QListWidget>

/// A list of entries that are widgets. A plain list leaves them as wide as they were when it becomes
/// narrower, as it does when a scroll bar comes up beside it: what stands at their right end is then cut off.
class ChatEntryListWidget : public QListWidget {
    Q_OBJECT

public:
    explicit ChatEntryListWidget(QWidget* parent = nullptr);

protected:
    void updateGeometries() override;
};
