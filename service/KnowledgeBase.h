#pragma once

#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "service/Topic.h"

namespace zentri::service {

/// A topic found by a search.
struct Hit {
    const Topic* topic = nullptr;  ///< Owned by the knowledge base.
    double score = 0;              ///< Rank; higher is better.
    double coverage = 0;  ///< Share of the question's content that the topic's keywords cover, 0 to 1.
    bool named = false;   ///< The question contains a whole keyword of the topic, not just single characters.

    /// Whether the topic answers the question, rather than merely being the nearest one.
    bool fits() const;
};

/// The drafting topics and a full-text index over them. The const methods may be called from any thread.
class KnowledgeBase {
public:
    /// Builds the index. Throws TopicError when there are no topics or two have the same title.
    explicit KnowledgeBase(std::vector<Topic> topics);
    ~KnowledgeBase();

    /// The topics compiled into the program.
    static std::vector<Topic> builtInTopics();
    /// The topics of a directory's *.topics files, in file name order. Throws TopicError when there are none
    /// or a file cannot be read or parsed.
    static std::vector<Topic> topicsIn(const std::string& directory);

    const std::vector<Topic>& topics() const { return m_topics; }

    /// At most `count` topics that match a question, best first.
    std::vector<Hit> search(std::string_view question, std::size_t count) const;

private:
    struct Index;

    /// How many characters of `content` the topic's keywords cover, see informativeLength(). Sets `named`
    /// when a whole keyword occurs.
    double keywordCoverage(std::size_t topic, const std::string& content, bool& named) const;

    std::vector<Topic> m_topics;
    std::vector<std::vector<std::string>> m_keywords;  ///< For each topic, folded for the search.
    std::unique_ptr<Index> m_index;
    mutable std::mutex m_mutex;  ///< Guards the prepared search statement.
};

}  // namespace zentri::service
