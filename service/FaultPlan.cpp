#include "service/FaultPlan.h"

#include <algorithm>
#include <array>
#include <nlohmann/json.hpp>
#include <stdexcept>

namespace zentri::service {

namespace {

enum class Value { None, Number, Text, Json };

struct KindRow {
    FaultKind kind;
    std::string_view name;
    Value value;
    std::string_view help;
};

constexpr std::array<KindRow, 15> kKinds{{
    {FaultKind::Status, "status", Value::Number, "reply with HTTP status N"},
    {FaultKind::SlowHeaders, "slow-headers", Value::Number, "wait N ms before the reply begins"},
    {FaultKind::CutAfter, "cut-after", Value::Number, "chat: cut the connection after N events"},
    {FaultKind::CutInEvent, "cut-in-event", Value::Number,
     "chat: cut the connection in the middle of the event after N"},
    {FaultKind::CutInChar, "cut-in-char", Value::Number,
     "chat: cut the connection inside a UTF-8 character, after N events"},
    {FaultKind::EndInEvent, "end-in-event", Value::Number,
     "chat: end the reply properly, but inside the event after N"},
    {FaultKind::CrLf, "crlf", Value::None, "chat: end events with CR LF CR LF"},
    {FaultKind::EmptyEvents, "empty-events", Value::Number, "chat: send N empty events before the answer"},
    {FaultKind::HugeEvent, "huge-event", Value::Number,
     "chat: send the answer, repeated to N bytes, as one event"},
    {FaultKind::NeverEnding, "never-ending", Value::None,
     "chat: repeat the answer until the client disconnects"},
    {FaultKind::InvalidUtf8, "invalid-utf8", Value::None, "chat: send a first event that is not UTF-8"},
    {FaultKind::BrokenJson, "broken-json", Value::None, "sessions: truncate the envelope"},
    {FaultKind::Code, "code", Value::Number, "sessions: set the envelope's code"},
    {FaultKind::Message, "msg", Value::Text, "sessions: set the envelope's msg"},
    {FaultKind::Data, "data", Value::Json, "sessions: set the envelope's data"},
}};

struct CallRow {
    Call call;
    std::string_view name;
};

constexpr std::array<CallRow, 5> kCalls{{
    {Call::Chat, "chat"},
    {Call::Create, "create"},
    {Call::List, "list"},
    {Call::Read, "read"},
    {Call::Any, "any"},
}};

constexpr std::size_t kLongestNumber = 9;

bool isNumber(std::string_view text) {
    return !text.empty() && text.size() <= kLongestNumber &&
           text.find_first_not_of("0123456789") == text.npos;
}

const KindRow& rowOf(FaultKind kind) {
    return *std::find_if(kKinds.begin(), kKinds.end(), [&](const KindRow& row) { return row.kind == kind; });
}

Call callNamed(std::string_view name) {
    for (const CallRow& row : kCalls) {
        if (row.name == name) {
            return row.call;
        }
    }
    throw std::invalid_argument("unknown call '" + std::string(name) + "' (chat, create, list, read or any)");
}

FaultKind kindNamed(std::string_view name) {
    for (const KindRow& row : kKinds) {
        if (row.name == name) {
            return row.kind;
        }
    }
    throw std::invalid_argument("unknown fault '" + std::string(name) + "'");
}

int countFrom(std::string_view name, std::string_view text) {
    if (!isNumber(text)) {
        throw std::invalid_argument("'" + std::string(name) + "' needs a number, not '" + std::string(text) +
                                    "'");
    }
    return std::stoi(std::string(text));
}

void check(const Fault& fault) {
    const KindRow& row = rowOf(fault.kind);
    const std::string name(row.name);
    if (row.value == Value::Number && !isNumber(fault.value)) {
        throw std::invalid_argument("fault '" + name + "' needs a number, not '" + fault.value + "'");
    }
    if (row.value == Value::None && !fault.value.empty()) {
        throw std::invalid_argument("fault '" + name + "' takes no value");
    }
    if (row.value == Value::Json && !nlohmann::json::accept(fault.value)) {
        throw std::invalid_argument("fault '" + name + "' needs JSON, not '" + fault.value + "'");
    }
    if (fault.kind == FaultKind::Status && (fault.number() < 200 || fault.number() > 599)) {
        throw std::invalid_argument("fault 'status' needs a number from 200 to 599");
    }
}

}  // namespace

long Fault::number() const {
    return isNumber(value) ? std::stol(value) : 0;
}

Fault parseFault(std::string_view text) {
    Fault fault;
    const std::size_t colon = text.find(':');
    if (colon == std::string_view::npos) {
        throw std::invalid_argument("a fault is CALL:KIND[=VALUE][,times=N][,skip=N], not '" +
                                    std::string(text) + "'");
    }
    fault.call = callNamed(text.substr(0, colon));
    text.remove_prefix(colon + 1);
    // Parse the options from the end, so that the value itself may contain commas.
    for (;;) {
        const std::size_t comma = text.rfind(',');
        if (comma == std::string_view::npos) {
            break;
        }
        const std::string_view tail = text.substr(comma + 1);
        if (tail.substr(0, 6) == "times=") {
            fault.times = countFrom("times", tail.substr(6));
        } else if (tail.substr(0, 5) == "skip=") {
            fault.skip = countFrom("skip", tail.substr(5));
        } else {
            break;
        }
        text = text.substr(0, comma);
    }
    const std::size_t equals = text.find('=');
    fault.kind = kindNamed(text.substr(0, equals));
    if (equals != std::string_view::npos) {
        fault.value = text.substr(equals + 1);
    }
    check(fault);
    return fault;
}

Fault faultFromJson(const nlohmann::json& object) {
    if (!object.is_object()) {
        throw std::invalid_argument("a fault must be an object");
    }
    Fault fault;
    bool hasKind = false;
    for (const auto& [key, value] : object.items()) {
        if (key == "call" && value.is_string()) {
            fault.call = callNamed(value.get<std::string>());
        } else if (key == "kind" && value.is_string()) {
            fault.kind = kindNamed(value.get<std::string>());
            hasKind = true;
        } else if (key == "value") {
            fault.value = value.is_string() ? value.get<std::string>() : value.dump();
        } else if ((key == "times" || key == "skip") && value.is_number_unsigned()) {
            (key == "times" ? fault.times : fault.skip) = value.get<int>();
        } else {
            throw std::invalid_argument("invalid member '" + key + "' in a fault");
        }
    }
    if (!hasKind) {
        throw std::invalid_argument("a fault needs a kind");
    }
    check(fault);
    return fault;
}

std::string_view nameOf(Call call) {
    return std::find_if(kCalls.begin(), kCalls.end(), [&](const CallRow& row) { return row.call == call; })
        ->name;
}

std::string_view nameOf(FaultKind kind) {
    return rowOf(kind).name;
}

std::string faultHelp() {
    std::string help;
    for (const KindRow& row : kKinds) {
        std::string name(row.name);
        if (row.value == Value::Number) {
            name += "=N";
        } else if (row.value == Value::Text) {
            name += "=TEXT";
        } else if (row.value == Value::Json) {
            name += "=JSON";
        }
        name.resize(std::max<std::size_t>(name.size(), 16), ' ');
        help += "  " + name + " " + std::string(row.help) + "\n";
    }
    return help;
}

const Fault* RequestFaults::find(FaultKind kind) const {
    const auto found =
        std::find_if(m_faults.begin(), m_faults.end(), [&](const Fault& f) { return f.kind == kind; });
    return found == m_faults.end() ? nullptr : &*found;
}

std::optional<long> RequestFaults::number(FaultKind kind) const {
    const Fault* fault = find(kind);
    return fault == nullptr ? std::nullopt : std::optional<long>(fault->number());
}

void FaultPlan::add(Fault fault) {
    const std::lock_guard lock(m_mutex);
    m_faults.push_back(std::move(fault));
}

void FaultPlan::clear() {
    const std::lock_guard lock(m_mutex);
    m_faults.clear();
}

RequestFaults FaultPlan::take(Call call) {
    const std::lock_guard lock(m_mutex);
    std::vector<Fault> taken;
    for (auto fault = m_faults.begin(); fault != m_faults.end();) {
        const bool applies = fault->call == Call::Any || fault->call == call;
        if (applies && fault->skip > 0) {
            --fault->skip;
        } else if (applies) {
            taken.push_back(*fault);
            if (fault->times == 1) {
                fault = m_faults.erase(fault);
                continue;
            }
            if (fault->times > 1) {
                --fault->times;
            }
        }
        ++fault;
    }
    return RequestFaults(std::move(taken));
}

nlohmann::json FaultPlan::toJson() const {
    const std::lock_guard lock(m_mutex);
    nlohmann::json list = nlohmann::json::array();
    for (const Fault& fault : m_faults) {
        list.push_back({{"call", nameOf(fault.call)},
                        {"kind", nameOf(fault.kind)},
                        {"value", fault.value},
                        {"times", fault.times},
                        {"skip", fault.skip}});
    }
    return list;
}

}  // namespace zentri::service
