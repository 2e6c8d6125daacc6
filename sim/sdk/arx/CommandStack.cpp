#include <afx.h>

#include <algorithm>
#include <list>
#include <memory>
#include <vector>

#include "ArxHost.h"
#include "ArxObjects.h"
#include "ArxThread.h"

ACRX_NO_CONS_DEFINE_MEMBERS(AcEdCommand, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcEdCommandIterator, AcRxObject)
ACRX_NO_CONS_DEFINE_MEMBERS(AcEdCommandStack, AcRxObject)

const AcRxResourceInstance& AcRxResourceInstance::empty() {
    static const AcRxResourceInstance instance(nullptr);
    return instance;
}

namespace {

class Command : public AcEdCommand {
public:
    Command(const CString& group, const ACHAR* globalName, const ACHAR* localName, Adesk::Int32 flags,
            AcRxFunctionPtr function, AcEdUIContext* uiContext, int fcode,
            const AcRxResourceInstance& resources)
        : m_group(group),
          m_globalName(globalName),
          m_localName(localName),
          m_flags(flags),
          m_function(function),
          m_uiContext(uiContext),
          m_fcode(fcode),
          m_resources(resources) {}

    const ACHAR* globalName() const override { return m_globalName; }
    const ACHAR* localName() const override { return m_localName; }
    const ACHAR* groupName() const override { return m_group; }
    Adesk::Int32 commandFlags() const override { return m_flags; }
    AcRxFunctionPtr functionAddr() const override { return m_function; }
    AcEdUIContext* UIContext() const override { return m_uiContext; }
    int fcode() const override { return m_fcode; }

private:
    CString m_group;
    CString m_globalName;
    CString m_localName;
    Adesk::Int32 m_flags;
    AcRxFunctionPtr m_function;
    AcEdUIContext* m_uiContext;
    int m_fcode;
    AcRxResourceInstance m_resources;
};

struct Group {
    CString name;
    std::vector<std::unique_ptr<Command>> commands;
};

bool sameName(const ACHAR* left, const ACHAR* right) {
    return CString(left).CompareNoCase(right) == 0;
}

const ACHAR* withoutUnderscore(const ACHAR* name) {
    return name[0] == ACRX_T('_') && name[1] != 0 ? name + 1 : name;
}

/// Whether two registered names are one.
bool sameCommandName(const ACHAR* left, const ACHAR* right) {
    return arxVariant().underscoreIsStripped ? sameName(withoutUnderscore(left), withoutUnderscore(right))
                                             : sameName(left, right);
}

class CommandIterator : public AcEdCommandIterator {
public:
    explicit CommandIterator(std::vector<const Command*> commands) : m_commands(std::move(commands)) {}

    bool done() const override { return m_next >= m_commands.size(); }

    bool next() override {
        if (!done()) {
            ++m_next;
        }
        return !done();
    }

    const AcEdCommand* command() const override { return done() ? nullptr : m_commands[m_next]; }
    const ACHAR* commandGroup() const override { return done() ? nullptr : m_commands[m_next]->groupName(); }

private:
    std::vector<const Command*> m_commands;
    std::size_t m_next = 0;
};

class CommandStack : public AcEdCommandStack {
public:
    Acad::ErrorStatus addCommand(const ACHAR* groupName, const ACHAR* globalName, const ACHAR* localName,
                                 Adesk::Int32 flags, AcRxFunctionPtr function, AcEdUIContext* uiContext,
                                 int fcode, const AcRxResourceInstance& resources,
                                 AcEdCommand** added) override {
        arxRequireUiThread("AcEdCommandStack::addCommand");
        if (groupName == nullptr || globalName == nullptr || localName == nullptr || function == nullptr) {
            return Acad::eInvalidInput;
        }
        if (*groupName == 0 || *globalName == 0 || *localName == 0) {
            return Acad::eInvalidInput;
        }

        auto group = find(groupName);
        if (group != m_groups.end()) {
            for (const auto& command : group->commands) {
                if (sameCommandName(command->globalName(), globalName) ||
                    sameCommandName(command->localName(), localName)) {
                    return Acad::eDuplicateKey;
                }
            }
        } else {
            m_groups.push_front(Group{groupName, {}});
            group = m_groups.begin();
        }
        group->commands.push_back(std::make_unique<Command>(group->name, globalName, localName, flags,
                                                            function, uiContext, fcode, resources));
        if (added != nullptr) {
            *added = group->commands.back().get();
        }
        return Acad::eOk;
    }

