#include <algorithm>
#include <array>

#include "service/Clock.h"
#include "service/SearchTokens.h"
#include "service/Seeder.h"

namespace zentri::service {

namespace {

constexpr std::int64_t kMs = 1;
constexpr std::int64_t kSecond = 1000 * kMs;
constexpr std::int64_t kMinute = 60 * kSecond;
constexpr std::int64_t kHour = 60 * kMinute;
constexpr std::int64_t kDay = 24 * kHour;
constexpr std::uint64_t kDaysOfHistory = 730;
/// Ages in minutes of the newest sessions, so that there are always sessions from today and yesterday.
constexpr std::array<std::int64_t, 9> kRecentMinutes{4, 37, 95, 180, 1440, 1502, 1610, 1685, 1790};
constexpr std::uint64_t kEnglishPercent = 22;
constexpr std::uint64_t kLongPercent = 6;
constexpr std::uint64_t kWeekendPercent = 8;

/// SplitMix64: yields the same numbers on every platform, which the standard distributions do not guarantee.
class Random {
public:
    explicit Random(std::uint64_t seed) : m_state(seed) {}

    /// A number from 0 to limit - 1; `limit` must not be 0.
    std::uint64_t below(std::uint64_t limit) {
        m_state += 0x9E3779B97F4A7C15U;
        std::uint64_t z = m_state;
        z = (z ^ (z >> 30U)) * 0xBF58476D1CE4E5B9U;
        z = (z ^ (z >> 27U)) * 0x94D049BB133111EBU;
        return (z ^ (z >> 31U)) % limit;
    }

    bool percent(std::uint64_t chance) { return below(100) < chance; }

