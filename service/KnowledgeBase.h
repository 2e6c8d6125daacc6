#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "service/Topic.h"

namespace zentri::service {

/// A topic that a search found.
struct Hit {
    const Topic* topic = nullptr;
    double score = 0;     ///< For ranking; grows with the match.
    double coverage = 0;  ///< How much of what the question is about the topic speaks of, 0 to 1.
    bool named = false;   ///< The question holds a whole keyword of the topic, not just single characters.

    /// Whether the topic answers the question, and is not just the least far of all.
    bool fits() const;
};

/// The drafting topics and the full-text search over them. Reading is safe from any thread.
class KnowledgeBase {
public:
    /// Throws TopicError when two topics have the same title or there are none.
    explicit KnowledgeBase(std::vector<Topic> topics);
    ~KnowledgeBase();

    /// The topics that are built into the program.
    static std::vector<Topic> builtInTopics();
    /// The topics of a folder's *.topics files. Throws TopicError.
    static std::vector<Topic> topicsIn(const std::string& directory);

    const std::vector<Topic>& topics() const { return m_topics; }

    /// The best topics for a question, best first, at most `count`.
    std::vector<Hit> search(std::string_view question, std::size_t count) const;

private:
    struct Index;

    double keywordCoverage(std::size_t topic, const std::string& content, bool& named) const;

    std::vector<Topic> m_topics;
    std::vector<std::vector<std::string>> m_keywords;  ///< Folded, for each topic.
    std::unique_ptr<Index> m_index;
    mutable std::mutex m_mutex;
};

}  // namespace zentri::service
