#pragma once

#include "service/Answerer.h"
#include "service/KnowledgeBase.h"

namespace zentri::service {

/// How fast the built-in answers are written out.
struct Pace {
    std::chrono::milliseconds delay{0};  ///< Before each piece but the first.
    int piece = 4;                       ///< Characters per piece, at least 1.
};

/// Answers from the knowledge base, offline. The same conversation always gives the same answer.
class BuiltInAnswerer : public Answerer {
public:
    /// The knowledge base must outlive the answerer.
    BuiltInAnswerer(const KnowledgeBase& knowledge, Pace pace) : m_knowledge(knowledge), m_pace(pace) {}

    void answer(const Conversation& conversation, AnswerSink& sink) override;
    std::string description() const override;

    /// The whole answer to the conversation's last question.
    std::string textFor(const std::vector<Message>& messages) const;

private:
    /// What the conversation was about before its last question; null when nothing is known of it.
    const Topic* earlierTopic(const std::vector<Message>& messages) const;

    const KnowledgeBase& m_knowledge;
    const Pace m_pace;
};

}  // namespace zentri::service