    template <typename List>
    const auto& pick(const List& list) {
        return list[below(std::size(list))];
    }

private:
    std::uint64_t m_state;
};

constexpr std::array<std::string_view, 14> kOpenings{"",
                                                     "",
                                                     "",
                                                     "",
                                                     "请问",
                                                     "新手求助，",
                                                     "急！",
                                                     "请教一下，",
                                                     "师傅，",
                                                     "今天画图遇到个问题，",
                                                     "项目要交图了，",
                                                     "甲方改了要求，",
                                                     "昨天没弄明白，",
                                                     "图纸会审前问一下，"};

constexpr std::array<std::string_view, 8> kFollowUps{"还有别的办法吗", "那怎么撤销？",     "那怎么删除？",
                                                     "还有呢？",       "那怎么复制一份？", "再具体一点",
                                                     "谢谢",           "那图层怎么设置？"};

constexpr std::array<std::string_view, 4> kEnglishFollowUps{
    "and how do I undo that?", "what else should I know?", "thanks", "then how do I delete it?"};

std::uint64_t seedNumber(std::string_view token) {
    std::uint64_t number = 1469598103934665603U;
    for (const char c : token) {
        number = (number ^ static_cast<unsigned char>(c)) * 1099511628211U;
    }
    return number;
}

/// A time on an earlier day, in working hours or sometimes in the evening; recent days are more likely.
std::int64_t pastMoment(Random& random, std::int64_t nowMs) {
    const std::uint64_t spread = random.below(1000) * random.below(1000) * kDaysOfHistory / 1'000'000;
    std::tm day = localTime(nowMs - static_cast<std::int64_t>(spread + 1) * kDay);
    if ((day.tm_wday == 0 || day.tm_wday == 6) && !random.percent(kWeekendPercent)) {
        day.tm_mday -= 2;
    }
    const bool evening = random.percent(9);
    day.tm_hour = evening ? 19 + static_cast<int>(random.below(4)) : 8 + static_cast<int>(random.below(10));
    day.tm_min = static_cast<int>(random.below(60));
    day.tm_sec = static_cast<int>(random.below(60));
    return timeOfLocal(day) + static_cast<std::int64_t>(random.below(1000));
}

/// Assigns times from `startMs` on, with short gaps before answers and longer ones before questions; none is
/// later than `nowMs`.
void setTimes(std::vector<Message>& messages, std::int64_t startMs, std::int64_t nowMs, Random& random) {
    std::int64_t time = startMs;
    for (Message& message : messages) {
        message.timeMs = time;
        const auto pause = message.role == Role::User
                               ? 2 * kSecond + static_cast<std::int64_t>(random.below(6000))
                               : 25 * kSecond + static_cast<std::int64_t>(random.below(240000));
        time += pause;
    }
    const std::int64_t late = messages.empty() ? 0 : messages.back().timeMs - nowMs;
    if (late > 0) {
        for (Message& message : messages) {
            message.timeMs -= late;
        }
    }
}

}  // namespace

DemoHistory::DemoHistory(const KnowledgeBase& knowledge, std::vector<ScriptedConversation> scripted)
    : m_knowledge(knowledge), m_answerer(knowledge, Pace{}), m_scripted(std::move(scripted)) {}

std::vector<SeededSession> DemoHistory::make(std::string_view token, int count, std::int64_t nowMs) const {
    Random random(seedNumber(token));
    std::vector<const Topic*> topics;
    for (const Topic& topic : m_knowledge.topics()) {
        if (!topic.isSmallTalk() && !topic.questions.empty()) {
            topics.push_back(&topic);
        }
    }
    std::vector<const ScriptedConversation*> scripted;
    for (const ScriptedConversation& conversation : m_scripted) {
        scripted.push_back(&conversation);
    }

    const auto ask = [&](std::vector<Message>& messages, std::string question) {
        messages.push_back({Role::User, std::move(question), 0});
        messages.push_back({Role::Assistant, m_answerer.textFor(messages), 0});
    };
    const auto questionIn = [&](const Topic& topic, bool english) {
        std::vector<std::string> fitting;
        for (const std::string& question : topic.questions) {
            if (isEnglish(question) == english) {
                fitting.push_back(question);
            }
        }
        return fitting.empty()
                   ? (english ? topic.commands.empty() ? topic.title : topic.commands.front() : topic.title)
                   : random.pick(fitting);
    };
    const auto topicSession = [&] {
        std::vector<Message> messages;
        const bool english = random.percent(kEnglishPercent);
        std::uint64_t rounds = random.percent(kLongPercent) ? 7 + random.below(6) : 1 + random.below(3);
        std::size_t topic = random.below(topics.size());
        ask(messages,
            (english ? "" : std::string(random.pick(kOpenings))) + questionIn(*topics[topic], english));
        while (--rounds > 0) {
            if (random.percent(30)) {
                ask(messages,
                    std::string(english ? random.pick(kEnglishFollowUps) : random.pick(kFollowUps)));
            } else {
                // The next question is usually about a similar topic: neighbouring topics share an area.
                topic = random.percent(70) ? (topic + 1 + random.below(3)) % topics.size()
                                           : random.below(topics.size());
                ask(messages, questionIn(*topics[topic], english));
            }
        }
        return messages;
    };

    std::vector<SeededSession> sessions;
    for (std::size_t i = 0; i < static_cast<std::size_t>(std::max(count, 0)); ++i) {
        SeededSession session;
        session.id = stableSessionId("demo", token, i);
        const bool fromScript = !scripted.empty() && (topics.empty() || random.percent(20));
        if (fromScript) {
            // Use each scripted conversation once: duplicates would look artificial.
            const std::size_t at = random.below(scripted.size());
            session.messages = scripted[at]->messages;
            scripted.erase(scripted.begin() + static_cast<std::ptrdiff_t>(at));
        } else if (!topics.empty()) {
            session.messages = topicSession();
        }
        const std::int64_t start =
            i < kRecentMinutes.size() ? nowMs - kRecentMinutes[i] * kMinute : pastMoment(random, nowMs);
        setTimes(session.messages, start, nowMs, random);
        sessions.push_back(std::move(session));
    }
    return sessions;
}

}  // namespace zentri::service
