#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sim/cad/core/Entity.h"

namespace cad {

/// The entities of one document, oldest first, with an undo journal grouped by command.
class Drawing {
public:
    const std::vector<Entity>& entities() const { return m_entities; }
    const Entity* find(int id) const;
    /// The newest entity within the tolerance of the point; null if there is none.
    const Entity* pick(Point p, double tolerance) const;
    /// The bounding box of all entities; empty for an empty drawing.
    Box extents() const;

    /// Changes between begin and end are undone together. A group without changes is discarded.
    void beginGroup(const std::string& name);
    void endGroup();

    /// Returns the new entity's id. Like erase(), clears the redo list.
    int add(Entity entity);
    void erase(int id);

    /// Return the name of the group undone or redone; nullopt if there is none.
    std::optional<std::string> undo();
    std::optional<std::string> redo();

    /// Counts changes of any kind, for windows that show the drawing.
    unsigned revision() const { return m_revision; }

private:
    struct Change {
        bool added;
        Entity entity;
        size_t index;
    };
    struct Group {
        std::string name;
        std::vector<Change> changes;
    };

    void record(Change change);
    void apply(const Change& change, bool forward);

    std::vector<Entity> m_entities;
    std::vector<Group> m_done;
    std::vector<Group> m_undone;
    std::optional<Group> m_open;
    int m_lastId = 0;
    unsigned m_revision = 0;
};

}  // namespace cad
