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

/// The faults that the service can inject, for testing clients. Each group names the code that implements it.
///
/// To add a kind:
/// 1. Declare it here, with the meaning and unit of its value.
/// 2. In FaultPlan.cpp, add a row to kKinds (and one to its size): name, type of the value, help
///    text. --fault, /test/faults and --help all use that table; a kind without a row is undefined
///    behaviour. Limits on the value go into check().
/// 3. Implement the effect in the file and function named for the group.
/// 4. Add it to the table in README.md and to the list of kinds in test_fault_plan.cpp, and test
///    its effect in test_chat_stream.cpp or test_service_faults.cpp.
enum class FaultKind {
    // All calls, before the reply: Routes::begin() in Routes.cpp.
    Status,       ///< Value: HTTP status of the reply, 200 to 599.
    SlowHeaders,  ///< Value: milliseconds before the reply begins.

    // The chat call's event stream: ChatStream.cpp.
    CutAfter,    ///< sendEvent(). Value: number of events after which the connection is closed.
    CutInEvent,  ///< sendEvent(). Value: number of whole events before the one that is cut in the middle.
    CutInChar,   ///< sendEvent(). Value: number of whole events before the cut inside a multi-byte character.
    EndInEvent,  ///< sendEvent(). As CutInEvent, but the reply ends properly.
    CrLf,        ///< sendText(). Events end with CR LF CR LF.
    EmptyEvents,  ///< begin(). Value: number of empty events before the answer.
    HugeEvent,    ///< sendHugeEvent(). Value: size in bytes to which the answer is repeated, as one event.
    NeverEnding,  ///< repeatForEver(). The answer repeats until the client disconnects.
    InvalidUtf8,  ///< begin(). The first event is not valid UTF-8.

    // The session calls' envelope: send() in Routes.cpp.
    BrokenJson,  ///< The envelope is truncated in the middle.
    Code,        ///< Value: the envelope's code.
    Message,     ///< Value: the envelope's msg.
    Data,        ///< Value: JSON to use as the envelope's data.
};

/// One fault to inject.
struct Fault {
    Call call = Call::Any;
    FaultKind kind = FaultKind::Status;
    std::string value;  ///< As given; its meaning depends on the kind.
    int times = 1;      ///< Number of requests that it applies to; 0 for all.
    int skip = 0;       ///< Number of requests to its call that it lets pass first.

    /// The value as a number; 0 when it is not one.
    long number() const;
};

/// Parses "CALL:KIND[=VALUE][,times=N][,skip=N]". Throws std::invalid_argument with a message for the user.
Fault parseFault(std::string_view text);

/// Reads a fault from an object with the members call, kind, value, times and skip, of which only kind is
/// required. Throws std::invalid_argument with a message for the user.
Fault faultFromJson(const nlohmann::json& object);

/// The names used in the syntax above.
std::string_view nameOf(Call call);
std::string_view nameOf(FaultKind kind);

/// One line per kind, for the help text.
std::string faultHelp();

/// The faults that apply to one request.
class RequestFaults {
public:
    RequestFaults() = default;
    explicit RequestFaults(std::vector<Fault> faults) : m_faults(std::move(faults)) {}

    /// The first fault of a kind, owned by this object; null when there is none.
    const Fault* find(FaultKind kind) const;
    bool has(FaultKind kind) const { return find(kind) != nullptr; }
    /// The number of the first fault of a kind; nullopt when there is none.
    std::optional<long> number(FaultKind kind) const;

private:
    std::vector<Fault> m_faults;
};

/// The pending faults. Thread-safe.
class FaultPlan {
public:
    void add(Fault fault);
    void clear();
    /// Returns the faults that apply to the next request to a call, and counts them down. A fault is counted
    /// even when its kind has no effect on that call.
    RequestFaults take(Call call);
    /// The pending faults as an array of objects that faultFromJson() accepts.
    nlohmann::json toJson() const;

private:
    mutable std::mutex m_mutex;
    std::vector<Fault> m_faults;
};

}  // namespace zentri::service