    Acad::ErrorStatus removeCmd(const ACHAR* groupName, const ACHAR* globalName) override {
        arxRequireUiThread("AcEdCommandStack::removeCmd");
        if (groupName == nullptr || globalName == nullptr) {
            return Acad::eInvalidInput;
        }
        const auto group = find(groupName);
        if (group == m_groups.end()) {
            return Acad::eKeyNotFound;
        }
        auto& commands = group->commands;
        const auto command =
            std::find_if(commands.begin(), commands.end(), [globalName](const auto& candidate) {
                return sameCommandName(candidate->globalName(), globalName);
            });
        if (command == commands.end()) {
            return Acad::eKeyNotFound;
        }
        commands.erase(command);
        return Acad::eOk;
    }

    Acad::ErrorStatus removeGroup(const ACHAR* groupName) override {
        arxRequireUiThread("AcEdCommandStack::removeGroup");
        if (groupName == nullptr) {
            return Acad::eInvalidInput;
        }
        const auto group = find(groupName);
        if (group == m_groups.end()) {
            return Acad::eKeyNotFound;
        }
        m_groups.erase(group);
        return Acad::eOk;
    }

    Acad::ErrorStatus popGroupToTop(const ACHAR* groupName) override {
        arxRequireUiThread("AcEdCommandStack::popGroupToTop");
        if (groupName == nullptr) {
            return Acad::eInvalidInput;
        }
        const auto group = find(groupName);
        if (group == m_groups.end()) {
            return Acad::eKeyNotFound;
        }
        m_groups.splice(m_groups.begin(), m_groups, group);
        return Acad::eOk;
    }

    AcEdCommand* lookupCmd(const ACHAR* name, bool globalLookup, bool allGroups) override {
        arxRequireUiThread("AcEdCommandStack::lookupCmd");
        if (name == nullptr || *name == 0) {
            return nullptr;
        }
        const ACHAR* const bareName = withoutUnderscore(name);
        const bool globally = globalLookup || bareName != name;
        if (arxVariant().underscoreIsStripped) {
            return findNamed(allGroups, [=](const Command& command) {
                return sameName(withoutUnderscore(globally ? command.globalName() : command.localName()),
                                bareName);
            });
        }
        AcEdCommand* const asTyped = findNamed(allGroups, [=](const Command& command) {
            return sameName(globalLookup ? command.globalName() : command.localName(), name);
        });
        if (asTyped != nullptr || !globally) {
            return asTyped;
        }
        return findNamed(allGroups, [=](const Command& command) {
            return sameName(command.globalName(), name) || sameName(command.globalName(), bareName);
        });
    }

    AcEdCommandIterator* iterator() override {
        arxRequireUiThread("AcEdCommandStack::iterator");
        std::vector<const Command*> commands;
        for (const Group& group : m_groups) {
            for (const auto& command : group.commands) {
                commands.push_back(command.get());
            }
        }
        return new CommandIterator(std::move(commands));
    }

private:
    template <typename Matches>
    AcEdCommand* findNamed(bool allGroups, Matches matches) const {
        for (const Group& group : m_groups) {
            for (const auto& command : group.commands) {
                if (matches(*command)) {
                    return command.get();
                }
            }
            if (!allGroups) {
                break;
            }
        }
        return nullptr;
    }

    std::list<Group>::iterator find(const ACHAR* groupName) {
        return std::find_if(m_groups.begin(), m_groups.end(),
                            [groupName](const Group& group) { return sameName(group.name, groupName); });
    }

    std::list<Group> m_groups;
};

}  // namespace

AcEdCommandStack& arxCommandStack() {
    static CommandStack stack;
    return stack;
}
