#include "service/BuiltInAnswerer.h"

#include <algorithm>

#include "service/SearchTokens.h"
#include "service/Text.h"

namespace zentri::service {

namespace {

/// Minimum coverage of the question for a topic to be listed as related.
constexpr double kRelatedCoverage = 0.34;
/// Minimum coverage for a topic to be suggested when no topic fits.
constexpr double kNearCoverage = 0.05;
/// A question with at most this many code points of content may refer to an earlier one.
constexpr std::size_t kShortContent = 6;
constexpr std::size_t kHits = 8;
constexpr std::size_t kOffered = 3;
/// Weight of the earlier topic's scores in the ranking for a follow-up.
constexpr double kContextWeight = 0.3;

/// Topics suggested when a question has nothing to do with drafting.
constexpr std::string_view kGoodStarts[] = {"画圆", "画直线", "删除对象", "新建图层", "标注线性尺寸"};

std::string numbered(const std::vector<std::string>& steps) {
    std::string text;
    for (std::size_t i = 0; i < steps.size(); ++i) {
        text += std::to_string(i + 1) + ". " + steps[i] + "\n";
    }
    return text;
}

std::string asTips(const Topic& topic) {
    std::string text;
    for (const std::string& tip : topic.tips) {
        text += "提示：" + tip + "\n";
    }
    return text;
}

std::string withoutLastLineEnd(std::string text) {
    while (!text.empty() && text.back() == '\n') {
        text.pop_back();
    }
    return text;
}

std::string explained(const Topic& topic, bool english) {
    if (topic.isSmallTalk()) {
        return english ? topic.english : topic.introduction;
    }
    std::string text;
    if (english) {
        text = topic.english + "\n\n";
    }
    text += topic.introduction + "\n" + numbered(topic.steps) + asTips(topic);
    return withoutLastLineEnd(text);
}

/// Titles of up to kOffered drafting topics among the hits that reach `coverage`, except the answered topic.
std::vector<std::string> offeredTitles(const std::vector<Hit>& hits, const Topic* answered, double coverage) {
    std::vector<std::string> titles;
    for (const Hit& hit : hits) {
        if (hit.topic != answered && !hit.topic->isSmallTalk() && hit.coverage >= coverage &&
            titles.size() < kOffered) {
            titles.push_back(hit.topic->title);
        }
    }
    return titles;
}

std::string listed(const std::vector<std::string>& titles) {
    std::string text;
    for (const std::string& title : titles) {
        text += (text.empty() ? "“" : "、“") + title + "”";
    }
    return text;
}

std::string related(const std::vector<std::string>& titles, bool english) {
    if (titles.empty()) {
        return {};
    }
    return (english ? "\n\nRelated topics: " : "\n\n相关话题：") + listed(titles);
}

std::string notFound(const std::vector<Hit>& hits, bool english) {
    std::vector<std::string> titles = offeredTitles(hits, nullptr, kNearCoverage);
    const bool near = !titles.empty();
    if (!near) {
        titles.assign(std::begin(kGoodStarts), std::end(kGoodStarts));
    }
    if (english) {
        return "Sorry, I have no topic that answers this. " +
               std::string(near ? "The nearest ones I know are: "
                                : "I know about drafting; try asking about: ") +
               listed(titles) + ". Mentioning a command name or the kind of object helps.";
    }
    return "抱歉，我的资料里没有找到直接回答这个问题的内容。\n" +
           std::string(near ? "比较接近的话题有：" : "我熟悉的是制图方面的问题，您可以试着问：") +
           listed(titles) + "。\n换一种说法，或者在问题里写上命令名、对象名称，会更容易找到。";
}

/// Answers a follow-up without content of its own ("还有呢？") with the topic's tips and the next best topic.
std::string moreAbout(const Topic& topic, const std::vector<Hit>& hits, bool english) {
    std::string text = english ? "More about “" + topic.title + "”:\n" : "接着说“" + topic.title + "”：\n";
    text += topic.tips.empty() ? topic.introduction + "\n" : asTips(topic);
    for (const Hit& hit : hits) {
        if (hit.topic != &topic && !hit.topic->isSmallTalk()) {
            text += (english ? "A related topic is “" : "与它相近的还有“") + hit.topic->title +
                    (english ? "”: " + hit.topic->english : "”：" + hit.topic->introduction);
            break;
        }
    }
    return withoutLastLineEnd(text);
}

/// Raises the scores of the hits that also match the earlier topic, and sorts again.
std::vector<Hit> withContext(std::vector<Hit> hits, const std::vector<Hit>& context) {
    for (const Hit& earlier : context) {
        const auto same =
            std::find_if(hits.begin(), hits.end(), [&](const Hit& h) { return h.topic == earlier.topic; });
        if (same != hits.end()) {
            same->score += earlier.score * kContextWeight;
        }
    }
    std::stable_sort(hits.begin(), hits.end(), [](const Hit& a, const Hit& b) { return a.score > b.score; });
    return hits;
}

}  // namespace

void BuiltInAnswerer::answer(const Conversation& conversation, AnswerSink& sink) {
    const std::string text = textFor(conversation.messages);
    std::string_view rest = text;
    while (!rest.empty()) {
        const std::string_view piece =
            firstCodePoints(rest, static_cast<std::size_t>(std::max(m_pace.piece, 1)));
        if (!sink.write(piece)) {
            return;
        }
        rest.remove_prefix(piece.size());
        if (!rest.empty() && !sink.pause(m_pace.delay)) {
            return;
        }
    }
}

std::string BuiltInAnswerer::description() const {
    return "built-in knowledge base, " + std::to_string(m_knowledge.topics().size()) + " topics";
}

std::string BuiltInAnswerer::textFor(const std::vector<Message>& messages) const {
    if (messages.empty()) {
        return {};
    }
    const std::string& question = messages.back().text;
    const bool english = isEnglish(question);
    const std::string content = contentOfQuestion(question);
    std::vector<Hit> hits = m_knowledge.search(question, kHits);

    if (codePointCount(content) <= kShortContent || beginsAsFollowUp(question)) {
        if (const Topic* earlier = earlierTopic(messages)) {
            const std::vector<Hit> context = m_knowledge.search(earlier->title, kHits);
            hits = withContext(std::move(hits), context);
            const bool saysNothing = hits.empty() || !hits.front().fits();
            if (saysNothing && (content.empty() || beginsAsFollowUp(question))) {
                return moreAbout(*earlier, context, english);
            }
            if (!saysNothing && beginsAsFollowUp(question) && hits.front().topic != earlier &&
                !hits.front().topic->isSmallTalk()) {
                const Topic& topic = *hits.front().topic;
                const std::string lead = english ? "Following on from “" + earlier->title + "”:\n\n"
                                                 : "接着“" + earlier->title + "”来说：\n";
                return lead + explained(topic, english) +
                       related(offeredTitles(hits, &topic, kRelatedCoverage), english);
            }
        }
    }
    if (hits.empty() || !hits.front().fits()) {
        return notFound(hits, english);
    }
    const Topic& topic = *hits.front().topic;
    if (topic.isSmallTalk()) {
        return explained(topic, english);
    }
    return explained(topic, english) + related(offeredTitles(hits, &topic, kRelatedCoverage), english);
}

const Topic* BuiltInAnswerer::earlierTopic(const std::vector<Message>& messages) const {
    for (auto message = messages.rbegin() + 1; message < messages.rend(); ++message) {
        if (message->role != Role::User || contentOfQuestion(message->text).empty()) {
            continue;
        }
        const std::vector<Hit> hits = m_knowledge.search(message->text, 1);
        if (!hits.empty() && hits.front().fits() && !hits.front().topic->isSmallTalk()) {
            return hits.front().topic;
        }
    }
    return nullptr;
}

}  // namespace zentri::service
