#pragma once

#include <mutex>
#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace zentri::service {

/// The service's calls, as faults name them.
enum class Call { Chat, Create, List, Read, Any };

/// What can be made to go wrong, for testing clients.
enum class FaultKind {
    Status,       ///< value: HTTP status of the reply
    SlowHeaders,  ///< value: milliseconds before the reply begins
    CutAfter,     ///< chat; value: events after which the connection is cut
    CutInEvent,   ///< chat; value: whole events before the one that is cut in its middle
    CutInChar,    ///< chat; value: whole events before the cut inside a multi-byte character
    EndInEvent,   ///< chat; as CutInEvent, but the reply ends properly
    CrLf,         ///< chat; events end with CR LF CR LF
    EmptyEvents,  ///< chat; value: empty events before the answer
    HugeEvent,    ///< chat; value: the answer, repeated to this many bytes, as one event
    NeverEnding,  ///< chat; the answer again and again until the client leaves
    InvalidUtf8,  ///< chat; an event of bytes that are no UTF-8 comes first
    BrokenJson,   ///< sessions; the envelope breaks off in its middle
    Code,         ///< sessions; value: the envelope's code
    Message,      ///< sessions; value: the envelope's msg
    Data,         ///< sessions; value: JSON that stands as the envelope's data
};

struct Fault {
    Call call = Call::Any;
    FaultKind kind = FaultKind::Status;
    std::string value;
    int times = 1;  ///< Requests it strikes; 0 means every one.
    int skip = 0;   ///< Requests of its call that pass before the first.

    /// The value as a number; 0 when it has none.
    long number() const;
};

/// Reads "CALL:KIND[=VALUE][,times=N][,skip=N]". Throws std::invalid_argument with a text for the user.
Fault parseFault(std::string_view text);

/// The same from an object with the members call, kind, value, times, skip. Throws std::invalid_argument.
Fault faultFromJson(const nlohmann::json& object);

std::string_view nameOf(Call call);
std::string_view nameOf(FaultKind kind);

/// One line per kind, for the help text.
std::string faultHelp();

/// The faults that apply to one request.
class RequestFaults {
public:
    RequestFaults() = default;
    explicit RequestFaults(std::vector<Fault> faults) : m_faults(std::move(faults)) {}

    const Fault* find(FaultKind kind) const;
    bool has(FaultKind kind) const { return find(kind) != nullptr; }
    /// The fault's number, or nothing when there is no such fault.
    std::optional<long> number(FaultKind kind) const;

private:
    std::vector<Fault> m_faults;
};

/// The faults still to come. May be used from any thread.
class FaultPlan {
public:
    void add(Fault fault);
    void clear();
    /// Takes what applies to the next request of a call and counts it down.
    RequestFaults take(Call call);
    nlohmann::json toJson() const;

private:
    mutable std::mutex m_mutex;
    std::vector<Fault> m_faults;
};

}  // namespace zentri::service
