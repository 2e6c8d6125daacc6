#pragma once

#include <optional>
#include <string>
#include <vector>

#include "sim/cad/core/Entity.h"

namespace cad {

/// The entities of one document, oldest first, with a journal of what each command did to them.
class Drawing {
public:
    const std::vector<Entity>& entities() const { return m_entities; }
    const Entity* find(int id) const;
    /// The youngest entity within the tolerance of the point; null when none is near.
    const Entity* pick(Point p, double tolerance) const;
    /// The box around everything; empty for an empty drawing.
    Box extents() const;

    /// Changes between begin and end are undone together. A group without changes leaves no trace.
    void beginGroup(const std::string& name);
    void endGroup();

    /// Returns the new entity's id. Clears what could be redone.
    int add(Entity entity);
    void erase(int id);

    /// The name of the group that was undone or redone; nothing when there is none.
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
