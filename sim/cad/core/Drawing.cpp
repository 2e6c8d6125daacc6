#include "sim/cad/core/Drawing.h"

#include <utility>

namespace cad {

const Entity* Drawing::find(int id) const {
    for (const Entity& entity : m_entities) {
        if (entity.id == id) {
            return &entity;
        }
    }
    return nullptr;
}

const Entity* Drawing::pick(Point p, double tolerance) const {
    for (auto entity = m_entities.rbegin(); entity != m_entities.rend(); ++entity) {
        if (entity->distanceTo(p) <= tolerance) {
            return &*entity;
        }
    }
    return nullptr;
}

Box Drawing::extents() const {
    Box box;
    for (const Entity& entity : m_entities) {
        box.add(entity.bounds());
    }
    return box;
}

void Drawing::beginGroup(const std::string& name) {
    endGroup();
    m_open = Group{name, {}};
}

void Drawing::endGroup() {
    if (m_open && !m_open->changes.empty()) {
        m_done.push_back(std::move(*m_open));
    }
    m_open.reset();
}

int Drawing::add(Entity entity) {
    entity.id = ++m_lastId;
    record({true, std::move(entity), m_entities.size()});
    return m_lastId;
}

void Drawing::erase(int id) {
    for (size_t i = 0; i < m_entities.size(); ++i) {
        if (m_entities[i].id == id) {
            record({false, m_entities[i], i});
            return;
        }
    }
}

void Drawing::record(Change change) {
    m_undone.clear();
    apply(change, true);
    if (m_open) {
        m_open->changes.push_back(std::move(change));
    } else {
        m_done.push_back(Group{"", {std::move(change)}});
    }
}

void Drawing::apply(const Change& change, bool forward) {
    const auto place = m_entities.begin() + static_cast<std::ptrdiff_t>(change.index);
    if (change.added == forward) {
        m_entities.insert(place, change.entity);
    } else {
        m_entities.erase(place);
    }
    ++m_revision;
}

std::optional<std::string> Drawing::undo() {
    if (m_done.empty()) {
        return std::nullopt;
    }
    Group group = std::move(m_done.back());
    m_done.pop_back();
    for (auto change = group.changes.rbegin(); change != group.changes.rend(); ++change) {
        apply(*change, false);
    }
    m_undone.push_back(std::move(group));
    return m_undone.back().name;
}

std::optional<std::string> Drawing::redo() {
    if (m_undone.empty()) {
        return std::nullopt;
    }
    Group group = std::move(m_undone.back());
    m_undone.pop_back();
    for (const Change& change : group.changes) {
        apply(change, true);
    }
    m_done.push_back(std::move(group));
    return m_done.back().name;
}

}  // namespace cad
